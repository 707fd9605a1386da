#pragma once

#include <QToolBar>

class QMenu;

// A toolbar of a panel: what all of them look like, and buttons by description. Owned by its
// panel; screen's thread.
class CToolBarDescriptor : public QToolBar {
public:
    struct Button {
        QString objectName; // by which tests and screen readers find it
        QString icon;       // name of the artwork
        QString text;
        QString tip;
    };

    explicit CToolBarDescriptor(QWidget* parent = nullptr);

protected:
    // The button's action; its trigger is the caller's to connect.
    QAction* AddButton(const Button& button);
};

// A toolbar with drop-down buttons: each shows a label and, after it, what is chosen in its menu. Owned by
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
