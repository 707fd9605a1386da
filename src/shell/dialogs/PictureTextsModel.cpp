#include "shell/dialogs/PictureTextsModel.h"

#include <utility>

#include "resources/StringTable.h"
#include "shell/dialogs/EditedText.h"

namespace {

std::vector<CPictureThumbnails::Source> SourcesOf(const std::vector<PictureTexts>& pictures)
{
    std::vector<CPictureThumbnails::Source> sources;
    for (const PictureTexts& picture : pictures) {
        sources.push_back({picture.path, picture.quarterTurns});
    }
    return sources;
}

void Replace(QString& text, const QString& other, std::optional<QString>& former)
{
    if (!former) {
        former = text;
    }
    text = other;
    if (text == *former) {
        former.reset();
    }
}

} // namespace

CPictureTextsModel::CPictureTextsModel(std::vector<PictureTexts> pictures, QSize thumbnail, QObject* parent)
    : QAbstractTableModel(parent), thumbnails(SourcesOf(pictures), thumbnail, [this](int row) {
          const QModelIndex cell = index(row, Thumbnail);
          Q_EMIT dataChanged(cell, cell, {Qt::DecorationRole});
      })
{
    rows.reserve(pictures.size());
    for (PictureTexts& picture : pictures) {
        rows.push_back({.path = std::move(picture.path),
                        .fileName = std::move(picture.fileName),
                        .title = std::move(picture.title),
                        .description = ShowLineBreaks(picture.description),
                        .formerTitle = {},
                        .formerDescription = {}});
    }
}

int CPictureTextsModel::SetTexts(const QModelIndex& first, const QList<QStringList>& texts)
{
    int row = first.row();
    for (const QStringList& line : texts) {
        int column = first.column();
        for (const QString& text : line) {
            if (const QModelIndex cell = index(row, column++); cell.isValid()) {
                setData(cell, text, Qt::EditRole);
            }
        }
        ++row;
    }
    return std::max(0, row - rowCount());
}

std::vector<PictureTextsChange> CPictureTextsModel::GetChanges() const
{
    std::vector<PictureTextsChange> changes;
    for (size_t i = 0; i < rows.size(); ++i) {
        const Row& row = rows[i];
        if (row.formerTitle || row.formerDescription) {
            changes.push_back({.row = static_cast<int>(i),
                               .title = row.formerTitle ? std::optional(row.title) : std::nullopt,
                               .description = row.formerDescription
                                                  ? std::optional(StoreLineBreaks(row.description))
                                                  : std::nullopt});
        }
    }
    return changes;
}

int CPictureTextsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows.size());
}

int CPictureTextsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString CPictureTextsModel::GetText(const QModelIndex& index) const
{
    const Row& row = rows[static_cast<size_t>(index.row())];
    switch (index.column()) {
    case Title:
        return row.title;
    case Description:
        return row.description;
    case FileName:
        return row.fileName;
    default:
        return {};
    }
}

QString CPictureTextsModel::GetToolTip(const QModelIndex& index) const
{
    const QString& path = rows[static_cast<size_t>(index.row())].path;
    if (index.column() == Title || index.column() == Description) {
        return GetText(index).toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    }
    const QImage* const image = thumbnails.Find(index.row());
    const bool isShown = image == nullptr || !image->isNull();
    return isShown ? path : Text(StringId::PictureNotShown, path);
}

QVariant CPictureTextsModel::data(const QModelIndex& index, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return GetText(index);
    case Qt::DecorationRole: {
        const QImage* const image = index.column() == Thumbnail ? thumbnails.Find(index.row()) : nullptr;
        return image ? QVariant(*image) : QVariant();
    }
    case Qt::ToolTipRole:
        return GetToolTip(index);
    case Qt::AccessibleTextRole:
        return index.column() == Thumbnail ? rows[static_cast<size_t>(index.row())].fileName : GetText(index);
    case IsNoFileRole:
        return rows[static_cast<size_t>(index.row())].path.isEmpty();
    default:
        return {};
    }
}

QVariant CPictureTextsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static constexpr StringId names[ColumnCount] = {StringId::PictureColumn, StringId::TitleColumn,
                                                    StringId::DescriptionColumn, StringId::FileNameColumn};
    if (orientation == Qt::Vertical) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    }
    return role == Qt::DisplayRole ? QVariant(Text(names[section])) : QVariant();
}

// A thumbnail is no place to be at: the keys of the table go past it.
Qt::ItemFlags CPictureTextsModel::flags(const QModelIndex& index) const
{
    switch (index.column()) {
    case Title:
    case Description:
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
    case FileName:
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    default:
        return Qt::NoItemFlags;
    }
}

bool CPictureTextsModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable)) {
        return false;
    }
    Row& row = rows[static_cast<size_t>(index.row())];
    if (index.column() == Title) {
        Replace(row.title, CutToLength(OnOneLine(value.toString()), TitleLimit), row.formerTitle);
    } else {
        Replace(row.description, CutToLength(value.toString(), DescriptionLimit), row.formerDescription);
    }
    Q_EMIT dataChanged(index, index);
    return true;
}
