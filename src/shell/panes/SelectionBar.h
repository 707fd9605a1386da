#pragma once

#include <functional>

#include "shell/look/FloatingBar.h"

class QAction;
class QHBoxLayout;
class QLabel;
class QMenu;

// How many pictures of a view are selected, and what can be done with them: over the view, as long as there
// are some. Owned by its panel; screen's thread.
class CSelectionBar final : public CFloatingBar {
public:
    // clear: ends the selection.
    CSelectionBar(QWidget& over, const std::function<void()>& clear);

    // The buttons, in this order; a null entry is a separator. Borrowed. To be called once.
    void SetActions(const QList<QAction*>& actions);
    // 0 hides the bar.
    void SetCount(int count);

private:
    QLabel* const text;
    QHBoxLayout* const buttons;
};

// The entries of a menu for the same pictures, likewise.
void FillMenu(QMenu& menu, const QList<QAction*>& actions);
