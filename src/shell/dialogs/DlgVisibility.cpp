#include "shell/dialogs/DlgVisibility.h"

#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

CDlgVisibility::CDlgVisibility(const Elements& elements, QWidget* parent)
    : QDialog(parent), list(new QListWidget(this))
{
    setWindowTitle(Text(StringId::ElementsVisibilityTitle));
    const QString label = Text(StringId::VisibleElementsLabel);
    NameControl(*list, "elements", label);
    for (const auto& [name, visible] : elements) {
        Add(name, visible);
    }
    list->setCurrentRow(0);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeLabel(label, *list));
    layout->addWidget(list);
    QPushButton* checkAll = MakeButton(Text(StringId::CheckAllElements), "checkAll", this);
    connect(checkAll, &QPushButton::clicked, this, &CDlgVisibility::CheckAll);
    layout->addWidget(checkAll, 0, Qt::AlignLeft);
    AddOkAndCancel(*this, *layout);
    resize(360, 320);
    list->setFocus();
}

void CDlgVisibility::Add(const QString& name, bool visible)
{
    auto* row = new QListWidgetItem(name, list);
    row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    row->setCheckState(visible ? Qt::Checked : Qt::Unchecked);
}

CDlgVisibility::Elements CDlgVisibility::GetElements() const
{
    Elements elements;
    for (int i = 0; i < list->count(); ++i) {
        elements[list->item(i)->text()] = list->item(i)->checkState() == Qt::Checked;
    }
    return elements;
}

void CDlgVisibility::CheckAll()
{
    for (int i = 0; i < list->count(); ++i) {
        list->item(i)->setCheckState(Qt::Checked);
    }
}
