#include "ftpengine/messages/FTPDirectoryContent.h"

#include <QStringList>

namespace {

// "f name", "d name", "." or "..", "-" if the line isn't read.
QString Parsed(const QString& line)
{
    const auto item = ParseListLine(line);
    if (!item) {
        return QStringLiteral("-");
    }
    QString kinds;
    kinds += item->isFile ? QStringLiteral("f") : QString();
    kinds += item->isDirectory ? QStringLiteral("d") : QString();
    kinds += item->isCurrent ? QStringLiteral("c") : QString();
    kinds += item->isParent ? QStringLiteral("p") : QString();
    return kinds + QLatin1Char(' ') + item->name;
}

} // namespace

TEST(ParseListLine, ReadsTheFormOfUnix)
{
    const struct {
        const char* line;
        const char* expected;
    } rows[] = {
        {"drwxr-xr-x   2 u g 4096 Jan  5 12:30 My Pictures", "d My Pictures"},
        {"-rw-r--r-- 1 u g 10 Feb 29 2004 a.txt", "f a.txt"},
        {"-rw-r--r-- 1 u g 10 Feb 29  2004 a.txt", "f a.txt"},
        {"-rw-r--r-- 1 u g 10 Feb 29 2004 my fine file.txt", "f my fine file.txt"},
        {"-rw-r--r-- 1 u g 10 Feb 29 2004 12:30 a.txt", "f a.txt"}, // a year and a time
        {"drwxr-xr-x 2 u g 4096 Jan 5 12:30 .", "c ."},
        {"drwxr-xr-x 2 u g 4096 Jan 5 12:30 ..", "p .."},
        {"-rw-r--r-- 1 u g 10 Jan 5 12:30 .", "fc ."},
        {"lrwxrwxrwx 1 u g 4 Jan 5 12:30 a -> b", "f a -> b"},
        {"-rw-r--r-- 1 u g 10 Dec 31 23:59    spaced  out ", "f spaced  out "},
        {"-rw-r--r-- 1 u g 10 Dec 31 23:59 ", "f "},
        {"total 0", "-"},
        {"", "-"},
        {" ", "-"},
        {"drwxr-xr-x", "-"},
        {"drwxr-xr-x+ 2 u g 4096 Jan 5 12:30 a", "-"},   // 11 characters
        {"drwx-wx-wx+ 2 u g 4096 Jan 5 12:30 a", "d a"}, // unless it contains "drwx-"
        {"drwx------. 2 u g 4096 Jan 5 12:30 a", "d a"},
        {"-rw-r--r--. 1 u g 10 Jan 5 12:30 a", "-"},
        {"xdrwx- 1 u g 10 Jan 5 12:30 a", "f a"},
        {"01-05-04 12:30PM <DIR> My Pictures", "-"}, // begins with a date
        {"0123456789 no month here", "-"},
        {"-rw-r--r-- 1 Decker g 10 May 5 12:30 a", "f a"},    // May goes before Dec
        {"-rw-r--r-- 1 Janet g 10 May 5 12:30 a", "-"},       // Jan goes before May: "g" is no day
        {"-rw-r--r-- 1 Dec 7 2000 12 x 10 a", "f 12 x 10 a"}, // a wrong name, but no line lost
        {"-rw-r--r-- 1 u g 10 jan 5 12:30 a", "-"},
        {"-rw-r--r-- 1 u g 10 Jan 005 12:30 a", "-"},
        {"-rw-r--r-- 1 u g 10 Jan 0 12:30 a", "-"},
        {"-rw-r--r-- 1 u g 10 Jan x 12:30 a", "-"},
        {"-rw-r--r-- 1 u g 10 Jan 99 12:30 a", "f a"}, // no calendar
        {"-rw-r--r-- 1 u g 10 Jan 5 20045 a", "-"},
        {"-rw-r--r-- 1 u g 10 Jan 5 0 a", "-"},
        {"-rw-r--r-- 1 u g 10 Jan 5 name", "-"},
        {"-rw-r--r-- 1 u g 10 Jan 5 ", "-"},
        {"-rw-r--r-- 1 u g 10 Jan", "-"},
        {"-rw-r--r-- 1 u g 10 Jan 5 2004 ", "f "},
        {"-rw-r--r-- 1 u g 10 Jan 5 2004 \xc3\xa4 \xe2\x82\xac", "f \xc3\xa4 \xe2\x82\xac"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Parsed(QString::fromUtf8(row.line)), QString::fromUtf8(row.expected)) << row.line;
    }
}

TEST(ParseListLine, ADateInMayWithDecInTheOwnersName)
{
    // The calendar's order decides, so the true month wins here, and loses where it comes later in the year.
    EXPECT_EQ(Parsed(QStringLiteral("-rw-r--r-- 1 Dec g 10 May 5 12:30 a")), QStringLiteral("f a"));
    EXPECT_EQ(Parsed(QStringLiteral("-rw-r--r-- 1 May g 10 Dec 5 12:30 a")), QStringLiteral("-"));
}

TEST(DirectoryContent, KeepsTheLinesThatCanBeRead)
{
    const QString listing = QStringLiteral("total 8\r\n"
                                           "drwxr-xr-x 2 u g 4096 Jan 5 12:30 .\r\n"
                                           "-rw-r--r-- 1 u g 10 Jan 5 12:30 a.txt\r\n"
                                           "\r\n"
                                           "drwxr-xr-x 2 u g 4096 Jan 5 12:30 b\r\n"
                                           "drwxr-xr-x 2 u g 4096 Jan 5 12:30 behind the last line end");
    const CFTPDirectoryContent content(QStringLiteral("a/b"), listing, QStringLiteral("-rw ignored\r\n"));
    EXPECT_EQ(content.GetDirectory(), QStringLiteral("a/b"));
    EXPECT_EQ(content.GetListing(), listing);
    EXPECT_EQ(content.GetSecondText(), QStringLiteral("-rw ignored\r\n"));
    ASSERT_EQ(content.GetItems().size(), 3u);
    EXPECT_EQ(content.GetItems()[1].name, QStringLiteral("a.txt"));
    EXPECT_EQ(content.GetItems()[2].name, QStringLiteral("b"));
}

TEST(DirectoryContent, AnUnreadableOrEmptyListingHasNoItems)
{
    for (const char* listing :
         {"", "total 0\r\n", "01-05-04 12:30PM <DIR> a\r\n", "\r\n\r\n", "\n\n", "\r", "x"}) {
        EXPECT_TRUE(CFTPDirectoryContent({}, QString::fromLatin1(listing)).GetItems().empty()) << listing;
    }
}

TEST(ParseListLine, KnowsAllMonthsInTheOrderOfTheCalendar)
{
    const QStringList months =
        QStringLiteral("Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec").split(QLatin1Char(' '));
    for (qsizetype i = 0; i < months.size(); ++i) {
        EXPECT_EQ(Parsed(QStringLiteral("-rw-r--r-- 1 u g 10 %1 5 12:30 a").arg(months[i])),
                  QStringLiteral("f a"))
            << qPrintable(months[i]);
        if (i > 0) {
            // The later month stands first in the line, as the owner, and loses.
            EXPECT_EQ(
                Parsed(QStringLiteral("-rw-r--r-- 1 %1 g 10 %2 5 12:30 a").arg(months[i], months[i - 1])),
                QStringLiteral("f a"))
                << qPrintable(months[i]);
        }
    }
}
