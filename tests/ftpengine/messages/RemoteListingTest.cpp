#include "ftpengine/messages/RemoteListing.h"

#include "common/Text.h"

namespace {

const QDateTime Now(QDate(2026, 3, 10), QTime(12, 0), Qt::UTC);

// "d name", "- name|12|2026-01-31T12:00:00"; empty for no entry.
std::string Written(const std::optional<RemoteEntry>& entry)
{
    if (!entry) {
        return {};
    }
    QString text = (entry->isDirectory ? QStringLiteral("d ") : QStringLiteral("- ")) + entry->name;
    text += QLatin1Char('|') + (entry->size ? QString::number(*entry->size) : QString());
    text += QLatin1Char('|');
    if (entry->modified) {
        text += QDateTime::fromSecsSinceEpoch(*entry->modified, Qt::UTC)
                    .toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    }
    return Narrow(text);
}

} // namespace

TEST(RemoteListing, ReadsLinesForPrograms)
{
    const struct {
        const char* line;
        const char* expected;
    } rows[] = {
        {"type=file;size=12;modify=20260131120000; a name.jpg", "- a name.jpg|12|2026-01-31 12:00:00"},
        {"Type=dir;Modify=20260131120000.123;Size=4096; b", "d b||2026-01-31 12:00:00"},
        {"size=3;type=FILE; c", "- c|3|"},
        {"type=file;  two blanks", "-  two blanks|"
                                   "|"},
        {"type=cdir;modify=20260131120000; .", ""},
        {"type=pdir; ..", ""},
        {"type=cdir; /home/anna", ""},
        {"type=dir; ..", ""},
        {"type=file; a/b", ""}, // leads elsewhere
        {"type=OS.unix=slink:/a;size=3; link", "- link||"},
        {"type=file;size=-1;modify=x; d", "- d||"},
        {"type=file;size=99999999999999999999; e", "- e||"},
        {"type=file;modify=20261331250000; f", "- f||"},
        {"size=12; no type", ""},
        {"type=file;", ""},
        {"type=file; ", ""},
        {"", ""},
        {"drwxr-xr-x 2 u g 4096 Jan  5 12:30 a", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Written(ReadFactsLine(QString::fromUtf8(row.line))), row.expected) << row.line;
    }
}

TEST(RemoteListing, ReadsLinesForPeople)
{
    const struct {
        const char* line;
        const char* expected;
    } rows[] = {
        {"-rw-r--r--    1 1000     1000          512 Jan  5 12:30 a.jpg", "- a.jpg|512|2026-01-05 12:30:00"},
        {"drwxr-xr-x    2 ftp      ftp          4096 Mar 10 11:59 My Pictures",
         "d My Pictures||2026-03-10 11:59:00"},
        {"-rw-r--r-- 1 u g 10 Feb 29  2004 a.txt", "- a.txt|10|2004-02-29 00:00:00"},
        {"-rw-r--r-- 1 u g 10 Dec 31 23:59 late",
         "- late|10|2025-12-31 23:59:00"}, // of the last twelve months
        {"-rw-r--r-- 1 u g 10 Mar 11 08:00 clock", "- clock|10|2026-03-11 08:00:00"},
        {"-rw-r--r-- 1 Dec May 10 May  1  2020 x Jan 5 12:30 y", "- x Jan 5 12:30 y|10|2020-05-01 00:00:00"},
        {"-rw-r--r-- 1 u 10 Jan  5 12:30 no group", "- no group|10|2026-01-05 12:30:00"},
        {"-rw-r--r--+ 1 u g 10 Jan  5 12:30 acl", "- acl|10|2026-01-05 12:30:00"},
        {"-rw-r--r--. 1 u g 10 Jan  5 12:30 label", "- label|10|2026-01-05 12:30:00"},
        {"lrwxrwxrwx 1 u g 7 Jan  5 12:30 here -> /there", "- here||2026-01-05 12:30:00"},
        {"-rw-r--r-- 1 u g 10 Jan  5 12:30  blank", "-  blank|10|2026-01-05 12:30:00"},
        {"-rw-r--r-- 1 u g 10 2025-12-24 18:00 iso", "- iso|10|2025-12-24 18:00:00"},
        {"-rw-r--r-- 1 u g 10 Feb 30  2004 no day", "- no day|10|"},
        {"-rw-r--r-- 1 u g 10 Jan  5 99:30 no time", "- no time|10|"},
        {"-rw-r--r-- 1 u g 10 Jan  5 12:30 a/b", ""},
        {"drwxr-xr-x 2 u g 4096 Jan  5 12:30 .", ""},
        {"drwxr-xr-x 2 u g 4096 Jan  5 12:30 ..", ""},
        {"drwxr-xr-x 2 u g 4096 Jan  5 12:30 .vistorama", "d .vistorama||2026-01-05 12:30:00"},
        {"01-05-26  12:30PM       <DIR>          a folder", "d a folder||2026-01-05 12:30:00"},
        {"01-05-2026  12:05AM                  12 b.jpg", "- b.jpg|12|2026-01-05 00:05:00"},
        {"12-31-99  09:30AM  7 old", "- old|7|1999-12-31 09:30:00"},
        {"12-31-99  17:30  7 noon", "- noon|7|1999-12-31 17:30:00"},
        {"13-31-99  09:30AM  7 no month", "- no month|7|"},
        {"total 12", ""},
        {"", ""},
        {"hello there", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Written(ReadListedLine(QString::fromUtf8(row.line), Now)), row.expected) << row.line;
    }
    EXPECT_EQ(
        Written(ReadListedLine(
            QStringLiteral("-rw-r--r-- 1 u g 10 Jan  5 12:30 ") + QString(5000, QLatin1Char('x')), Now)),
        "");
}

TEST(RemoteListing, ReadsWholeListings)
{
    const auto listed = ReadListed("total 2\r\ndrwxr-xr-x 2 u g 1 Jan  5 12:30 a\r\n"
                                   "-rw-r--r-- 1 u g 3 Jan  5 12:30 b\n-rw-r--r-- 1 u g 3 Jan  5 12:30 c",
                                   Now);
    ASSERT_EQ(listed.size(), 3u);
    EXPECT_EQ(Written(listed[2]), "- c|3|2026-01-05 12:30:00");
    const auto facts = ReadFacts("type=cdir; .\r\ntype=file;size=1; b\xc3\xa4r\r\n");
    ASSERT_EQ(facts.size(), 1u);
    EXPECT_EQ(Written(facts[0]), "- b\xc3\xa4r|1|");
    EXPECT_TRUE(ReadFacts("").empty());
}
