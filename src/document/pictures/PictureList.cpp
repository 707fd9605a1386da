#include "document/pictures/PictureList.h"

#include <algorithm>

#include <QDateTime>
#include <QHash>

#include "common/Text.h"

namespace {

// The records of a former state, to be shared by a new one as far as they are the same.
class CFormerRecords {
public:
    explicit CFormerRecords(const PictureListState& former) : former(former) {}

    // place: where the record stands now; most stand where they stood.
    std::shared_ptr<const CFilePictureInfo> Share(const CFilePictureInfo& record, size_t place) const
    {
        const std::shared_ptr<const CFilePictureInfo> same =
            place < former.entries.size() ? RecordOf(former.entries[place]) : nullptr;
        if (same && *same == record) {
            return same;
        }
        const std::shared_ptr<const CFilePictureInfo> moved = FindByPath(record.GetPath());
        return moved && *moved == record ? moved : std::make_shared<const CFilePictureInfo>(record);
    }

private:
    static std::shared_ptr<const CFilePictureInfo> RecordOf(const PictureListState::Entry& entry)
    {
        const auto* const record = std::get_if<std::shared_ptr<const CFilePictureInfo>>(&entry);
        return record ? *record : nullptr;
    }

    std::shared_ptr<const CFilePictureInfo> FindByPath(const QString& path) const
    {
        if (byPath.isEmpty()) {
            for (const PictureListState::Entry& entry : former.entries) {
                if (const auto record = RecordOf(entry)) {
                    byPath.insert(record->GetPath(), record);
                }
            }
        }
        return byPath.value(path);
    }

    const PictureListState& former;
    mutable QHash<QString, std::shared_ptr<const CFilePictureInfo>> byPath; // made when it is first needed
};

} // namespace

AddedPicture CPictureList::AddFile(const QString& path, int32_t angle, bool atFront)
{
    return AddFile(path, QString(), angle, atFront);
}

AddedPicture CPictureList::AddFile(const QString& path, const QString& thumbnailPath, int32_t angle,
                                   bool atFront)
{
    const auto known = byPath.find(path);
    if (known != byPath.end()) {
        return {.record = known->second.get(), .isNew = false};
    }
    auto record = std::make_unique<CFilePictureInfo>(path, angle);
    record->SetThumbnailPath(thumbnailPath);
    record->SetVariable(QStringLiteral("addition_date"),
                        CVariant::Date(DateFromLocalTime(QDateTime::currentDateTime())));
    record->SetState(LookAtFile(path));
    CountDate(record->GetDate());
    return {.record = Add(std::move(record), atFront), .isNew = true};
}

CPictureInfo* CPictureList::Add(std::unique_ptr<CPictureInfo> record, bool atFront)
{
    CPictureInfo* const added = record.get();
    std::unique_ptr<CPictureInfo>& slot = byPath[record->GetKey()];
    if (slot) {
        names.Release(*slot);
        std::replace(entries.begin(), entries.end(), slot.get(), added);
        slot = std::move(record);
    } else {
        slot = std::move(record);
        const bool first = atFront && order == Order::ByUser;
        entries.insert(first ? entries.begin() : entries.end(), added);
    }
    names.Claim(*added);
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
    const auto found = byPath.find(path);
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
    std::vector<std::unique_ptr<CPictureInfo>> removed = Remove(std::vector<int32_t>{position});
    return removed.empty() ? nullptr : std::move(removed.front());
}

std::vector<std::unique_ptr<CPictureInfo>> CPictureList::Remove(const std::vector<int32_t>& positions)
{
    std::vector<std::unique_ptr<CPictureInfo>> removed;
    bool hasLostEarliest = false;
    bool hasLostLatest = false;
    for (const int32_t position : positions) {
        if (const CPictureInfo* const record = GetAt(position)) {
            removed.push_back(TakeOut(*record));
            entries[static_cast<size_t>(position)] = nullptr;
            hasLostEarliest = hasLostEarliest || record->GetDate() == minDate;
            hasLostLatest = hasLostLatest || record->GetDate() == maxDate;
        }
    }
    entries.erase(std::remove(entries.begin(), entries.end(), nullptr), entries.end());
    if (hasLostEarliest) {
        RecountEarliest();
    }
    if (hasLostLatest) {
        RecountLatest();
    }
    return removed;
}

// Of everything but the order.
std::unique_ptr<CPictureInfo> CPictureList::TakeOut(const CPictureInfo& record)
{
    auto slot = byPath.find(record.GetKey());
    if (slot == byPath.end() || slot->second.get() != &record) {
        // Its path has changed since it came in, and no other key was free for it then.
        slot = std::find_if(byPath.begin(), byPath.end(),
                            [&](const auto& entry) { return entry.second.get() == &record; });
    }
    std::unique_ptr<CPictureInfo> taken = std::move(slot->second);
    names.Release(*taken);
    byPath.erase(slot);
    return taken;
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

void CPictureList::Reorder(const std::vector<int32_t>& newOrder)
{
    std::vector<CPictureInfo*> ordered;
    ordered.reserve(newOrder.size());
    for (const int32_t position : newOrder) {
        ordered.push_back(entries[static_cast<size_t>(position)]);
    }
    entries = std::move(ordered);
}

void CPictureList::Rekey(const QString& path)
{
    const auto old = byPath.find(path);
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

bool CPictureList::Relocate(const QString& path, const QString& newPath)
{
    const auto found = byPath.find(path);
    auto* const record =
        found != byPath.end() ? dynamic_cast<CFilePictureInfo*>(found->second.get()) : nullptr;
    if (!record || byPath.count(newPath) != 0) {
        return false;
    }
    const DateValue oldDate = record->GetDate();
    record->SetPath(newPath);
    record->SetState(LookAtFile(newPath));
    if (oldDate != 0) {
        RecountAfter(oldDate);
    }
    CountDate(record->GetDate());
    Rekey(path);
    names.Claim(*record);
    return true;
}

bool CPictureList::LookForFiles()
{
    bool isNews = false;
    bool hasLostEarliest = false;
    bool hasLostLatest = false;
    for (CPictureInfo* entry : entries) {
        auto* const record = dynamic_cast<CFilePictureInfo*>(entry);
        if (!record) {
            continue;
        }
        FileState state = LookAtFile(record->GetPath());
        const DateValue oldDate = record->GetDate();
        if (state.isThere == record->IsThere()) {
            state.date = oldDate; // taken when it came; the layouts' texts don't change by a look
            record->SetState(state);
            continue;
        }
        isNews = true;
        record->SetState(state);
        CountDate(record->GetDate());
        hasLostEarliest = hasLostEarliest || (!state.isThere && oldDate == minDate);
        hasLostLatest = hasLostLatest || (!state.isThere && oldDate == maxDate);
    }
    // Once for all: a disk takes all its pictures along.
    if (hasLostEarliest) {
        RecountEarliest();
    }
    if (hasLostLatest) {
        RecountLatest();
    }
    return isNews;
}

void CPictureList::Clear()
{
    entries.clear();
    names.Clear();
    byPath.clear();
    variables.Clear();
}

void CPictureList::SetAngle(CPictureInfo& record, int32_t angle)
{
    record.SetAngle(angle);
    names.Claim(record);
}

void CPictureList::SetNameSuffix(CPictureInfo& record, const QString& suffix)
{
    record.SetNameSuffix(suffix);
    names.Claim(record);
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

PictureListState CPictureList::GetState(const PictureListState& former) const
{
    const CFormerRecords records(former);
    PictureListState state{.entries = {}, .variables = variables, .minDate = minDate, .maxDate = maxDate};
    state.entries.reserve(entries.size());
    for (const CPictureInfo* entry : entries) {
        if (const auto* file = dynamic_cast<const CFilePictureInfo*>(entry)) {
            state.entries.emplace_back(records.Share(*file, state.entries.size()));
        } else if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(entry)) {
            state.entries.emplace_back(PictureListState::Child{.gallery = child->GetGalleryIndex(),
                                                               .angle = child->GetAngle(),
                                                               .nameSuffix = child->GetNameSuffix(),
                                                               .rest = child->GetRest()});
        }
    }
    return state;
}

void CPictureList::SetValues(const PictureListState& state)
{
    variables = state.variables;
    minDate = state.minDate;
    maxDate = state.maxDate;
}

// 0 is no date.
void CPictureList::CountDate(DateValue date)
{
    if (date == 0) {
        return;
    }
    if (minDate == 0 || date < minDate) {
        minDate = date;
    }
    if (maxDate == 0 || date > maxDate) {
        maxDate = date;
    }
}

void CPictureList::RecountAfter(DateValue removed)
{
    if (removed == minDate) {
        RecountEarliest();
    }
    if (removed == maxDate) {
        RecountLatest();
    }
}

// Odd on purpose, as in the latest: counts the entries of child galleries too, which adding them does not.
void CPictureList::RecountEarliest()
{
    minDate = 0;
    for (const CPictureInfo* entry : entries) {
        const DateValue date = entry->GetDate();
        if (entry->IsThere() && (minDate == 0 || date < minDate)) {
            minDate = date;
        }
    }
}

void CPictureList::RecountLatest()
{
    maxDate = 0;
    for (const CPictureInfo* entry : entries) {
        maxDate = std::max(maxDate, entry->GetDate());
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
