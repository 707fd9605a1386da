#include "common/Date.h"

TEST(Date, CountsDaysFromTheThirtiethOfDecember1899InLocalTime)
{
    EXPECT_EQ(DateFromLocalTime(QDateTime(QDate(1899, 12, 30), QTime(0, 0))), 0.0);
    EXPECT_EQ(DateFromLocalTime(QDateTime(QDate(2000, 1, 1), QTime(12, 0))), 36526.5);
    // 12:00 UTC is 13:00 in Berlin in winter.
    const QDateTime utc(QDate(2000, 1, 1), QTime(12, 0), Qt::UTC);
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
