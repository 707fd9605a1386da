#include "effects/ImageEffectStamp.h"

#include <thread>

#include "TestPictures.h"
#include "effects/ImageEffect.h"
#include "effects/ImageEffectGraphicsStamp.h"
#include "effects/ImageEffectSource.h"
#include "effects/ImageEffectTextStamp.h"
#include "imaging/Canvas.h"

namespace {

constexpr Colour black{0, 0, 0, 255};
constexpr Colour red{200, 0, 0, 255};

QRect RectOf(QSize picture, QSize stamp, const CStampParams& place)
{
    return CImageEffectGraphicsStamp(QStringLiteral("w.png"), Plain(stamp, red), place)
        .GetStampRect(CCanvas(picture));
}

QString NameOf(const CImageEffect& stamp)
{
    return stamp.GetResultFileName(QStringLiteral("a.b.jpg"));
}

CImageStampParams Watermark(const QString& file, int32_t transparency = 0, const CStampParams& place = {})
{
    return {place, file, transparency};
}

} // namespace

TEST(StampRect, IsOnePixelLargerAndKeepsTheMargin)
{
    const struct {
        int position;
        QPoint expected; // of a stamp of 30 by 20 on 201 by 101, margin 7
    } rows[] = {
        {0, {85, 40}},
        {1, {7, 40}},
        {2, {163, 40}},
        {3, {7, 40}},
        {4, {85, 7}},
        {5, {7, 7}},
        {6, {163, 7}},
        {7, {7, 7}},
        {8, {85, 73}},
        {9, {7, 73}},
        {10, {163, 73}},
        {11, {7, 73}},
        {12, {85, 7}},
        {13, {7, 7}},
        {14, {163, 7}},
        {15, {7, 7}},
        // Bits outside the table say nothing.
        {16, {85, 40}},
        {-16, {85, 40}},
        {26, {163, 73}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(RectOf({201, 101}, {30, 20}, {.position = row.position, .margin = 7}),
                  QRect(row.expected, QSize(31, 21)))
            << row.position;
    }
}

TEST(StampRect, HalvesAreTruncatedTowardZero)
{
    const struct {
        int picture;
        int stamp;
        int expected;
    } rows[] = {{100, 30, 34}, {101, 30, 35}, {30, 30, 0},  {31, 30, 0},  {32, 30, 0},
                {33, 30, 1},   {29, 30, -1},  {28, 30, -1}, {27, 30, -2}, {10, 30, -10}};
    for (const auto& row : rows) {
        EXPECT_EQ(RectOf({row.picture, row.picture}, {row.stamp, row.stamp}, {}).topLeft(),
                  QPoint(row.expected, row.expected))
            << row.picture;
    }
}

TEST(StampRect, NothingKeepsItInsideThePicture)
{
    EXPECT_EQ(RectOf({20, 20}, {30, 25}, {.position = 10, .margin = 10}), QRect(-21, -16, 31, 26));
    EXPECT_EQ(RectOf({20, 20}, {5, 5}, {.position = 5, .margin = 500}), QRect(500, 500, 6, 6));
    EXPECT_EQ(RectOf({20, 20}, {5, 5}, {.position = 10, .margin = -3}), QRect(17, 17, 6, 6));
    for (const int32_t margin : {2147483647, -2147483647 - 1}) {
        for (const int32_t position : {0, 5, 10}) {
            const CImageEffectGraphicsStamp stamp(QStringLiteral("w.png"), Plain({5, 5}, red),
                                                  {.position = position, .margin = margin});
            const Colour corner = PixelAt(Applied(stamp, Plain({20, 20}, black)), {0, 0});
            EXPECT_EQ(corner, black) << margin << " " << position;
        }
    }
}

TEST(StampName, OfAWatermarkHoldsAllItsSettings)
{
    const struct {
        CImageStampParams params;
        const char* expected;
    } rows[] = {
        {Watermark(QStringLiteral("ab")), "a.bg1950as0.jpg"}, // 97 + 98
        {Watermark(QStringLiteral("ba"), 30), "a.bg1950as30.jpg"},
        {Watermark(QStringLiteral("a"), 100, {.position = 10, .margin = 32}), "a.bg97a10s100.jpg"},
        {Watermark(QStringLiteral("\u6771"), 0, {.position = 15, .margin = 31}), "a.bg26481fvs0.jpg"},
        {Watermark(QStringLiteral("\U0001F600"), 0, {.position = 0, .margin = 0}), "a.bg11218900s0.jpg"},
        {Watermark(QStringLiteral("a"), -1, {.position = -1, .margin = -33}), "a.bg97-1-11s-1.jpg"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(NameOf(CImageEffectGraphicsStamp(row.params)), QString::fromLatin1(row.expected));
    }
    EXPECT_EQ(NameOf(CImageEffectGraphicsStamp(QStringLiteral("ab"), CImage(), {.position = 6, .margin = 0})),
              QStringLiteral("a.bg19560s0.jpg"));
}

TEST(StampName, OfASignatureHoldsTextAndFontAndWrapsAround)
{
    CTextStampParams params;
    params.text = QStringLiteral("ab");
    params.font = QStringLiteral("c"); // 99
    params.font_size = 0;
    const auto named = [&](int32_t size, uint32_t colour, int32_t style) {
        params.font_size = size;
        params.color = colour;
        params.font_style = style;
        return NameOf(CImageEffectTextStamp(params));
    };
    EXPECT_EQ(named(0, 0, 0), QStringLiteral("a.bt1950a99.jpg"));
    EXPECT_EQ(named(8, 0, 0), QStringLiteral("a.bt1950a524387.jpg")); // 99 + 8 * 65536
    EXPECT_EQ(named(0, 8, 0), QStringLiteral("a.bt1950a524387.jpg")); // size and colour share their bits
    EXPECT_EQ(named(0, 0, 3), QStringLiteral("a.bt1950a50331747.jpg"));
    EXPECT_EQ(named(0, 0x8000, 0), QStringLiteral("a.bt1950a-2147483549.jpg"));
    EXPECT_EQ(named(0, 0x00ffffff, 0), QStringLiteral("a.bt1950a-65437.jpg"));
    EXPECT_EQ(named(2147483647, 0xffffffff, 2147483647), QStringLiteral("a.bt1950a-16908189.jpg"));
    params = {};
    params.text = QStringLiteral("ab");
    // "MS Sans Serif" sums up to 1134.
    EXPECT_EQ(NameOf(CImageEffectTextStamp(params)), QStringLiteral("a.bt1950a525422.jpg"));
    EXPECT_EQ(NameOf(CImageEffectTextStamp(QStringLiteral("ab"), 8)), QStringLiteral("a.bt1958a525422.jpg"));
}

TEST(StampName, SwappedLettersShareAName)
{
    CTextStampParams params;
    params.text = QStringLiteral("Anna");
    const QString name = NameOf(CImageEffectTextStamp(params));
    params.text = QStringLiteral("nAna");
    EXPECT_EQ(NameOf(CImageEffectTextStamp(params)), name);
    params.text = QStringLiteral("Anne");
    EXPECT_NE(NameOf(CImageEffectTextStamp(params)), name);
}

TEST(StampName, CharSumWrapsAroundIn32Bits)
{
    EXPECT_EQ(CharSum(QString()), 0u);
    EXPECT_EQ(CharSum(QStringLiteral("a\u00e9")), 97u + 233u);
    EXPECT_EQ(CharSum(QString(65538, QChar(0xffff))), 65534u); // 65538 * 65535 - 2^32
}

TEST(ImageEffectStamp, OneStampServesManyPicturesOnManyThreads)
{
    const CScratchFolder folder;
    const QString file = Stored(folder, Plain({10, 10}, red), QStringLiteral("w.png"));
    CTextStampParams text;
    text.text = QStringLiteral("by Anna");
    text.position = 5;
    CImageEffectCompound stamps;
    stamps.Add(
        std::make_shared<CImageEffectGraphicsStamp>(Watermark(file, 0, {.position = 10, .margin = 0})));
    stamps.Add(std::make_shared<CImageEffectTextStamp>(text));
    const QByteArray expected = Applied(stamps, Plain({80, 60}, black)).GetRgba();
    std::vector<QByteArray> results(4);
    std::vector<std::thread> threads;
    for (size_t number = 0; number < results.size(); ++number) {
        threads.emplace_back([&, number] {
            for (int round = 0; round < 4; ++round) {
                results[number] = Applied(stamps, Plain({80, 60}, black)).GetRgba();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const QByteArray& result : results) {
        EXPECT_EQ(result, expected);
    }
    EXPECT_EQ(stamps.GetResultFileName(QStringLiteral("a.jpg")).count(QLatin1Char('t')), 1);
}
