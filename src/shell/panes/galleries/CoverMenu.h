#pragma once

#include <functional>

class QMenu;
class QWidget;

// The menu that a right click on a cover opens, or the menu key: what can be done with its gallery.

struct CoverMenuActions {
    std::function<void()> addInside;
    std::function<void()> insertAbove;
    std::function<void()> rename;
    std::function<void()> duplicate;
    std::function<void()> remove;
};

// showsKeys: the keys do the same with the gallery, which they do with the current one only. The menu deletes
// itself when it closes.
QMenu* MakeCoverMenu(const CoverMenuActions& actions, bool showsKeys, QWidget& parent);
