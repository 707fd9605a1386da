#include "shell/look/ToolBarWithCombo.h"

#include <QLabel>
#include <QMenu>
#include <QToolButton>

#include "shell/look/DropDownButton.h"
#include "shell/look/Icons.h"

CToolBarWithCombo::CToolBarWithCombo(QWidget* parent) : CToolBarDescriptor(parent) {}

QMenu* CToolBarWithCombo::AddDropDown(const Button& button, Label label)
{
    auto* const dropDown = new CDropDownButton(this);
    auto* const menu = new QMenu(dropDown);
    dropDown->setObjectName(button.objectName);
    dropDown->setIcon(LoadIcon(button.icon));
    dropDown->setToolButtonStyle(label == Label::Before ? Qt::ToolButtonTextBesideIcon
                                                        : Qt::ToolButtonIconOnly);
    dropDown->setPopupMode(QToolButton::InstantPopup);
    dropDown->setFocusPolicy(Qt::TabFocus);
    dropDown->setToolTip(button.tip);
    dropDown->setStatusTip(button.tip);
    dropDown->setAccessibleName(button.text.trimmed().remove(QLatin1Char(':')));
    dropDown->setMenu(menu);
    menu->setObjectName(button.objectName + QStringLiteral("Menu"));
    if (label == Label::Before) {
        auto* const text = new QLabel(button.text, this);
        text->setBuddy(dropDown);
        addWidget(text);
    }
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
