#include "shell/dialogs/StampValues.h"

#include <gtest/gtest.h>

TEST(StampPlace, HasTheNinePositionsInTheOrderOfTheGrid)
{
    const struct {
        const char* objectName;
        int position;
    } rows[] = {{"topLeft", 5}, {"top", 4},        {"topRight", 6}, {"left", 1},        {"centre", 0},
                {"right", 2},   {"bottomLeft", 9}, {"bottom", 8},   {"bottomRight", 10}};
    for (size_t i = 0; i < StampPlaces.size(); ++i) {
        EXPECT_STREQ(StampPlaces[i].objectName, rows[i].objectName);
        EXPECT_EQ(StampPlaces[i].position, rows[i].position);
    }
}

TEST(StampPlace, FindsThePlaceOfEveryPosition)
{
    EXPECT_EQ(CanonicalPosition(3), 1);
    EXPECT_EQ(CanonicalPosition(12), 4);
    EXPECT_EQ(CanonicalPosition(15), 5);
    EXPECT_EQ(CanonicalPosition(-1), 5);
    EXPECT_EQ(CanonicalPosition(16), 0);
    for (const StampPlace& place : StampPlaces) {
        EXPECT_EQ(CanonicalPosition(place.position), place.position);
    }
}

TEST(StampFont, KeepsTheHeightAsTheSizeWithoutConversion)
{
    CTextStampParams params;
    StoreLogFont({.height = -16, .weight = 400, .faceName = QStringLiteral("DejaVu Sans")}, params);
    EXPECT_EQ(params.font, QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(params.font_size, 16);
    EXPECT_EQ(params.font_style, 0);
    StoreLogFont({.height = 20}, params);
    EXPECT_EQ(params.font_size, 20);
}

TEST(StampFont, ExchangesEachStyleByItsBit)
{
    const struct {
        int style;
        LogFont font;
    } rows[] = {
        {0, {.height = -8, .weight = 400}},
        {1, {.height = -8, .weight = 700}},
        {2, {.height = -8, .weight = 400, .italic = true}},
        {4, {.height = -8, .weight = 400, .underline = true}},
        {8, {.height = -8, .weight = 400, .strikeOut = true}},
        {15, {.height = -8, .weight = 700, .italic = true, .underline = true, .strikeOut = true}},
    };
    for (const auto& row : rows) {
        CTextStampParams params;
        params.font.clear();
        params.font_style = row.style;
        EXPECT_EQ(LogFontOf(params), row.font) << row.style;
        CTextStampParams stored;
        StoreLogFont(row.font, stored);
        EXPECT_EQ(stored.font_style, row.style);
    }
}

TEST(StampFont, IsBoldAbove400)
{
    const struct {
        int weight;
        int style;
    } rows[] = {{100, 0}, {400, 0}, {401, 1}, {900, 1}};
    for (const auto& row : rows) {
        CTextStampParams params;
        StoreLogFont({.weight = row.weight}, params);
        EXPECT_EQ(params.font_style, row.style) << row.weight;
    }
}

TEST(StampFont, CutsAFaceNameAt32Characters)
{
    CTextStampParams params;
    params.font = QString(40, QLatin1Char('f'));
    EXPECT_EQ(LogFontOf(params).faceName.size(), 32);
}

TEST(StampFont, CountsInPointsForTheFontDialog)
{
    QFont font(QStringLiteral("DejaVu Serif"), 12, QFont::Bold, true);
    font.setUnderline(true);
    const LogFont expected{.height = -16,
                           .weight = 700,
                           .italic = true,
                           .underline = true,
                           .faceName = QStringLiteral("DejaVu Serif")};
    EXPECT_EQ(FromQFont(font), expected);
    EXPECT_EQ(FromQFont(ToQFont(expected)), expected);
    font.setPixelSize(30);
    EXPECT_EQ(FromQFont(font).height, -30);
    // A size that draws nothing is no size of a font.
    EXPECT_GT(ToQFont({.height = 0}).pointSizeF(), 0);
}

TEST(StampColour, HasRedInTheLowByte)
{
    EXPECT_EQ(ToQColor(0x030201), QColor(1, 2, 3));
    EXPECT_EQ(FromQColor(QColor(1, 2, 3)), 0x030201u);
    EXPECT_EQ(FromQColor(Qt::black), 0u);
}
