#include "ftpengine/messages/RemoteListing.h"

#include <algorithm>

#include <QRegularExpression>

#include "common/Text.h"

namespace {

// Longer lines are no lines of a listing.
constexpr qsizetype maximalLine = 4096;

bool IsItselfOrAbove(const QString& name)
{
    return name == QLatin1String(".") || name == QLatin1String("..");
}

std::optional<int64_t> NumberOf(const QString& digits)
{
    bool isNumber = false;
    const qlonglong number = digits.toLongLong(&isNumber);
    return isNumber && number >= 0 ? std::optional<int64_t>(number) : std::nullopt;
}

std::optional<int64_t> SecondsOf(const QDate& date, const QTime& time)
{
    if (!date.isValid() || !time.isValid()) {
        return std::nullopt;
    }
    return QDateTime(date, time, Qt::UTC).toSecsSinceEpoch();
}

// "20260131120000" or "20260131120000.123" (RFC 3659, 2.3)
std::optional<int64_t> SecondsOfStamp(const QString& stamp)
{
    const QDate date = QDate::fromString(stamp.left(8), QStringLiteral("yyyyMMdd"));
    return SecondsOf(date, QTime::fromString(stamp.mid(8, 6), QStringLiteral("hhmmss")));
}

int MonthOf(const QString& name)
{
    static const QStringList months = {QStringLiteral("Jan"), QStringLiteral("Feb"), QStringLiteral("Mar"),
                                       QStringLiteral("Apr"), QStringLiteral("May"), QStringLiteral("Jun"),
                                       QStringLiteral("Jul"), QStringLiteral("Aug"), QStringLiteral("Sep"),
                                       QStringLiteral("Oct"), QStringLiteral("Nov"), QStringLiteral("Dec")};
    return static_cast<int>(months.indexOf(name)) + 1;
}

// "12:30" without a year is of the last twelve months; a day more is granted, as clocks differ.
std::optional<int64_t> SecondsOfRecent(int month, int day, const QTime& time, const QDateTime& now)
{
    const int year = now.date().year();
    const auto thisYear = SecondsOf(QDate(year, month, day), time);
    constexpr int64_t daySeconds = 24 * 60 * 60;
    if (thisYear && *thisYear <= now.toSecsSinceEpoch() + daySeconds) {
        return thisYear;
    }
    return SecondsOf(QDate(year - 1, month, day), time);
}

QTime TimeOf(const QString& text)
{
    return QTime::fromString(text, QStringLiteral("h:mm"));
}

std::optional<int64_t> UnixSeconds(const QRegularExpressionMatch& match, const QDateTime& now)
{
    const QString isoDate = match.captured(QStringLiteral("iso"));
    if (!isoDate.isEmpty()) {
        return SecondsOf(QDate::fromString(isoDate, Qt::ISODate),
                         TimeOf(match.captured(QStringLiteral("isotime")).left(5)));
    }
    const int month = MonthOf(match.captured(QStringLiteral("month")));
    const int day = match.captured(QStringLiteral("day")).toInt();
    const QString timeOrYear = match.captured(QStringLiteral("when"));
    if (timeOrYear.contains(QLatin1Char(':'))) {
        return SecondsOfRecent(month, day, TimeOf(timeOrYear), now);
    }
    return SecondsOf(QDate(timeOrYear.toInt(), month, day), QTime(0, 0));
}

// "drwxr-xr-x 2 owner group 4096 Jan  5 12:30 a name", "-rw-r--r--+ 1 owner 10 2026-01-05 12:30 a name". The
// size is the last number before the date; one blank stands before the name, others belong to it.
std::optional<RemoteEntry> ReadUnixLine(const QString& line, const QDateTime& now)
{
    static const QRegularExpression pattern(QStringLiteral(
        "^(?<kind>[-a-zA-Z])[-a-zA-Z]{9}[^ ]*\\s+.*?(?<size>\\d+)\\s+"
        "(?:(?<month>Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec)\\s+(?<day>\\d{1,2})\\s+"
        "(?<when>\\d{1,2}:\\d{2}|\\d{4})|(?<iso>\\d{4}-\\d{2}-\\d{2})\\s+(?<isotime>\\d{2}:\\d{2}[^ ]*))"
        " (?<name>.+)$"));
    const QRegularExpressionMatch match = pattern.match(line);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QChar kind = match.captured(QStringLiteral("kind"))[0];
    RemoteEntry entry{.name = match.captured(QStringLiteral("name")),
                      .isDirectory = kind == QLatin1Char('d'),
                      .size = std::nullopt,
                      .modified = UnixSeconds(match, now)};
    if (kind == QLatin1Char('-')) {
        entry.size = NumberOf(match.captured(QStringLiteral("size")));
    } else if (kind == QLatin1Char('l')) {
        entry.name = entry.name.section(QStringLiteral(" -> "), 0, 0);
    }
    return entry;
}

// "01-05-26  12:30PM       <DIR>          a name", "01-05-2026  09:30AM  12 a name"
std::optional<RemoteEntry> ReadDosLine(const QString& line)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(\\d{2})-(\\d{2})-(\\d{4}|\\d{2})\\s+(\\d{1,2}):(\\d{2})\\s*([AP]M)?\\s+"
                       "(<DIR>|<JUNCTION>|\\d+)\\s+(.+)$"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(line);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QString yearDigits = match.captured(3);
    const int year = yearDigits.toInt();
    const int fullYear = yearDigits.size() == 4 ? year : year + (year < 70 ? 2000 : 1900);
    int hour = match.captured(4).toInt();
    const QString half = match.captured(6).toUpper();
    if (!half.isEmpty()) {
        hour = hour % 12 + (half == QLatin1String("PM") ? 12 : 0);
    }
    return RemoteEntry{.name = match.captured(8),
                       .isDirectory = match.captured(7).startsWith(QLatin1Char('<')),
                       .size = NumberOf(match.captured(7)),
                       .modified =
                           SecondsOf(QDate(fullYear, match.captured(1).toInt(), match.captured(2).toInt()),
                                     QTime(hour, match.captured(5).toInt()))};
}

template <class Reader>
std::vector<RemoteEntry> ReadLines(std::string_view listing, const Reader& readLine)
{
    std::vector<RemoteEntry> entries;
    while (!listing.empty()) {
        const std::size_t end = std::min(listing.find('\n'), listing.size());
        std::string_view line = listing.substr(0, end);
        listing.remove_prefix(std::min(end + 1, listing.size()));
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (auto entry = readLine(Widen(line))) {
            entries.push_back(*std::move(entry));
        }
    }
    return entries;
}

// A name with a separator would lead elsewhere.
bool IsFit(const RemoteEntry& entry)
{
    return !entry.name.isEmpty() && !IsItselfOrAbove(entry.name) && !entry.name.contains(QLatin1Char('/')) &&
           !entry.name.contains(QChar(0));
}

} // namespace

std::optional<RemoteEntry> ReadFactsLine(const QString& line)
{
    const qsizetype cut = line.indexOf(QLatin1Char(' '));
    if (cut < 0 || line.size() > maximalLine) {
        return std::nullopt;
    }
    RemoteEntry entry;
    entry.name = line.mid(cut + 1);
    QString kind;
    for (const QString& fact : line.left(cut).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString name = fact.section(QLatin1Char('='), 0, 0).toLower();
        const QString value = fact.section(QLatin1Char('='), 1);
        if (name == QLatin1String("type")) {
            kind = value.toLower();
        } else if (name == QLatin1String("size")) {
            entry.size = NumberOf(value);
        } else if (name == QLatin1String("modify")) {
            entry.modified = SecondsOfStamp(value);
        }
    }
    // "cdir" and "pdir" are the directory itself and the one above.
    if (!IsFit(entry) || kind.isEmpty() || kind == QLatin1String("cdir") || kind == QLatin1String("pdir")) {
        return std::nullopt;
    }
    entry.isDirectory = kind == QLatin1String("dir");
    if (kind != QLatin1String("file")) {
        entry.size.reset();
    }
    return entry;
}

std::optional<RemoteEntry> ReadListedLine(const QString& line, const QDateTime& now)
{
    if (line.size() > maximalLine) {
        return std::nullopt;
    }
    auto entry = ReadUnixLine(line, now);
    if (!entry) {
        entry = ReadDosLine(line);
    }
    return entry && IsFit(*entry) ? entry : std::nullopt;
}

std::vector<RemoteEntry> ReadFacts(std::string_view listing)
{
    return ReadLines(listing, ReadFactsLine);
}

std::vector<RemoteEntry> ReadListed(std::string_view listing, const QDateTime& now)
{
    return ReadLines(listing, [&now](const QString& line) { return ReadListedLine(line, now); });
}
