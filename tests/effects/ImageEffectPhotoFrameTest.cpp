#include "effects/ImageEffectPhotoFrame.h"

#include <QRect>

#include "TestPictures.h"
#include "common/Exceptions.h"
#include "effects/ImageEffectSource.h"

namespace {

constexpr Colour nothing{255, 255, 255, 0};
constexpr Colour shadow{0, 0, 0, 191};
constexpr Colour paper{0xf5, 0xf5, 0xf5, 255};
constexpr Colour outline{0x80, 0x80, 0x80, 255};
constexpr Colour red{200, 0, 0, 255};

CImage Framed(const CImage& picture, int frameWidth = 12, int shadowOffset = 5, int shadowOpacity = 75)
{
    CImageEffectSource source(picture);
    CImageEffectPhotoFrame(frameWidth, shadowOffset, shadowOpacity).Apply(source);
    return source.GetImage();
}

// Of each kind of pixel the bounding box and the count.
struct Region {
    QRect box;
    int count = 0;
};

Region RegionOf(const CImage& image, const Colour& colour)
{
    const QByteArray rgba = image.GetRgba();
    const QSize size = image.GetSize();
    Region region;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            bool same = true;
            for (int c = 0; c < 4; ++c) {
                same = same && static_cast<uint8_t>(rgba.at((y * size.width() + x) * 4 + c)) == colour[c];
            }
            if (same) {
                region.box |= QRect(x, y, 1, 1);
                ++region.count;
            }
        }
    }
    return region;
}

} // namespace

TEST(ImageEffectPhotoFrame, HasALetterInTheNameAndNoMeasures)
{
    EXPECT_EQ(CImageEffectPhotoFrame(12, 5, 75).GetResultFileName(QStringLiteral("a.b.jpg")),
              QStringLiteral("a.bf.jpg"));
    EXPECT_EQ(CImageEffectPhotoFrame(1, 2, 3).GetResultFileName(QStringLiteral("a.jpg")),
              QStringLiteral("af.jpg"));
}

TEST(ImageEffectPhotoFrame, LaysShadowPaperOutlineAndPictureOverEachOther)
{
    const CImage framed = Framed(Plain({800, 600}, red));
    ASSERT_EQ(framed.GetSize(), QSize(800, 600));
    // Picture: 771 by 571 at 12, 12.
    EXPECT_EQ(RegionOf(framed, red).box, QRect(12, 12, 771, 571));
    EXPECT_EQ(RegionOf(framed, red).count, 771 * 571);
    // The outline's right and bottom lines lie one pixel outside the paper of 795 by 595.
    EXPECT_EQ(RegionOf(framed, outline).box, QRect(0, 0, 796, 596));
    EXPECT_EQ(RegionOf(framed, outline).count, 2 * 796 + 2 * 594);
    EXPECT_EQ(RegionOf(framed, paper).box, QRect(1, 1, 794, 594));
    EXPECT_EQ(RegionOf(framed, paper).count, 794 * 594 - 771 * 571);
    // Shadow: 795 by 595 at 5, 5, where paper and outline leave it.
    EXPECT_EQ(RegionOf(framed, shadow).box, QRect(5, 5, 795, 595));
    EXPECT_EQ(RegionOf(framed, shadow).count, 795 * 595 - 791 * 591);
    EXPECT_EQ(RegionOf(framed, nothing).count, 800 * 600 - 771 * 571 - (2 * 796 + 2 * 594) -
                                                   (794 * 594 - 771 * 571) - (795 * 595 - 791 * 591));
}

TEST(ImageEffectPhotoFrame, TwoCornersStayTransparent)
{
    const CImage framed = Framed(Plain({100, 80}, red));
    for (int y = 0; y < 5; ++y) {
        for (int x = 96; x < 100; ++x) {
            EXPECT_EQ(PixelAt(framed, {x, y}), nothing) << x << " " << y;
        }
    }
    for (int y = 76; y < 80; ++y) {
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(PixelAt(framed, {x, y}), nothing) << x << " " << y;
        }
    }
    // Of each of the two corners of 5 by 5 the outline takes one line.
    EXPECT_EQ(PixelAt(framed, {95, 0}), outline);
    EXPECT_EQ(PixelAt(framed, {0, 75}), outline);
}

TEST(ImageEffectPhotoFrame, APngKeepsTheTransparentCornersAndAJpegTurnsThemWhite)
{
    const CScratchFolder folder;
    const CImage framed = Framed(Plain({100, 80}, red));
    EXPECT_EQ(PixelAt(CImage::FromFile(Stored(folder, framed, QStringLiteral("a.png"))), {99, 0})[3], 0);
    const Colour corner = PixelAt(CImage::FromFile(Stored(folder, framed, QStringLiteral("a.jpg"))), {99, 0});
    for (int c = 0; c < 4; ++c) {
        EXPECT_GT(corner[c], 245);
    }
}

TEST(ImageEffectPhotoFrame, ThePictureLosesAsManyPixelsInBothDirections)
{
    const CImage framed = Framed(Gradient({129, 429}));
    // 100 by 400 at 12, 12, drawn into that rectangle as it is.
    EXPECT_NEAR(PixelAt(framed, {62, 100})[0], 50.5 / 100 * 255, 2);
    EXPECT_NEAR(PixelAt(framed, {62, 312})[1], 300.5 / 400 * 255, 2);
    EXPECT_EQ(PixelAt(framed, {11, 100}), paper);
    EXPECT_EQ(PixelAt(framed, {112, 100}), paper);
}

TEST(ImageEffectPhotoFrame, OpacityIsTruncatedAndKeptWithinItsPercent)
{
    const struct {
        int opacity;
        int alpha;
    } rows[] = {{0, 0}, {1, 2}, {50, 127}, {75, 191}, {100, 255}, {-5, 0}, {2000000000, 255}};
    for (const auto& row : rows) {
        EXPECT_EQ(PixelAt(Framed(Plain({60, 60}, red), 12, 5, row.opacity), {59, 59})[3], row.alpha)
            << row.opacity;
    }
}

TEST(ImageEffectPhotoFrame, MeasuresLargerThanThePictureLeaveNoPicture)
{
    const CImage small = Framed(Plain({20, 20}, red));
    EXPECT_EQ(small.GetSize(), QSize(20, 20));
    EXPECT_EQ(RegionOf(small, red).count, 0);
    EXPECT_GT(RegionOf(small, paper).count, 0);
    for (const int measure : {-2147483647 - 1, -300, 300, 2147483647}) {
        EXPECT_EQ(Framed(Plain({20, 20}, red), measure, 5, 75).GetRgba().size(), 20 * 20 * 4);
        EXPECT_EQ(Framed(Plain({20, 20}, red), 12, measure, 75).GetRgba().size(), 20 * 20 * 4);
    }
}

TEST(ImageEffectPhotoFrame, AnUnreadablePictureGetsNoFrame)
{
    const CScratchFolder folder;
    CImageEffectSource source(folder.Write(QStringLiteral("text.jpg"), "text"));
    CImageEffectPhotoFrame(12, 5, 75).Apply(source);
    EXPECT_THROW(source.Save(folder.Path(QStringLiteral("out.png"))), CUnexpectedException);
}
