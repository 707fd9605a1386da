#pragma once

#include "shell/look/ToolBarDescriptor.h"

class QMenu;

// A toolbar with drop-down buttons: each shows a label and, behind it, what is chosen in its menu. Owned by
// its panel; screen's thread.
class CToolBarWithCombo : public CToolBarDescriptor {
public:
    explicit CToolBarWithCombo(QWidget* parent = nullptr);

protected:
    // Whether the button's text stands before it.
    enum class Label { Before, None };

    // The menu of a new drop-down button at the end of the toolbar. Without a label it shows its icon alone.
    QMenu* AddDropDown(const Button& button, Label label = Label::Before);
    // The text of the drop-down is that of the menu's checked entry.
    static void ShowChoice(QMenu* menu);
};
