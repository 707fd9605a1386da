#include "shell/dialogs/DlgEarlierVersions.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

QTreeWidgetItem* MakeRow(const CDlgEarlierVersions::Version& version)
{
    const QLocale locale = QLocale::system();
    auto* row = new QTreeWidgetItem({locale.toString(version.changed.toLocalTime(), QLocale::ShortFormat),
                                     locale.toString(version.galleries), locale.toString(version.pictures)});
    row->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    row->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
    return row;
}

} // namespace

CDlgEarlierVersions::CDlgEarlierVersions(const QString& projectName, const std::vector<Version>& versions,
                                         QWidget* parent)
    : QDialog(parent), list(new QTreeWidget(this))
{
    setWindowTitle(Text(StringId::EarlierVersionsTitle));
    auto* hint = new QLabel(
        Text(versions.empty() ? StringId::NoEarlierVersions : StringId::EarlierVersionsHint, projectName),
        this);
    hint->setWordWrap(true);
    const QString label = Text(StringId::EarlierVersionsLabel);
    NameControl(*list, "versions", label);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setHeaderLabels(
        {Text(StringId::LastChangedColumn), Text(StringId::GalleriesColumn), Text(StringId::PicturesColumn)});
    for (const int column : {1, 2}) {
        list->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    }
    for (const Version& version : versions) {
        list->addTopLevelItem(MakeRow(version));
    }
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list->header()->setStretchLastSection(false);
    list->setCurrentItem(list->topLevelItem(0));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(hint);
    layout->addWidget(MakeLabel(label, *list));
    layout->addWidget(list);
    QPushButton* const open = AddOkAndCancel(*this, *layout)->button(QDialogButtonBox::Ok);
    open->setText(Text(StringId::OpenVersionButton));
    open->setEnabled(!versions.empty());
    connect(list, &QTreeWidget::itemDoubleClicked, this, &QDialog::accept);
    resize(440, 320);
    list->setFocus();
}

size_t CDlgEarlierVersions::GetChosen() const
{
    return static_cast<size_t>(list->indexOfTopLevelItem(list->currentItem()));
}
