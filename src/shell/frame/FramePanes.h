#pragma once

#include <vector>

#include <QString>

class CMainSplitter;
class CSettingsStore;
class CSideSplitter;
class QMainWindow;
class QWidget;

// Where the three views stand in the frame: the pages view on the left, on the right the galleries view above
// the folder view. Owned by the frame; the widgets are the window's. Screen's thread.
class CFramePanes {
public:
    struct Views {
        QWidget* pages;
        QWidget* galleries;
        QWidget* folder;
    };
    CFramePanes(QMainWindow& window, const Views& views);

    // Gives the keyboard to the next pane, or to the one before.
    void FocusNext() { MoveFocus(+1); }
    void FocusPrevious() { MoveFocus(-1); }

    // The places of the bars that a person has moved, as text; empty if none was moved.
    QString SaveBars() const;
    // Text that SaveBars has not written changes nothing.
    void RestoreBars(const QString& text);

    CMainSplitter& GetMainBar() { return *mainBar; }
    CSideSplitter& GetSideBar() { return *sideBar; }

private:
    void MoveFocus(int direction);

    CMainSplitter* mainBar;
    CSideSplitter* sideBar;
    std::vector<QWidget*> panes; // in the order of the keyboard
};

// Shows the window where it was when it was closed last, with its bars where they were; in a
// first run maximised.
void RestoreWindowPlace(QMainWindow& window, CFramePanes& panes, CSettingsStore& settings);
void StoreWindowPlace(const QMainWindow& window, const CFramePanes& panes, CSettingsStore& settings);
