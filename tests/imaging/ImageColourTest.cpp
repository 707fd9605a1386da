#include <vips/vips8>

#include "SampleFiles.h"

namespace {

const QSize sampleSize(120, 90);

// Slow ramps through the whole cube, so that JPEG's own loss stays small.
Colour Ramps(int x, int y)
{
    return {x * 2, y * 255 / 90, 255 - (x + y), 255};
}

QByteArray Converted(const ColourSpace& space, const QByteArray& rgba)
{
    return Paint(sampleSize, [&](int x, int y) {
        return ToStandardRgb(space, PixelOf(rgba, sampleSize, {x, y}));
    });
}

} // namespace

TEST(ImageColour, AProfileIsAppliedByItsFormulas)
{
    const CScratchFolder folder;
    const QByteArray jpeg = JpegOf(sampleSize, Ramps, {.quality = 100});
    const QByteArray untagged = Opened(folder, jpeg).GetRgba();
    for (const ColourSpace& space : {displayP3, adobeRgb}) {
        const QByteArray tagged = Opened(folder, WithProfile(jpeg, IccProfileOf(space))).GetRgba();
        EXPECT_LT(MeanError(tagged, Converted(space, untagged)), 1.0);
        EXPECT_GT(MeanError(tagged, untagged), 4.0); // else the profile wouldn't matter
    }
}

TEST(ImageColour, AProfileIsAppliedToReducedPicturesAsWell)
{
    const CScratchFolder folder;
    const QSize size(sampleSize * 10);
    const QByteArray jpeg = JpegOf(size, [](int x, int y) { return Ramps(x / 10, y / 10); });
    const QByteArray untagged = Opened(folder, jpeg).Resampled(sampleSize).GetRgba();
    const CImage tagged = Opened(folder, WithProfile(jpeg, IccProfileOf(displayP3)));
    EXPECT_LT(MeanError(tagged.Resampled(sampleSize).GetRgba(), Converted(displayP3, untagged)), 1.5);
}

TEST(ImageColour, PicturesInSrgbKeepTheirValues)
{
    const CScratchFolder folder;
    const QByteArray jpeg = JpegOf(sampleSize, Ramps, {.quality = 100});
    const QByteArray untagged = Opened(folder, jpeg).GetRgba();
    EXPECT_LT(MeanError(untagged, Paint(sampleSize, Ramps)), 1.0);
    EXPECT_EQ(Opened(folder, WithProfile(jpeg, IccProfileOf(standardRgb))).GetRgba(), untagged);
}

TEST(ImageColour, ABrokenProfileIsIgnored)
{
    const CScratchFolder folder;
    const QByteArray jpeg = JpegOf(sampleSize, Ramps);
    const QByteArray untagged = Opened(folder, jpeg).GetRgba();
    for (const QByteArray& profile :
         {QByteArray("no profile at all"), IccProfileOf(displayP3).left(300), QByteArray(500, '\0')}) {
        EXPECT_EQ(Opened(folder, WithProfile(jpeg, profile)).GetRgba(), untagged);
    }
}

TEST(ImageColour, AProfileOfAnotherKindOfPictureIsIgnored)
{
    const CScratchFolder folder;
    const QString path = folder.Path(QStringLiteral("grey.jpg"));
    const vips::VImage grey = vips::VImage::black(40, 40) + 90;
    grey.cast(VIPS_FORMAT_UCHAR)
        .copy(vips::VImage::option()->set("interpretation", VIPS_INTERPRETATION_B_W))
        .jpegsave(qPrintable(path), vips::VImage::option()->set("strip", true));
    const QByteArray plain = folder.Read(QStringLiteral("grey.jpg"));
    const CImage image = Opened(folder, WithProfile(plain, IccProfileOf(displayP3)));
    EXPECT_EQ(PixelOf(image.GetRgba(), image.GetSize(), {5, 5}), (Colour{90, 90, 90, 255}));
}

TEST(ImageColour, CmykBecomesRgb)
{
    const CScratchFolder folder;
    const QString path = folder.Path(QStringLiteral("cmyk.jpg"));
    // No ink, cyan, and black, in three stripes.
    const vips::VImage none = vips::VImage::black(32, 32, vips::VImage::option()->set("bands", 4));
    const vips::VImage cyan = none + std::vector<double>{255, 0, 0, 0};
    const vips::VImage black = none + std::vector<double>{0, 0, 0, 255};
    const vips::VImage stripes =
        none.cast(VIPS_FORMAT_UCHAR)
            .join(cyan.cast(VIPS_FORMAT_UCHAR), VIPS_DIRECTION_HORIZONTAL)
            .join(black.cast(VIPS_FORMAT_UCHAR), VIPS_DIRECTION_HORIZONTAL)
            .copy(vips::VImage::option()->set("interpretation", VIPS_INTERPRETATION_CMYK));
    stripes.jpegsave(qPrintable(path), vips::VImage::option()->set("Q", 100)->set("strip", true));
    const CImage image = CImage::FromFile(path);
    ASSERT_EQ(image.GetSize(), QSize(96, 32));
    const QByteArray rgba = image.GetRgba();
    const Colour paper = PixelOf(rgba, image.GetSize(), {10, 16});
    const Colour sea = PixelOf(rgba, image.GetSize(), {48, 16});
    const Colour ink = PixelOf(rgba, image.GetSize(), {86, 16});
    EXPECT_GT(paper[0] + paper[1] + paper[2], 3 * 245);
    EXPECT_LT(sea[0], 60);
    EXPECT_GT(sea[2], 180);
    EXPECT_LT(ink[0] + ink[1] + ink[2], 3 * 70);
}

TEST(ImageColour, CmykWithAProfileIsConvertedByIt)
{
    // Soft colours, which ink can print: there and back again they stay nearly what they were.
    const Painter soft = [](int x, int y) {
        return Colour{110 + x / 2, 120 + y / 2, 150 - x / 4, 255};
    };
    const CScratchFolder folder;
    const QString plain = folder.Path(QStringLiteral("plain.png"));
    ASSERT_EQ(CImage::FromRgba(sampleSize, Paint(sampleSize, soft))
                  .Save(plain, {.format = ImageEncoding::Format::Png})
                  .status,
              ImageSaveResult::Status::Saved);
    const QString path = folder.Path(QStringLiteral("cmyk.jpg"));
    vips::VImage::new_from_file(qPrintable(plain))
        .flatten()
        .icc_transform("cmyk", vips::VImage::option()->set("input_profile", "srgb"))
        .jpegsave(qPrintable(path), vips::VImage::option()->set("Q", 100));
    ASSERT_TRUE(folder.Read(QStringLiteral("cmyk.jpg")).contains("ICC_PROFILE"));
    EXPECT_LT(MeanError(CImage::FromFile(path).GetRgba(), Paint(sampleSize, soft)), 3.0);
}
