#include "effects/GeometricEffects.h"

#include "TestPictures.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "effects/ImageEffectSource.h"

namespace {

CImageEffectResize Shrinking(int width, int height)
{
    return {{width, height}, {.shrinkOnly = true, .crop = false}};
}

CImageEffectResize Cropping(int width, int height)
{
    return {{width, height}, {.shrinkOnly = false, .crop = true}};
}

} // namespace

TEST(ImageEffectResize, GivesTheSizesOfItsTable)
{
    const struct {
        QSize picture, box;
        bool shrinkOnly;
        QSize expected;
    } rows[] = {
        {{1600, 1200}, {800, 600}, true, {800, 600}}, {{1000, 700}, {640, 480}, true, {640, 448}},
        {{700, 1000}, {640, 480}, true, {336, 480}},  {{333, 500}, {200, 150}, true, {99, 150}},
        {{700, 300}, {640, 480}, true, {640, 274}},   {{100, 100}, {640, 480}, false, {480, 480}},
        {{100, 100}, {640, 480}, true, {100, 100}},   {{641, 480}, {640, 480}, true, {640, 479}},
    };
    for (const auto& row : rows) {
        const CImageEffectResize resize(row.box, {.shrinkOnly = row.shrinkOnly, .crop = false});
        const CImage result = Applied(resize, Gradient(row.picture));
        EXPECT_EQ(result.GetSize(), row.expected) << row.picture.width() << " " << row.box.width();
        EXPECT_EQ(result.GetRgba().size(), row.expected.width() * row.expected.height() * 4);
    }
}

TEST(ImageEffectResize, APictureThatFitsStaysTheSameObject)
{
    const CImage image = Gradient({640, 480});
    EXPECT_TRUE(Applied(Shrinking(640, 480), image).IsSameAs(image));
    EXPECT_TRUE(Applied(Shrinking(641, 900), image).IsSameAs(image));
    // Crop makes no difference to that.
    EXPECT_TRUE(
        Applied(CImageEffectResize({640, 480}, {.shrinkOnly = true, .crop = true}), image).IsSameAs(image));
    EXPECT_FALSE(Applied(Shrinking(640, 479), image).IsSameAs(image));
}

TEST(ImageEffectResize, CropsAroundTheMiddle)
{
    const struct {
        QSize picture, box, scaled;
        QPoint drawnAt;
    } rows[] = {
        {{1000, 700}, {640, 480}, {685, 480}, {-22, 0}},
        {{3000, 2000}, {394, 600}, {900, 600}, {-253, 0}},
    };
    for (const auto& row : rows) {
        const CImage result = Applied(Cropping(row.box.width(), row.box.height()), Gradient(row.picture));
        ASSERT_EQ(result.GetSize(), row.box);
        for (const int x : {0, 100, row.box.width() - 1}) {
            const double place = (x - row.drawnAt.x() + 0.5) / row.scaled.width();
            EXPECT_NEAR(PixelAt(result, {x, 50})[0], place * 255, 1.5) << row.box.width() << " " << x;
        }
        EXPECT_NEAR(PixelAt(result, {9, 300})[1], 300.5 / row.scaled.height() * 255, 1.5);
    }
}

TEST(ImageEffectResize, ScalesTheWholePicture)
{
    const CImage result = Applied(Shrinking(50, 50), Gradient({400, 300}));
    ASSERT_EQ(result.GetSize(), QSize(50, 37));
    for (const int x : {2, 25, 47}) {
        EXPECT_NEAR(PixelAt(result, {x, 18})[0], (x + 0.5) / 50 * 255, 1.5);
    }
}

TEST(ImageEffectResize, DegenerateBoxesFailAtSaveWithTheirReason)
{
    const CScratchFolder folder;
    const QString target = folder.Path(QStringLiteral("out.png"));
    const struct {
        QSize box;
        bool crop;
    } rows[] = {
        {{0, 0}, false},
        {{0, 0}, true},
        {{0, 50}, false},
        {{0, 50}, true},
        {{50, 0}, true},
        {{-5, 50}, false},
        {{-5, 50}, true},
        {{50, -5}, true},
        {{-5, -5}, false},
        {{-5, -5}, true},
        {{2147483647, 2147483647}, false},
        {{2147483647, 2147483647}, true},
    };
    for (const auto& row : rows) {
        CImageEffectSource source(Gradient({60, 60}));
        CImageEffectResize(row.box, {.shrinkOnly = false, .crop = row.crop}).Apply(source);
        try {
            source.Save(target);
            ADD_FAILURE() << row.box.width() << " " << row.box.height() << row.crop;
        } catch (const CUnexpectedException& failure) {
            EXPECT_TRUE(failure.GetDescription().contains(QStringLiteral("can't be made"))) << failure.what();
        }
    }
    EXPECT_FALSE(FileExists(target));
}

TEST(ImageEffectResize, ABoxWithoutHeightIsFittedByItsWidth)
{
    // The ratio of such a box counts as 0 or less, so the width decides.
    EXPECT_EQ(Applied(CImageEffectResize({50, 0}, {.shrinkOnly = true, .crop = false}), Gradient({60, 30}))
                  .GetSize(),
              QSize(50, 25));
    EXPECT_EQ(Applied(CImageEffectResize({50, -5}, {.shrinkOnly = true, .crop = false}), Gradient({60, 30}))
                  .GetSize(),
              QSize(50, 25));
}

TEST(ImageEffectRotate, TurnsClockwise)
{
    const CImage image = Gradient({1000, 700});
    const CImage right = Applied(CImageEffectRotate(1), image);
    EXPECT_EQ(right.GetSize(), QSize(700, 1000));
    EXPECT_EQ(PixelAt(right, {699, 0}), PixelAt(image, {0, 0}));
    EXPECT_EQ(PixelAt(right, {0, 0}), PixelAt(image, {0, 699}));
    EXPECT_EQ(PixelAt(Applied(CImageEffectRotate(2), image), {999, 699}), PixelAt(image, {0, 0}));
    EXPECT_EQ(PixelAt(Applied(CImageEffectRotate(3), image), {0, 999}), PixelAt(image, {0, 0}));
    EXPECT_TRUE(Applied(CImageEffectRotate(0), image).IsSameAs(image));
}

TEST(ImageEffectRotate, AnglesOutsideTheirRangeTurnByTheirRemainder)
{
    const CImage image = Gradient({10, 7});
    EXPECT_TRUE(Applied(CImageEffectRotate(4), image).IsSameAs(image));
    EXPECT_EQ(Applied(CImageEffectRotate(-1), image).GetRgba(),
              Applied(CImageEffectRotate(3), image).GetRgba());
    EXPECT_EQ(Applied(CImageEffectRotate(2147483647), image).GetSize(), QSize(7, 10));
}

TEST(ImageEffectThumbnail, LaysThePictureOnTheMiddleOfAGreyCard)
{
    const Colour red{200, 0, 0, 255};
    const Colour grey{207, 207, 207, 255};
    const CImage card = Applied(CImageEffectThumbnail({100, 75}), Plain({1000, 1000}, red));
    ASSERT_EQ(card.GetSize(), QSize(100, 75));
    EXPECT_EQ(PixelAt(card, {11, 37}), grey);
    EXPECT_EQ(PixelAt(card, {12, 0}), red);
    EXPECT_EQ(PixelAt(card, {86, 74}), red);
    EXPECT_EQ(PixelAt(card, {87, 37}), grey);
}

TEST(ImageEffectThumbnail, EnlargesASmallPicture)
{
    const CImage card = Applied(CImageEffectThumbnail({100, 75}), Plain({10, 5}, {0, 90, 0, 255}));
    ASSERT_EQ(card.GetSize(), QSize(100, 75));
    EXPECT_EQ(PixelAt(card, {0, 12}), (Colour{0, 90, 0, 255})); // 100 by 50, at 12
    EXPECT_EQ(PixelAt(card, {0, 11}), (Colour{207, 207, 207, 255}));
}

TEST(ImageEffectThumbnail, WithoutAPictureThereIsNoCard)
{
    const CScratchFolder folder;
    CImageEffectSource source(folder.Write(QStringLiteral("text.jpg"), "text"));
    CImageEffectThumbnail({100, 75}).Apply(source);
    EXPECT_NE(source.GetImage().GetSize(), QSize(100, 75));
    EXPECT_THROW(source.Save(folder.Path(QStringLiteral("out.jpg"))), CUnexpectedException);
    for (const QSize card : {QSize(0, 0), QSize(-1, 10), QSize(10, 0)}) {
        EXPECT_TRUE(Applied(CImageEffectThumbnail(card), Gradient({5, 5})).GetRgba().isEmpty());
    }
}
