#include "document/clusters/PictureClusterLabel.h"

#include <QLocale>

namespace {

enum class LabelKind { Day, Days, Month, Months, Year, Years };

// Without a neighbour: a month and a year that no day has.
int MonthOf(const QDate& day)
{
    constexpr int noMonth = 13;
    return day.isValid() ? day.month() : noMonth;
}

int YearOf(const QDate& day)
{
    return day.isValid() ? day.year() : 0;
}

bool IsSameMonth(const QDate& day, const QDate& neighbour)
{
    return YearOf(day) == YearOf(neighbour) && MonthOf(day) == MonthOf(neighbour);
}

// The order of the questions counts: each takes for granted that those before it were answered with no.
LabelKind ChooseKind(const PictureClusterDays& days)
{
    const auto& [first, last, lastBefore, firstAfter] = days;
    if (first == last) {
        return LabelKind::Day;
    }
    if (IsSameMonth(first, lastBefore) || IsSameMonth(last, firstAfter)) {
        return LabelKind::Days;
    }
    // Odd on purpose: the neighbours' months count without their years, so that a March next to the March of
    // another year is called by its year.
    if (IsSameMonth(first, last) && MonthOf(lastBefore) != first.month() &&
        MonthOf(firstAfter) != first.month()) {
        return LabelKind::Month;
    }
    if (YearOf(lastBefore) == first.year() || YearOf(firstAfter) == last.year()) {
        return LabelKind::Months;
    }
    return first.year() != last.year() ? LabelKind::Years : LabelKind::Year;
}

QString LongText(const QDate& day)
{
    return QLocale::system().toString(day, QLocale::LongFormat);
}

QString ShortText(const QDate& day)
{
    return QLocale::system().toString(day, QLocale::ShortFormat);
}

// The platform has no format for a year and a month alone: their order is that of the locale's long date.
QString MonthText(const QDate& day)
{
    const QLocale locale = QLocale::system();
    const QString format = locale.dateFormat(QLocale::LongFormat);
    const QString month = locale.standaloneMonthName(day.month());
    const QString year = QString::number(day.year());
    const bool yearFirst = format.indexOf(QLatin1Char('y')) < format.indexOf(QLatin1Char('M'));
    return yearFirst ? year + QLatin1Char(' ') + month : month + QLatin1Char(' ') + year;
}

QString YearText(const QDate& day)
{
    return QString::number(day.year());
}

QString Span(const PictureClusterDays& days, QString (*toText)(const QDate&))
{
    return toText(days.first) + QStringLiteral(" - ") + toText(days.last);
}

} // namespace

QString MakePictureClusterLabel(const PictureClusterDays& days)
{
    switch (ChooseKind(days)) {
    case LabelKind::Day:
        return LongText(days.first);
    case LabelKind::Days:
        return Span(days, ShortText);
    case LabelKind::Month:
        return MonthText(days.first);
    case LabelKind::Months:
        return Span(days, MonthText);
    case LabelKind::Year:
        return YearText(days.first);
    case LabelKind::Years:
        return Span(days, YearText);
    }
    return QString();
}
