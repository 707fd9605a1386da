#include "ftpengine/messages/FTPDirectoryContent.h"

#include <algorithm>
#include <iterator>

#include "common/Text.h"

namespace {

constexpr QChar blank = QLatin1Char(' ');
constexpr QChar colon = QLatin1Char(':');

void DropBlanks(QString& text)
{
    const auto first = std::find_if(text.cbegin(), text.cend(), [](QChar c) { return c != blank; });
    text.remove(0, std::distance(text.cbegin(), first));
}

// What stands before the next blank; the text goes on after it. Empty, and nothing taken, if there is none.
QString TakeToken(QString& text)
{
    DropBlanks(text);
    const qsizetype end = text.indexOf(blank);
    if (end < 0) {
        return {};
    }
    const QString token = text.left(end);
    text.remove(0, end + 1);
    return token;
}

// The month that stands first in the calendar wins over the one that stands first in the line. Odd on
// purpose: it costs a name or two, never a listing.
qsizetype FindMonth(const QString& line)
{
    for (const char* month :
         {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"}) {
        const qsizetype position = line.indexOf(QLatin1String(month));
        if (position >= 0) {
            return position;
        }
    }
    return -1;
}

bool IsNumber(const QString& token, qsizetype maximalLength)
{
    return token.size() <= maximalLength && ParseInteger(Narrow(token)) != 0;
}

// rest: from the month on. False if no date is there; otherwise rest is what stands after it, the name.
bool TakeDate(QString& rest)
{
    TakeToken(rest);
    if (!IsNumber(TakeToken(rest), 2)) {
        return false;
    }
    const QString timeOrYear = TakeToken(rest);
    if (timeOrYear.contains(colon)) {
        DropBlanks(rest);
        return true;
    }
    if (!IsNumber(timeOrYear, 4)) {
        return false;
    }
    const QString time = TakeToken(rest);
    if (time.contains(colon)) {
        DropBlanks(rest);
    } else if (!time.isEmpty()) {
        rest = time + blank + rest; // it was the beginning of the name
    }
    return true;
}

} // namespace

std::optional<CFTPDirectoryItem> ParseListLine(const QString& line)
{
    const qsizetype permissionsEnd = line.indexOf(blank);
    if (permissionsEnd < 0) {
        return std::nullopt;
    }
    const QString permissions = line.left(permissionsEnd);
    if (permissions.size() != 10 && !permissions.contains(QLatin1String("drwx-"))) {
        return std::nullopt;
    }
    const qsizetype month = FindMonth(line);
    if (month < 0) {
        return std::nullopt;
    }
    QString rest = line.mid(month);
    if (!TakeDate(rest)) {
        return std::nullopt;
    }
    CFTPDirectoryItem item{.name = rest};
    item.isFile = !permissions.startsWith(QLatin1Char('d'));
    item.isCurrent = rest == QLatin1String(".");
    item.isParent = rest == QLatin1String("..");
    item.isDirectory = !item.isFile && !item.isCurrent && !item.isParent;
    return item;
}

CFTPDirectoryContent::CFTPDirectoryContent(const QString& directory, const QString& listing,
                                           std::vector<CFTPDirectoryItem> items)
    : directory(directory), listing(listing), items(std::move(items))
{}

CFTPDirectoryContent::CFTPDirectoryContent(const QString& directory, const QString& listing,
                                           const QString& secondText)
    : directory(directory), listing(listing), secondText(secondText)
{
    constexpr QLatin1String lineEnd("\r\n");
    qsizetype begin = 0;
    for (qsizetype end = listing.indexOf(lineEnd); end >= 0; end = listing.indexOf(lineEnd, begin)) {
        if (const auto item = ParseListLine(listing.mid(begin, end - begin))) {
            items.push_back(*item);
        }
        begin = end + lineEnd.size();
    }
}
