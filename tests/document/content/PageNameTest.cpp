#include "document/content/PageName.h"

namespace {

QString Split(const QString& name)
{
    const auto page = SplitPageName(name);
    return page ? QStringLiteral("%1|%2|%3").arg(page->base).arg(page->number).arg(page->extension)
                : QStringLiteral("fails");
}

} // namespace

TEST(PageName, SplitsAtTheDigitsBeforeTheLastDot)
{
    const struct {
        const char* name;
        const char* expected;
    } rows[] = {
        {"page12.html", "page|12|.html"},
        {"page.html", "page|0|.html"},
        {"12.html", "fails"},
        {".html", "fails"},
        {"page", "fails"},
        {"", "fails"},
        {"page0.html", "page|0|.html"},
        {"page007.html", "page|7|.html"},
        {"a1b2.c3.d4", "a1b2.c|3|.d4"},
        {"p1.", "p|1|."},
        {"12a.html", "12a|0|.html"},
        {"p-3.html", "p-|3|.html"},
        {"p99999999999.html", "p|2147483647|.html"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Split(QString::fromUtf8(row.name)), QString::fromUtf8(row.expected)) << row.name;
    }
    EXPECT_EQ(Split(QString()), QStringLiteral("fails"));
}

TEST(PageName, OnlyTheTenAsciiDigitsCount)
{
    EXPECT_EQ(Split(QStringLiteral("p\u0663.html")), QStringLiteral("p\u0663|0|.html"));
}

TEST(PageName, JoinsWithTheNumberAlsoForPageZero)
{
    EXPECT_EQ(JoinPageName({.base = QStringLiteral("p"), .number = 3, .extension = QStringLiteral(".htm")}),
              QStringLiteral("p3.htm"));
    EXPECT_EQ(JoinPageName({.base = QStringLiteral("p"), .number = 0, .extension = QStringLiteral(".htm")}),
              QStringLiteral("p0.htm"));
}
