#include "effects/ImageEffectGraphicsStamp.h"

#include <QFile>

#include "TestPictures.h"
#include "effects/ImageEffect.h"
#include "effects/ImageEffectSource.h"
#include "imaging/Canvas.h"

namespace {

constexpr Colour black{0, 0, 0, 255};
constexpr Colour red{200, 0, 0, 255};

CImageStampParams Watermark(const QString& file, int32_t transparency = 0, const CStampParams& place = {})
{
    return {place, file, transparency};
}

} // namespace

TEST(ImageEffectGraphicsStamp, IsLaidUnscaledOnThePicture)
{
    const CImageEffectGraphicsStamp stamp(QStringLiteral("w.png"), Gradient({30, 20}),
                                          {.position = 10, .margin = 7});
    const CImage stamped = Applied(stamp, Plain({201, 101}, black));
    ASSERT_EQ(stamped.GetSize(), QSize(201, 101));
    for (const QPoint place : {QPoint(0, 0), QPoint(29, 19), QPoint(13, 4)}) {
        EXPECT_EQ(PixelAt(stamped, QPoint(163, 73) + place), PixelAt(Gradient({30, 20}), place));
    }
    // The rectangle is one pixel larger than the watermark, which has nothing there.
    EXPECT_EQ(PixelAt(stamped, {193, 80}), black);
    EXPECT_EQ(PixelAt(stamped, {170, 93}), black);
    EXPECT_EQ(PixelAt(stamped, {162, 73}), black);
}

TEST(ImageEffectGraphicsStamp, TransparencyIsAPercentOfItsAlpha)
{
    const CScratchFolder folder;
    const struct {
        int alpha;
        int transparency;
        int expected; // of 200, over black
    } rows[] = {{255, 0, 200},   {255, 40, 120}, {255, 100, 0}, {255, 150, 0},
                {255, -50, 200}, {102, 0, 80},   {102, 50, 40}};
    for (const auto& row : rows) {
        const QString file = Stored(folder, Plain({10, 10}, {200, 0, 0, row.alpha}), QStringLiteral("w.png"));
        const CImageEffectGraphicsStamp stamp(Watermark(file, row.transparency));
        EXPECT_EQ(PixelAt(Applied(stamp, Plain({50, 50}, black)), {25, 25}),
                  (Colour{row.expected, 0, 0, 255}))
            << row.alpha << " " << row.transparency;
    }
}

TEST(ImageEffectGraphicsStamp, AWatermarkThatCannotBeReadLeavesThePicture)
{
    const CScratchFolder folder;
    const QString jpeg = Stored(folder, Gradient({40, 40}), QStringLiteral("w.jpg"));
    const QByteArray bytes = folder.Read(QStringLiteral("w.jpg"));
    const QString files[] = {
        QString(),
        folder.Path(QStringLiteral("missing.png")),
        folder.Path(),
        folder.Write(QStringLiteral("text.png"), "text"),
        folder.Write(QStringLiteral("empty.png"), ""),
        // A good header and no pixels.
        folder.Write(QStringLiteral("head.jpg"), bytes.left(bytes.indexOf("\xff\xda") + 2)),
    };
    const CImage picture = Gradient({60, 50});
    for (const QString& file : files) {
        EXPECT_EQ(Applied(CImageEffectGraphicsStamp(Watermark(file)), picture).GetRgba(), picture.GetRgba())
            << qPrintable(file);
    }
    EXPECT_NE(Applied(CImageEffectGraphicsStamp(Watermark(jpeg)), picture).GetRgba(), picture.GetRgba());
}

TEST(ImageEffectGraphicsStamp, AWatermarkLargerThanThePictureIsCut)
{
    const CImageEffectGraphicsStamp stamp(QStringLiteral("w"), Gradient({255, 255}), {});
    const CImage stamped = Applied(stamp, Plain({55, 35}, black));
    ASSERT_EQ(stamped.GetSize(), QSize(55, 35));
    EXPECT_EQ(PixelAt(stamped, {0, 0}),
              (Colour{100, 110, 0, 255})); // at (55 - 255 - 1) / 2, (35 - 255 - 1) / 2
    EXPECT_EQ(PixelAt(stamped, {54, 34}), (Colour{154, 144, 0, 255}));
}

TEST(ImageEffectGraphicsStamp, AnotherImageIsForLaterPictures)
{
    CImageEffectGraphicsStamp stamp(Watermark(QString(), 0, {.position = 5, .margin = 0}));
    const CImage before = Applied(stamp, Plain({9, 9}, black));
    stamp.SetImage(Plain({3, 3}, red));
    const CImage after = Applied(stamp, Plain({9, 9}, black));
    EXPECT_EQ(PixelAt(before, {1, 1}), black);
    EXPECT_EQ(PixelAt(after, {1, 1}), red);
}

TEST(ImageEffectGraphicsStamp, OutlivesItself)
{
    CImage stamped;
    {
        const CImageEffectGraphicsStamp stamp(QStringLiteral("w"), Plain({3, 3}, red), {});
        stamped = Applied(stamp, Plain({9, 9}, black));
    }
    EXPECT_EQ(PixelAt(stamped, {4, 4}), red);
}

TEST(ImageEffectGraphicsStamp, TransparentPicturesStayTransparent)
{
    const CImageEffectGraphicsStamp stamp(QStringLiteral("w"), Plain({3, 3}, red),
                                          {.position = 5, .margin = 0});
    const CImage stamped = Applied(stamp, Plain({9, 9}, {10, 20, 30, 0}));
    EXPECT_EQ(PixelAt(stamped, {1, 1}), red);
    EXPECT_EQ(PixelAt(stamped, {5, 5})[3], 0);
}

TEST(ImageEffectGraphicsStamp, ItsFileIsReadOnceForAllPictures)
{
    const CScratchFolder folder;
    const QString file = Stored(folder, Plain({10, 10}, red), QStringLiteral("w.png"));
    const CImageEffectGraphicsStamp stamp(Watermark(file));
    EXPECT_EQ(PixelAt(Applied(stamp, Plain({50, 50}, black)), {25, 25}), red);
    ASSERT_TRUE(QFile::remove(file));
    EXPECT_EQ(PixelAt(Applied(stamp, Plain({60, 40}, black)), {30, 20}), red);
}
