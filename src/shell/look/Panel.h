#pragma once

#include <QWidget>

class QBoxLayout;
class QToolBar;

// A pane of the main window: a toolbar along its top, at the toolbar's own height, and one client below that
// takes the rest. Owns both. Screen's thread.
class CPanel : public QWidget {
public:
    explicit CPanel(QWidget* parent = nullptr);

protected:
    // Each is to be called once.
    void SetToolBar(QToolBar* toolBar);
    void SetClient(QWidget* client);

private:
    QBoxLayout* const arrangement;
};
