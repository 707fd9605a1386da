#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <variant>

#include <QDateTime>
#include <QString>

#include "common/Text.h"

// A moment as the document keeps it: days since 30 December 1899 in local time, the time of day being the
// fraction. 0 means "no date".
using DateValue = double;

DateValue DateFromLocalTime(const QDateTime& moment);

// The day of a date; a time of day before the epoch belongs to the earlier day (floor, not truncation).
// Invalid for a value that is no number or lies outside QDate's range.
QDate DayOfDate(DateValue date);

// A value of the document: empty, or one of the four types that a project file keeps.
class CVariant {
public:
    // The numbers stand in project files.
    enum class Type : int { Empty = 0, Integer = 3, Real = 5, Date = 7, String = 8 };

    CVariant() = default;
    CVariant(int32_t integer) : value(integer) {}
    CVariant(const QString& string) : value(string) {}
    static CVariant Real(double number) { return CVariant(Number{number, false}); }
    static CVariant Date(DateValue date) { return CVariant(Number{date, true}); }

    Type GetType() const;
    bool IsEmpty() const { return GetType() == Type::Empty; }

    // Each answers the neutral value when the variant is of another type.
    int32_t GetInteger() const;
    double GetNumber() const; // real or date
    QString GetString() const;

    bool operator==(const CVariant& other) const = default;

private:
    struct Number {
        double value;
        bool isDate;
        bool operator==(const Number&) const = default;
    };
    explicit CVariant(Number number) : value(number) {}

    std::variant<std::monostate, int32_t, Number, QString> value;
};

// Variables by lower-cased name; a name is lower-cased on every read and every write.
class CVariableMap {
public:
    using Entries = std::map<QString, CVariant>;

    std::optional<CVariant> Find(const QString& name) const;
    void Set(const QString& name, const CVariant& value) { entries[Lower(name)] = value; }
    void Clear() { entries.clear(); }
    const Entries& GetEntries() const { return entries; }

    bool operator==(const CVariableMap&) const = default;

private:
    Entries entries;
};
