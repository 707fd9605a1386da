#include "shell/look/Panel.h"

#include <QToolBar>
#include <QVBoxLayout>

CPanel::CPanel(QWidget* parent) : QWidget(parent), arrangement(new QVBoxLayout(this))
{
    arrangement->setContentsMargins(0, 0, 0, 0);
    arrangement->setSpacing(0);
}

void CPanel::SetToolBar(QToolBar* toolBar)
{
    arrangement->insertWidget(0, toolBar);
}

void CPanel::SetClient(QWidget* client)
{
    arrangement->addWidget(client, 1);
}
