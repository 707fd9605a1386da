#include "common/Variant.h"

CVariant::Type CVariant::GetType() const
{
    if (std::holds_alternative<int32_t>(value)) {
        return Type::Integer;
    }
    if (const Number* number = std::get_if<Number>(&value)) {
        return number->isDate ? Type::Date : Type::Real;
    }
    return std::holds_alternative<QString>(value) ? Type::String : Type::Empty;
}

int32_t CVariant::GetInteger() const
{
    const int32_t* integer = std::get_if<int32_t>(&value);
    return integer ? *integer : 0;
}

double CVariant::GetNumber() const
{
    const Number* number = std::get_if<Number>(&value);
    return number ? number->value : 0.0;
}

QString CVariant::GetString() const
{
    const QString* string = std::get_if<QString>(&value);
    return string ? *string : QString();
}

bool CVariableMap::Get(const QString& name, CVariant& out) const
{
    const auto entry = entries.find(Lower(name));
    if (entry == entries.end()) {
        return false;
    }
    out = entry->second;
    return true;
}
