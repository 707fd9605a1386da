#pragma once

#include <QLabel>

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
