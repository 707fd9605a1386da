#include "common/Variant.h"

#include <QTimeZone>

TEST(Variant, KnowsItsTypeAndAnswersNeutrallyForOthers)
{
    const struct {
        CVariant variant;
        CVariant::Type type;
        int32_t integer;
        double number;
        QString string;
    } rows[] = {
        {CVariant(), CVariant::Type::Empty, 0, 0.0, QString()},
        {CVariant(7), CVariant::Type::Integer, 7, 0.0, QString()},
        {CVariant::Real(1.5), CVariant::Type::Real, 0, 1.5, QString()},
        {CVariant::Date(2.5), CVariant::Type::Date, 0, 2.5, QString()},
        {CVariant(QStringLiteral("x")), CVariant::Type::String, 0, 0.0, QStringLiteral("x")},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.variant.GetType(), row.type);
        EXPECT_EQ(row.variant.GetInteger(), row.integer);
        EXPECT_EQ(row.variant.GetNumber(), row.number);
        EXPECT_EQ(row.variant.GetString(), row.string);
        EXPECT_EQ(row.variant.IsEmpty(), row.type == CVariant::Type::Empty);
    }
}

TEST(Variant, AStringWithoutTextIsAValueAndADateIsNoPlainNumber)
{
    EXPECT_FALSE(CVariant(QString()).IsEmpty());
    EXPECT_FALSE(CVariant::Real(5) == CVariant::Date(5));
}

TEST(VariableMap, NamesAreCaseInsensitive)
{
    CVariableMap map;
    map.Set(QStringLiteral("Title"), QStringLiteral("a"));
    map.Set(QStringLiteral("TITLE"), QStringLiteral("b"));
    EXPECT_EQ(map.Find(QStringLiteral("tItLe")), CVariant(QStringLiteral("b")));
    EXPECT_EQ(map.GetEntries().size(), 1u);
    EXPECT_EQ(map.GetEntries().begin()->first, QStringLiteral("title"));
}

TEST(VariableMap, AMissingNameHasNoValue)
{
    EXPECT_FALSE(CVariableMap().Find(QStringLiteral("title")));
}

TEST(Date, CountsDaysFromTheThirtiethOfDecember1899InLocalTime)
{
    EXPECT_EQ(DateFromLocalTime(QDateTime(QDate(1899, 12, 30), QTime(0, 0))), 0.0);
    EXPECT_EQ(DateFromLocalTime(QDateTime(QDate(2000, 1, 1), QTime(12, 0))), 36526.5);
    // 12:00 UTC is 13:00 in Berlin in winter.
    const QDateTime utc(QDate(2000, 1, 1), QTime(12, 0), QTimeZone::utc());
    EXPECT_EQ(DateFromLocalTime(utc), DateFromLocalTime(utc.toLocalTime()));
    EXPECT_NEAR(DateFromLocalTime(utc), 36526.0 + 13.0 / 24, 1e-9);
}

TEST(Date, TheDayOfADateIsRoundedDown)
{
    EXPECT_EQ(DayOfDate(36526.99), QDate(2000, 1, 1));
    EXPECT_EQ(DayOfDate(-0.25), QDate(1899, 12, 29));
    EXPECT_FALSE(DayOfDate(std::numeric_limits<double>::quiet_NaN()).isValid());
    EXPECT_FALSE(DayOfDate(std::numeric_limits<double>::infinity()).isValid());
    EXPECT_FALSE(DayOfDate(-1e300).isValid());
}
