#include "document/pictures/PictureList.h"

#include <algorithm>

#include <QFileInfo>

#include "document/pictures/PictureFiles.h"

namespace {

// 0 for a file that can't be queried.
DateValue LastWriteDate(const QString& path)
{
    const QDateTime moment = QFileInfo(path).lastModified();
    return moment.isValid() ? DateFromLocalTime(moment) : 0;
}

} // namespace

CPictureInfo* CPictureList::AddFile(const QString& path, int32_t angle, bool atFront)
{
    return AddFile(path, QString(), angle, atFront);
}

CPictureInfo* CPictureList::AddFile(const QString& path, const QString& thumbnailPath, int32_t angle,
                                    bool atFront)
{
    auto record = std::make_unique<CFilePictureInfo>(path, angle);
    record->SetThumbnailPath(thumbnailPath);
    record->SetVariable(QStringLiteral("addition_date"),
                        CVariant::Date(DateFromLocalTime(QDateTime::currentDateTime())));
    record->SetIsThere(IsFile(path));
    const DateValue date = LastWriteDate(path);
    if (date != 0) {
        record->SetDate(date);
        CountDate(date);
    }
    return Add(std::move(record), atFront);
}

CPictureInfo* CPictureList::Add(std::unique_ptr<CPictureInfo> record, bool atFront)
{
    CPictureInfo* const added = record.get();
    std::unique_ptr<CPictureInfo>& slot = byPath[record->GetKey()];
    if (slot) {
        std::replace(entries.begin(), entries.end(), slot.get(), added);
        slot = std::move(record);
    } else {
        slot = std::move(record);
        const bool first = atFront && order == Order::ByUser;
        entries.insert(first ? entries.begin() : entries.end(), added);
    }
    if (order == Order::ByDate) {
        SortLast();
    }
    return added;
}

const CPictureInfo* CPictureList::GetAt(int32_t position) const
{
    return position >= 0 && position < GetCount() ? entries[static_cast<size_t>(position)] : nullptr;
}

CPictureInfo* CPictureList::GetAt(int32_t position)
{
    return position >= 0 && position < GetCount() ? entries[static_cast<size_t>(position)] : nullptr;
}

const CPictureInfo* CPictureList::FindRecord(const QString& path) const
{
    const auto found = byPath.find(Lower(path));
    return found != byPath.end() ? found->second.get() : nullptr;
}

int32_t CPictureList::Find(const QString& path) const
{
    const CPictureInfo* const record = FindRecord(path);
    return record ? FindPosition(record) : -1;
}

int32_t CPictureList::FindPosition(const CPictureInfo* record) const
{
    const auto found = std::find(entries.begin(), entries.end(), record);
    return found != entries.end() ? static_cast<int32_t>(found - entries.begin()) : -1;
}

std::unique_ptr<CPictureInfo> CPictureList::Remove(int32_t position)
{
    CPictureInfo* const record = GetAt(position);
    if (!record) {
        return nullptr;
    }
    auto slot = byPath.find(record->GetKey());
    if (slot == byPath.end() || slot->second.get() != record) {
        // Its path has changed since it came in, and no other key was free for it then.
        slot = std::find_if(byPath.begin(), byPath.end(),
                            [&](const auto& entry) { return entry.second.get() == record; });
    }
    std::unique_ptr<CPictureInfo> removed = std::move(slot->second);
    byPath.erase(slot);
    entries.erase(entries.begin() + position);
    RecountAfter(removed->GetDate());
    return removed;
}

void CPictureList::Swap(int32_t a, int32_t b)
{
    if (GetAt(a) && GetAt(b)) {
        std::swap(entries[static_cast<size_t>(a)], entries[static_cast<size_t>(b)]);
    }
}

void CPictureList::MoveTo(const CPictureInfo* record, int32_t position)
{
    const int32_t from = FindPosition(record);
    const int32_t to = std::min(position, GetCount() - 1);
    // Odd on purpose: a move towards the front has no effect, so that a picture that turns into a gallery
    // leaves it at the end where pictures are added at the end.
    if (from >= 0 && from < to) {
        std::rotate(entries.begin() + from, entries.begin() + from + 1, entries.begin() + to + 1);
    }
}

void CPictureList::Rekey(const QString& path)
{
    const auto old = byPath.find(Lower(path));
    if (old == byPath.end()) {
        return;
    }
    const QString key = old->second->GetKey();
    if (byPath.count(key) == 0) {
        std::unique_ptr<CPictureInfo> record = std::move(old->second);
        byPath.erase(old);
        byPath.emplace(key, std::move(record));
    }
}

void CPictureList::Clear()
{
    entries.clear();
    byPath.clear();
    variables.Clear();
}

CVariant CPictureList::GetVariable(const QString& name) const
{
    const QString property = Lower(name);
    if (property == QStringLiteral("images_count")) {
        return CVariant(GetCount());
    }
    if (property == QStringLiteral("min_creation_date")) {
        return CVariant::Date(minDate);
    }
    if (property == QStringLiteral("max_creation_date")) {
        return CVariant::Date(maxDate);
    }
    return variables.Find(name).value_or(CVariant());
}

void CPictureList::CountDate(DateValue date)
{
    if (minDate == 0 || date < minDate) {
        minDate = date;
    }
    if (maxDate == 0 || date > maxDate) {
        maxDate = date;
    }
}

// Odd on purpose: counts the entries of child galleries too, which adding them does not.
void CPictureList::RecountAfter(DateValue removed)
{
    if (removed == minDate) {
        minDate = 0;
        for (const CPictureInfo* entry : entries) {
            const DateValue date = entry->GetDate();
            if (minDate == 0 || date < minDate) {
                minDate = date;
            }
        }
    }
    if (removed == maxDate) {
        maxDate = 0;
        for (const CPictureInfo* entry : entries) {
            maxDate = std::max(maxDate, entry->GetDate());
        }
    }
}

// Moves the last entry up to its place; equal dates stay in the order of arrival.
void CPictureList::SortLast()
{
    for (size_t i = entries.size(); i-- > 1;) {
        if (!(entries[i]->GetDate() < entries[i - 1]->GetDate())) {
            return;
        }
        std::swap(entries[i], entries[i - 1]);
    }
}
