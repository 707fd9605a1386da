#include "common/Text.h"

TEST(Text, NumbersConvertAsAtoiDoesAndStayIn32Bits)
{
    const struct {
        const char* text;
        int32_t expected;
    } rows[] = {
        {"12", 12},
        {" \t-7", -7},
        {"+3", 3},
        {"640px", 640},
        {"", 0},
        {"abc", 0},
        {"- 4", 0},
        {"99999999999", 2147483647},
        {"0x10", 0},
        {"2147483647", 2147483647},
        {"-99999999999", -2147483647 - 1},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ParseInteger(row.text), row.expected) << row.text;
    }
}

TEST(Text, BadBytesAreReplacedWhenWidenedAndNarrowingNeverFails)
{
    EXPECT_EQ(Widen("a\xff"
                    "b"),
              QStringLiteral("a\uFFFDb"));
    EXPECT_EQ(Narrow(QStringLiteral("M\u00fcller")), "M\xc3\xbcller");
    EXPECT_EQ(Narrow(QString(QChar(0xd800))), "?");
}
