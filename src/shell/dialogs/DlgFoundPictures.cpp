#include "shell/dialogs/DlgFoundPictures.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "common/FileSystem.h"
#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

QTreeWidgetItem* MakeRow(const CDlgFoundPictures::Match& match, const QString& folder)
{
    auto* row =
        new QTreeWidgetItem({ExtractLastName(match.oldPath), QDir(folder).relativeFilePath(match.newPath),
                             Text(match.hasExactSize ? StringId::SameSize : StringId::OtherSize)});
    row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    row->setCheckState(0, Qt::Checked);
    row->setToolTip(0, match.oldPath);
    row->setToolTip(1, match.newPath);
    return row;
}

} // namespace

CDlgFoundPictures::CDlgFoundPictures(const std::vector<Match>& matches, int missing, const QString& folder,
                                     QWidget* parent)
    : QDialog(parent), list(new QTreeWidget(this))
{
    setWindowTitle(Text(StringId::FindMissingTitle));
    auto* hint =
        new QLabel(Text(StringId::FoundPicturesHint, static_cast<int>(matches.size()), missing), this);
    hint->setWordWrap(true);
    const QString label = Text(StringId::FoundPicturesLabel);
    NameControl(*list, "matches", label);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setTextElideMode(Qt::ElideMiddle);
    list->setHeaderLabels(
        {Text(StringId::PictureColumn), Text(StringId::FoundAtColumn), Text(StringId::SizeColumn)});
    for (const Match& match : matches) {
        list->addTopLevelItem(MakeRow(match, folder));
    }
    list->header()->setStretchLastSection(false);
    list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    list->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    list->setCurrentItem(list->topLevelItem(0));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(hint);
    layout->addWidget(MakeLabel(label, *list));
    layout->addWidget(list);
    QPushButton* const use = AddOkAndCancel(*this, *layout)->button(QDialogButtonBox::Ok);
    use->setText(Text(StringId::UseFoundButton));
    connect(list, &QTreeWidget::itemChanged, this, [this, use] { use->setEnabled(!GetChosen().empty()); });
    resize(640, 360);
    list->setFocus();
}

std::vector<size_t> CDlgFoundPictures::GetChosen() const
{
    std::vector<size_t> chosen;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        if (list->topLevelItem(i)->checkState(0) == Qt::Checked) {
            chosen.push_back(static_cast<size_t>(i));
        }
    }
    return chosen;
}
