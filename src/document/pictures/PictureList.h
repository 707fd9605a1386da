#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "document/pictures/PictureInfo.h"
#include "document/pictures/PictureListState.h"
#include "document/pictures/PictureNames.h"

// What adding a path has come to.
struct AddedPicture {
    CPictureInfo* record = nullptr; // null if nothing may be added there
    bool isNew = false;             // false: it was there already, and has stayed as it was

    explicit operator bool() const { return record != nullptr; }
};

// The records of a gallery or of a folder, in display order and by path, with the earliest and the latest
// date of its files. Letter case counts: "IMG_1.JPG" and "img_1.jpg" are two pictures. Owns the records. One
// thread at a time.
class CPictureList {
public:
    enum class Order { ByUser, ByDate };

    // A list in the order of dates ignores every wish for a place.
    explicit CPictureList(Order order = Order::ByUser) : order(order) {}
    CPictureList(const CPictureList&) = delete;
    CPictureList& operator=(const CPictureList&) = delete;

    // A file record with the variable addition_date set to now. A path that the list has already stays as it
    // is, with its texts, angle, place and date of addition.
    AddedPicture AddFile(const QString& path, int32_t angle, bool atFront);
    AddedPicture AddFile(const QString& path, const QString& thumbnailPath, int32_t angle, bool atFront);
    // A record of the same key is replaced in place. Its date counts only when CountDateOf says so.
    CPictureInfo* Add(std::unique_ptr<CPictureInfo> record, bool atFront);
    void CountDateOf(const CPictureInfo& record) { CountDate(record.GetDate()); }

    // Null for a position outside the list.
    const CPictureInfo* GetAt(int32_t position) const;
    CPictureInfo* GetAt(int32_t position);
    int32_t GetCount() const { return static_cast<int32_t>(entries.size()); }

    // The record of a path; null if there is none. A look-up, no scan.
    const CPictureInfo* FindRecord(const QString& path) const;
    // The position of a path, or -1.
    int32_t Find(const QString& path) const;
    int32_t FindPosition(const CPictureInfo* record) const;

    // Hands the record over; dropping it deletes it. Null for a position outside the list.
    std::unique_ptr<CPictureInfo> Remove(int32_t position);
    // Many at once, in time that grows with the list and not with its square. Positions outside the list
    // count for nothing.
    std::vector<std::unique_ptr<CPictureInfo>> Remove(const std::vector<int32_t>& positions);

    // Positions outside the list change nothing.
    void Swap(int32_t a, int32_t b);
    // Towards the end only; a record that stands at the position or after it stays where it is.
    void MoveTo(const CPictureInfo* record, int32_t position);
    // order: where each entry stands now, by its new position; every position once.
    void Reorder(const std::vector<int32_t>& order);
    // To be called with the old path after a change of a record's path.
    void Rekey(const QString& path);
    // Gives a file record another path; texts, angle and place stay. False, and nothing changed, for a path
    // without a file record and for one that the list has already.
    bool Relocate(const QString& path, const QString& newPath);
    // Looks which files are there. True if one has come or gone since they were last looked for.
    bool LookForFiles();
    // Keeps the dates.
    void Clear();

    // Changes of a record of the list by which its published files get other names. angle: quarter turns
    // clockwise, 0 to 3.
    void SetAngle(CPictureInfo& record, int32_t angle);
    void SetNameSuffix(CPictureInfo& record, const QString& suffix);

    // images_count, min_creation_date, max_creation_date and the list's own variables. Empty for a name that
    // is not there.
    CVariant GetVariable(const QString& name) const;
    void SetVariable(const QString& name, const CVariant& value) { variables.Set(name, value); }
    const CVariableMap& GetVariables() const { return variables; }
    CVariableMap& GetVariables() { return variables; }

    // former: one of the same list, or an empty one.
    PictureListState GetState(const PictureListState& former) const;
    // Of a list whose entries are those of the state already: all that it has beside them.
    void SetValues(const PictureListState& state);

    // Of its files that are there; 0 if none has a date.
    DateValue GetMinDate() const { return minDate; }
    DateValue GetMaxDate() const { return maxDate; }

private:
    std::unique_ptr<CPictureInfo> TakeOut(const CPictureInfo& record);
    void CountDate(DateValue date);
    void RecountAfter(DateValue removed);
    void RecountEarliest();
    void RecountLatest();
    void SortLast();

    const Order order;
    std::map<QString, std::unique_ptr<CPictureInfo>> byPath;
    std::vector<CPictureInfo*> entries;
    CPictureNames names;
    CVariableMap variables;
    DateValue minDate = 0; // 0: none
    DateValue maxDate = 0;
};
