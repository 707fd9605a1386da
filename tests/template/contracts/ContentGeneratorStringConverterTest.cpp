#include "template/contracts/ContentGeneratorStringConverter.h"

#include <cmath>
#include <limits>

#include <QLocale>

#include "PageRun.h"
#include "common/Exceptions.h"

namespace {

QString Converted(const CVariant& value)
{
    CContentGeneratorStringConverter generator;
    return generator.VariantToString(value);
}

QString ShortDate(int year, int month, int day)
{
    return QLocale::system().toString(QDate(year, month, day), QLocale::ShortFormat);
}

} // namespace

TEST(ContentGeneratorStringConverter, IntegersArePlainDecimals)
{
    EXPECT_EQ(Converted(0), QStringLiteral("0"));
    EXPECT_EQ(Converted(1234567), QStringLiteral("1234567"));
    EXPECT_EQ(Converted(-2147483647 - 1), QStringLiteral("-2147483648"));
    EXPECT_EQ(Converted(2147483647), QStringLiteral("2147483647"));
}

TEST(ContentGeneratorStringConverter, RealsHaveNoGroupSeparators)
{
    const struct {
        double number;
        const char* expected;
    } rows[] = {
        {0.0, "0"},
        {1234567.5, "1234567.5"},
        {-0.25, "-0.25"},
        {0.1 + 0.2, "0.3"},
        {3.0, "3"},
        {123456789012345.0, "123456789012345"},
        {1e15, "1000000000000000"},
        {1e16, "10000000000000000"},
        {-1.25e16, "-12500000000000000"},
        {1e20, "100000000000000000000"},
        {123456789012345.0e9, "123456789012345000000000"},
        {0.0001, "0.0001"},
        {1e-7, "0.0000001"},
        {-1.5e-10, "-0.00000000015"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Converted(CVariant::Real(row.number)), QString::fromLatin1(row.expected));
    }
}

TEST(ContentGeneratorStringConverter, ADateDropsItsTimeOfDayByRoundingDown)
{
    const struct {
        double date;
        int year, month, day;
    } rows[] = {
        {0.0, 1899, 12, 30},      {0.99, 1899, 12, 30},   {1.0, 1899, 12, 31},    {-0.25, 1899, 12, 29},
        {-1.0, 1899, 12, 29},     {-1.5, 1899, 12, 28},   {39448.75, 2008, 1, 1}, {45351.0, 2024, 2, 29},
        {45351.999, 2024, 2, 29}, {-36521.5, 1800, 1, 1},
    };
    for (const auto& row : rows) {
        const QString expected = ShortDate(row.year, row.month, row.day);
        EXPECT_EQ(Converted(CVariant::Date(row.date)), expected) << row.date;
        EXPECT_TRUE(expected.contains(QString::number(row.year % 100)));
    }
}

TEST(ContentGeneratorStringConverter, StringsStayAsTheyAreAndNothingIsEmpty)
{
    EXPECT_EQ(Converted(QStringLiteral(" a<b>\u00fc ")), QStringLiteral(" a<b>\u00fc "));
    EXPECT_EQ(Converted(QString()), QString());
    EXPECT_EQ(Converted(CVariant()), QString());
}

TEST(ContentGeneratorStringConverter, AValueWithoutATextThrows)
{
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double number : {std::nan(""), infinity, -infinity}) {
        EXPECT_THROW(Converted(CVariant::Real(number)), CUnexpectedException);
        EXPECT_THROW(Converted(CVariant::Date(number)), CUnexpectedException);
    }
    EXPECT_THROW(Converted(CVariant::Date(1e300)), CUnexpectedException);
    EXPECT_THROW(Converted(CVariant::Date(-1e12)), CUnexpectedException);
}

TEST(ContentGeneratorStringConverter, WritesNothingThoughABindPassStillReadsVariables)
{
    const Page page =
        ParsePage("<%pageheader%><%picture id=\"<%=gallery.id%>\" width=\"1\" height=\"1\" href=\"\"%>"
                  "<%textspan property=\"gallery.t\" default=\"d\" name=\"n\"%>"
                  "<%banner width=\"1\" height=\"1\"%><%advertisement name=\"a\"%>");
    CTestIterator iterator;
    iterator.gallery.Set(QStringLiteral("id"), QStringLiteral("cover"));
    CContentGeneratorStringConverter generator;
    iterator.Reset();
    page->Bind(iterator, generator);
    EXPECT_EQ(iterator.bound, std::vector<QString>{QStringLiteral("cover")});
    EXPECT_EQ(page->GenerateToString(iterator, generator), "");
}
