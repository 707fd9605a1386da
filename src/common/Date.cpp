#include "common/Date.h"

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
