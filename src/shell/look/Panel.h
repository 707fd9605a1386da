#pragma once

#include <QLabel>
#include <QWidget>

class QBoxLayout;
class QToolBar;

// A pane of the main window: a toolbar along its top, at the toolbar's own height, and one client below that
// takes the rest. Owns both, and what may stand between them. Screen's thread.
class CPanel : public QWidget {
public:
    explicit CPanel(QWidget* parent = nullptr);

protected:
    // Each is to be called once.
    void SetToolBar(QToolBar* toolBar);
    void SetClient(QWidget* client);
    // A line between both that is not always shown. After the toolbar.
    void SetNotice(QWidget* notice);

private:
    QBoxLayout* const arrangement;
};

// The name of what a panel shows, in the panel's toolbar: semi-bold, 12 pixels. A text that is too wide for
// its place is cut and ends in "..."; the whole of it is the tooltip then. Owned by the toolbar.
class CPanelTitle final : public QLabel {
public:
    explicit CPanelTitle(QWidget* parent = nullptr);

    void SetTitle(const QString& title);
    const QString& GetTitle() const { return title; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Fit();

    QString title;
};

// What fits into width pixels, measured by the average width of a character.
QString CutTitle(const QString& title, int width, int averageCharacterWidth);
