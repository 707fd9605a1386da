#include "editing/SortOrder.h"

#include <algorithm>
#include <numeric>

#include <QCollator>
#include <QLocale>

#include "common/FileSystem.h"
#include "document/galleries/Gallery.h"

namespace {

struct Row {
    bool isGallery = false;
    QString name;
    double date = 0; // days, as the document keeps it
};

using Less = std::function<bool(const Row& a, const Row& b)>;

std::vector<Row> RowsOf(const CGallery& gallery, SortKey key,
                        const std::function<QDateTime(const QString& path)>& dateTaken)
{
    std::vector<Row> rows;
    const CPictureList& pictures = gallery.GetPictures();
    for (int32_t position = 0; position < pictures.GetCount(); ++position) {
        const auto* const file = dynamic_cast<const CFilePictureInfo*>(pictures.GetAt(position));
        Row row{.isGallery = file == nullptr, .name = {}, .date = 0};
        if (file) {
            row.name = ExtractLastName(file->GetPath());
            row.date = file->GetDate();
        }
        if (const QDateTime taken =
                file && key == SortKey::DateTaken ? dateTaken(file->GetPath()) : QDateTime();
            taken.isValid()) {
            row.date = DateFromLocalTime(taken);
        }
        rows.push_back(row);
    }
    return rows;
}

Less LessBy(SortKey key)
{
    if (key != SortKey::Name) {
        return [](const Row& a, const Row& b) {
            return a.date < b.date;
        };
    }
    // That of no language at all takes numbers for letters.
    const QLocale locale = QLocale::system();
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return [collator](const Row& a, const Row& b) {
        return collator.compare(a.name, b.name) < 0;
    };
}

} // namespace

std::vector<int32_t> OrderBy(const CGallery& gallery, SortKey key,
                             const std::function<QDateTime(const QString& path)>& dateTaken)
{
    std::vector<int32_t> order(static_cast<size_t>(gallery.GetPictures().GetCount()));
    std::iota(order.begin(), order.end(), 0);
    const std::vector<Row> rows = RowsOf(gallery, key, dateTaken);
    const auto row = [&](int32_t position) -> const Row& {
        return rows[static_cast<size_t>(position)];
    };
    const auto firstPicture = std::stable_partition(
        order.begin(), order.end(), [&](int32_t position) { return row(position).isGallery; });
    if (key == SortKey::Reverse) {
        std::reverse(firstPicture, order.end());
    } else {
        const Less less = LessBy(key);
        std::stable_sort(firstPicture, order.end(),
                         [&](int32_t a, int32_t b) { return less(row(a), row(b)); });
    }
    return order;
}
