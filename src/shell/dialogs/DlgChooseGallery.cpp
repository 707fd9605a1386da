#include "shell/dialogs/DlgChooseGallery.h"

#include <map>

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"
#include "shell/look/Icons.h"

namespace {

constexpr int IndexRole = Qt::UserRole;

QList<QStandardItem*> MakeRow(const ListedGallery& gallery, bool isCurrent)
{
    auto* title = new QStandardItem(LoadIcon(QStringLiteral("gallery")), gallery.title);
    auto* pictures = new QStandardItem(QLocale::system().toString(gallery.pictures));
    title->setData(gallery.index, IndexRole);
    pictures->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (QStandardItem* cell : {title, pictures}) {
        cell->setEditable(false);
        cell->setEnabled(!isCurrent);
    }
    return {title, pictures};
}

// "Travels › Norway": titles of their own are the same more often than not.
QString PathOf(const QStandardItem* gallery)
{
    QStringList titles;
    for (; gallery; gallery = gallery->parent()) {
        titles.prepend(gallery->text());
    }
    return titles.join(QStringLiteral(" \u203A "));
}

void FillModel(QStandardItemModel& model, const std::vector<ListedGallery>& galleries, int32_t current)
{
    model.setHorizontalHeaderLabels({Text(StringId::GalleryTitleColumn), Text(StringId::PicturesColumn)});
    model.horizontalHeaderItem(1)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    std::map<int32_t, QList<QStandardItem*>> rows;
    for (const ListedGallery& gallery : galleries) {
        rows[gallery.index] = MakeRow(gallery, gallery.index == current);
    }
    for (const ListedGallery& gallery : galleries) {
        const auto parent = rows.find(gallery.parent);
        (parent == rows.end() ? model.invisibleRootItem() : parent->second[0])
            ->appendRow(rows[gallery.index]);
    }
    for (const auto& [index, row] : rows) {
        row[0]->setToolTip(index == current ? Text(StringId::GalleryOfThePictures) : PathOf(row[0]));
    }
}

bool CanBeChosen(const QModelIndex& row)
{
    return (row.flags() & Qt::ItemIsEnabled) != 0;
}

// The row after it as the tree shows them when all of it is open.
QModelIndex Next(const QAbstractItemModel& model, QModelIndex row)
{
    if (model.hasChildren(row)) {
        return model.index(0, 0, row);
    }
    while (row.isValid()) {
        if (const QModelIndex sibling = row.sibling(row.row() + 1, 0); sibling.isValid()) {
            return sibling;
        }
        row = row.parent();
    }
    return row;
}

} // namespace

CDlgChooseGallery::CDlgChooseGallery(const std::vector<ListedGallery>& galleries, const Options& options,
                                     QWidget* parent)
    : QDialog(parent),
      shown(new QSortFilterProxyModel(this)),
      filter(new QLineEdit(this)),
      tree(new QTreeView(this)),
      message(new QLabel(Text(StringId::NoGalleryFound), this))
{
    setWindowTitle(options.title);
    auto* model = new QStandardItemModel(this);
    FillModel(*model, galleries, options.current);
    shown->setSourceModel(model);
    shown->setRecursiveFilteringEnabled(true);
    shown->setFilterCaseSensitivity(Qt::CaseInsensitive);
    MakeControls(options);
    connect(filter, &QLineEdit::textChanged, this, &CDlgChooseGallery::OnFilterChanged);
    connect(tree->selectionModel(), &QItemSelectionModel::currentChanged, this, &CDlgChooseGallery::OnChosen);
    connect(tree, &QTreeView::doubleClicked, this, [this](const QModelIndex& row) {
        if (CanBeChosen(row)) {
            accept();
        }
    });
    OnFilterChanged(QString());
    resize(440, 420);
    filter->setFocus();
}

void CDlgChooseGallery::MakeControls(const Options& options)
{
    const QString filterLabel = Text(StringId::GalleryFilterLabel);
    NameControl(*filter, "filter", filterLabel);
    filter->setPlaceholderText(Text(StringId::GalleryFilterHint));
    filter->setClearButtonEnabled(true);
    filter->installEventFilter(this);
    const QString treeLabel = Text(StringId::GalleryTreeLabel);
    NameControl(*tree, "galleries", treeLabel);
    tree->setModel(shown);
    tree->setUniformRowHeights(true);
    tree->setEditTriggers(QTreeView::NoEditTriggers);
    tree->setExpandsOnDoubleClick(false);
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    tree->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    message->setObjectName(QStringLiteral("message"));

    auto* layout = new QVBoxLayout(this);
    auto* filterRow = new QHBoxLayout;
    filterRow->addWidget(MakeLabel(filterLabel, *filter));
    filterRow->addWidget(filter);
    layout->addLayout(filterRow);
    layout->addWidget(MakeLabel(treeLabel, *tree));
    layout->addWidget(tree);
    layout->addWidget(message);
    ok = AddOkAndCancel(*this, *layout)->button(QDialogButtonBox::Ok);
    ok->setText(options.buttonText);
}

std::optional<int32_t> CDlgChooseGallery::GetChosen() const
{
    const QModelIndex row = tree->currentIndex().siblingAtColumn(0);
    return row.isValid() && CanBeChosen(row) ? std::optional(row.data(IndexRole).toInt()) : std::nullopt;
}

// Down goes on in the tree.
bool CDlgChooseGallery::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down) {
        tree->setFocus();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void CDlgChooseGallery::OnFilterChanged(const QString& text)
{
    shown->setFilterFixedString(text);
    tree->expandAll();
    const QModelIndex first = FindFirstMatch();
    tree->setCurrentIndex(first);
    message->setVisible(shown->rowCount() == 0);
    OnChosen(first);
}

void CDlgChooseGallery::OnChosen(const QModelIndex&)
{
    ok->setEnabled(GetChosen().has_value());
}

QModelIndex CDlgChooseGallery::FindFirstMatch() const
{
    for (QModelIndex row = shown->index(0, 0); row.isValid(); row = Next(*shown, row)) {
        if (CanBeChosen(row) && row.data().toString().contains(filter->text(), Qt::CaseInsensitive)) {
            return row;
        }
    }
    return {};
}
