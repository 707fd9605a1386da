#include "shell/look/ToolBarDescriptor.h"

#include <QAction>

#include "shell/look/Icons.h"

CToolBarDescriptor::CToolBarDescriptor(QWidget* parent) : QToolBar(parent)
{
    setMovable(false);
    setFloatable(false);
    setIconSize(QSize(20, 20));
    setContextMenuPolicy(Qt::PreventContextMenu);
}

QAction* CToolBarDescriptor::AddButton(const Button& button)
{
    QAction* const action = addAction(LoadIcon(button.icon), button.text);
    action->setObjectName(button.objectName);
    action->setToolTip(button.tip);
    action->setStatusTip(button.tip);
    return action;
}
