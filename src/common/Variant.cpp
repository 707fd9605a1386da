#include "common/Variant.h"

#include <cmath>

namespace {

const QDate& Epoch()
{
    static const QDate epoch(1899, 12, 30);
    return epoch;
}

constexpr double MillisecondsOfDay = 24.0 * 60 * 60 * 1000;

} // namespace

DateValue DateFromLocalTime(const QDateTime& moment)
{
    const QDateTime local = moment.toLocalTime();
    return static_cast<double>(Epoch().daysTo(local.date())) +
           local.time().msecsSinceStartOfDay() / MillisecondsOfDay;
}

QDate DayOfDate(DateValue date)
{
    constexpr double farthestDay = 700'000'000.0; // about two million years, well inside QDate
    const double day = std::floor(date);
    if (!(std::abs(day) <= farthestDay)) {
        return QDate();
    }
    return Epoch().addDays(static_cast<qint64>(day));
}

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

std::optional<CVariant> CVariableMap::Find(const QString& name) const
{
    const auto entry = entries.find(Lower(name));
    return entry == entries.end() ? std::nullopt : std::optional(entry->second);
}
