#pragma once

#include <cstdint>
#include <map>
#include <variant>

#include <QString>

#include "common/Date.h"
#include "common/Text.h"

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

    // False, and out untouched, if there is no such variable.
    bool Get(const QString& name, CVariant& out) const;
    void Set(const QString& name, const CVariant& value) { entries[Lower(name)] = value; }
    void Clear() { entries.clear(); }
    const Entries& GetEntries() const { return entries; }

private:
    Entries entries;
};
