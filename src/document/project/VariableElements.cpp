#include <charconv>
#include <cmath>

#include "common/Variant.h"
#include "document/project/GalleryElement.h"

namespace {

// Every digit of the number, so that a date reads back equal to the last bit. The decimal point is a point
// whatever the user's locale.
QString AllDigits(double number)
{
    constexpr int significantDigits = 78;
    char text[significantDigits + 16]; // and a sign, a point, an exponent
    const auto end =
        std::to_chars(text, text + sizeof text, number, std::chars_format::general, significantDigits);
    return QString::fromLatin1(text, static_cast<qsizetype>(end.ptr - text));
}

void WriteValue(CXmlElement& element, const CVariant& value)
{
    switch (value.GetType()) {
    case CVariant::Type::Integer:
        element.SetAttribute("lVal", value.GetInteger());
        return;
    case CVariant::Type::Real:
    case CVariant::Type::Date:
        element.SetAttribute("doubleVal", AllDigits(value.GetNumber()));
        return;
    case CVariant::Type::String:
        element.SetAttribute("bstrVal", value.GetString());
        return;
    case CVariant::Type::Empty:
        return;
    }
}

// Empty for a number that is none.
CVariant ReadNumber(const CXmlElement& element, CVariant::Type type)
{
    bool isNumber = false;
    const double number = GetAttributeText(element, "doubleVal").GetString().trimmed().toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number)) {
        return CVariant();
    }
    return type == CVariant::Type::Date ? CVariant::Date(number) : CVariant::Real(number);
}

CVariant ReadInteger(const CXmlElement& element)
{
    if (GetAttributeText(element, "lVal").IsEmpty()) {
        return CVariant(0);
    }
    const std::optional<int32_t> number = FindAttributeLong(element, "lVal");
    return number ? CVariant(*number) : CVariant();
}

// Empty for a value that can't be read.
CVariant ReadValue(const CXmlElement& element)
{
    switch (static_cast<CVariant::Type>(FindAttributeLong(element, "vt").value_or(0))) {
    case CVariant::Type::Integer:
        return ReadInteger(element);
    case CVariant::Type::String:
        return CVariant(GetAttributeText(element, "bstrVal").GetString());
    case CVariant::Type::Real:
    case CVariant::Type::Date:
        return ReadNumber(element, static_cast<CVariant::Type>(*FindAttributeLong(element, "vt")));
    case CVariant::Type::Empty:
        break;
    }
    return CVariant();
}

// Of a type, if only one that isn't known here. Empty variables are written with type 0.
bool SaysType(const CXmlElement& element)
{
    return !GetAttributeText(element, "vt").IsEmpty() && FindAttributeLong(element, "vt") != 0;
}

} // namespace

void WriteVariables(CXmlElement& parent, const char* tag, const CVariableMap& variables)
{
    for (const auto& [name, value] : variables.GetEntries()) {
        CXmlElement element = parent.AppendChild(tag);
        WriteValue(element, value);
        element.SetAttribute("name", name);
        element.SetAttribute("vt", static_cast<int32_t>(value.GetType()));
    }
}

void ReadVariables(const CXmlElement& parent, const char* tag, CVariableMap& variables, CXmlRest& rest)
{
    for (const CXmlElement& element : parent.GetChildren(tag)) {
        const CVariant value = ReadValue(element);
        const CVariant name = GetAttributeText(element, "name");
        if (!name.IsEmpty() && !value.IsEmpty()) {
            variables.Set(name.GetString(), value);
            rest.KeepPart(element, {{"name", "vt", "lVal", "bstrVal", "doubleVal"}, {}}, {"name"});
        } else if (SaysType(element)) {
            rest.Keep(element);
        }
    }
}
