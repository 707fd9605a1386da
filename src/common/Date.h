#pragma once

#include <QDateTime>

// A moment as the document keeps it: days since 30 December 1899 in local time, the time of day being the
// fraction. 0 means "no date".
using DateValue = double;

DateValue DateFromLocalTime(const QDateTime& moment);

// The day of a date; a time of day before the epoch belongs to the earlier day (floor, not truncation).
// Invalid for a value that is no number or lies outside QDate's range.
QDate DayOfDate(DateValue date);
