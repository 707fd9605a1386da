#include "shell/views/ToolBarWithCombo.h"

#include <QLabel>
#include <QMenu>
#include <QToolButton>

#include "shell/frame/Icons.h"
#include "shell/views/DropDownButton.h"

CToolBarWithCombo::CToolBarWithCombo(QWidget* parent) : CToolBarDescriptor(parent) {}

QMenu* CToolBarWithCombo::AddDropDown(const Button& button)
{
    auto* const label = new QLabel(button.text, this);
    auto* const dropDown = new CDropDownButton(this);
    auto* const menu = new QMenu(dropDown);
    dropDown->setObjectName(button.objectName);
    dropDown->setIcon(LoadIcon(button.icon));
    dropDown->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    dropDown->setPopupMode(QToolButton::InstantPopup);
    dropDown->setFocusPolicy(Qt::TabFocus);
    dropDown->setToolTip(button.tip);
    dropDown->setStatusTip(button.tip);
    dropDown->setAccessibleName(button.text.trimmed().chopped(1));
    dropDown->setMenu(menu);
    menu->setObjectName(button.objectName + QStringLiteral("Menu"));
    label->setBuddy(dropDown);
    addWidget(label);
    addWidget(dropDown);
    return menu;
}

void CToolBarWithCombo::ShowChoice(QMenu* menu)
{
    auto* const dropDown = qobject_cast<QToolButton*>(menu->parent());
    QString choice;
    for (const QAction* action : menu->actions()) {
        if (action->isChecked()) {
            choice = action->text();
        }
    }
    dropDown->setText(choice);
    dropDown->setEnabled(!menu->isEmpty());
    dropDown->setAccessibleDescription(choice);
}
