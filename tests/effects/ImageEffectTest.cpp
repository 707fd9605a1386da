#include <QFile>

#include "TestPictures.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "effects/ImageEffectCompound.h"
#include "effects/ImageEffectProxy.h"
#include "effects/ImageEffectRename.h"
#include "effects/ImageEffectResize.h"
#include "effects/ImageEffectRotate.h"
#include "effects/ImageEffectSource.h"
#include "effects/ImageEffectThumbnail.h"

namespace {

CImage Applied(const CImageEffect& effect, const CImage& image)
{
    CImageEffectSource source(image);
    effect.Apply(source);
    return source.GetImage();
}

CImageEffectResize Shrinking(int width, int height)
{
    return {{width, height}, {.shrinkOnly = true, .crop = false}};
}

CImageEffectResize Cropping(int width, int height)
{
    return {{width, height}, {.shrinkOnly = false, .crop = true}};
}

QString ResultName(const CImageEffect& effect, const char* name)
{
    return effect.GetResultFileName(QString::fromLatin1(name));
}

CImageEffectCompound PageChain(int angle, QSize box)
{
    CImageEffectCompound chain;
    chain.Add(std::make_shared<CImageEffectRename>());
    if (angle != 0) {
        chain.Add(std::make_shared<CImageEffectRotate>(angle));
    }
    chain.Add(std::make_shared<CImageEffectResize>(box, CImageEffectResize::Options{}));
    return chain;
}

} // namespace

TEST(ImageEffect, EveryParameterIsInTheName)
{
    EXPECT_EQ(ResultName(Shrinking(640, 480), "a.jpg"), QStringLiteral("a640480.jpg"));
    EXPECT_EQ(ResultName(Cropping(640, 480), "a.jpg"), QStringLiteral("a640480d.jpg"));
    EXPECT_EQ(ResultName(CImageEffectRotate(1), "a.jpg"), QStringLiteral("a_r1.jpg"));
    EXPECT_EQ(ResultName(CImageEffectRotate(2), "a.jpg"), QStringLiteral("a_r2.jpg"));
    EXPECT_EQ(ResultName(CImageEffectRotate(3), "a.b.png"), QStringLiteral("a.b_r3.png"));
    EXPECT_EQ(ResultName(CImageEffectRotate(0), "a.jpg"), QStringLiteral("a_r0.jpg"));
    EXPECT_EQ(ResultName(CImageEffectRotate(-7), "a.jpg"), QStringLiteral("a_r-7.jpg"));
    EXPECT_EQ(ResultName(CImageEffectThumbnail({100, 75}), "a.jpg"), QStringLiteral("a10075.jpg"));
    EXPECT_EQ(ResultName(Shrinking(0, -5), "a.jpg"), QStringLiteral("a0-5.jpg"));
}

TEST(ImageEffect, AChainAppliesNamesAndPixelsInItsOrder)
{
    const auto rotate = std::make_shared<CImageEffectRotate>(1);
    const auto resize = std::make_shared<CImageEffectResize>(QSize(640, 480), CImageEffectResize::Options{});
    CImageEffectCompound first;
    first.Add(rotate);
    first.Add(resize);
    CImageEffectCompound second;
    second.Add(resize);
    second.Add(rotate);
    EXPECT_EQ(ResultName(first, "a.jpg"), QStringLiteral("a_r1640480.jpg"));
    EXPECT_EQ(ResultName(second, "a.jpg"), QStringLiteral("a640480_r1.jpg"));
    const CImage image = Gradient({1000, 700});
    EXPECT_EQ(Applied(first, image).GetSize(), QSize(336, 480));
    EXPECT_EQ(Applied(second, image).GetSize(), QSize(448, 640));
}

TEST(ImageEffect, AnEmptyChainChangesNothing)
{
    CImageEffectCompound chain;
    const CImage image = Gradient({9, 9});
    EXPECT_EQ(ResultName(chain, "a b.GIF"), QStringLiteral("a b.GIF"));
    EXPECT_TRUE(Applied(chain, image).IsSameAs(image));
    chain.Add(std::make_shared<CImageEffectRotate>(1));
    chain.Clear();
    EXPECT_TRUE(Applied(chain, image).IsSameAs(image));
}

TEST(ImageEffect, AProxyStandsForItsTarget)
{
    const auto target = std::make_shared<CImageEffectRotate>(1);
    CImageEffectCompound chain;
    chain.Add(std::make_shared<CImageEffectProxy>(target));
    EXPECT_EQ(ResultName(chain, "a.jpg"), QStringLiteral("a_r1.jpg"));
    EXPECT_EQ(Applied(chain, Gradient({9, 4})).GetSize(), QSize(4, 9));
}

TEST(ImageEffect, RenamingLeavesThePicture)
{
    const CImage image = Gradient({9, 9});
    EXPECT_TRUE(Applied(CImageEffectRename(), image).IsSameAs(image));
}

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

TEST(ImageEffect, AnUnreadablePictureGoesThroughAnyChainAndFailsAtSave)
{
    const CScratchFolder folder;
    const QString path = folder.Write(QStringLiteral("text.jpg"), "text");
    CImageEffectCompound chain;
    chain.Add(std::make_shared<CImageEffectRotate>(1));
    chain.Add(std::make_shared<CImageEffectResize>(
        QSize(64, 48), CImageEffectResize::Options{.shrinkOnly = false, .crop = true}));
    chain.Add(std::make_shared<CImageEffectResize>(
        QSize(64, 48), CImageEffectResize::Options{.shrinkOnly = false, .crop = false}));
    chain.Add(std::make_shared<CImageEffectThumbnail>(QSize(30, 30)));
    CImageEffectSource source(path);
    chain.Apply(source);
    try {
        source.Save(folder.Path(QStringLiteral("out.jpg")));
        FAIL();
    } catch (const CUnexpectedException& failure) {
        EXPECT_TRUE(failure.GetDescription().endsWith(
            QStringLiteral("The picture '%1' could not be read: It is not a picture of a known format.")
                .arg(path)))
            << failure.what();
    }
}

TEST(ImageEffect, SeveralChainsShareOneDecoding)
{
    const CScratchFolder folder;
    const QString path = Stored(folder, Gradient({400, 300}), QStringLiteral("My photo.jpg"));
    const CImage opened = CImage::FromFile(path);
    const QString out = folder.Path(QStringLiteral("out/"));
    MakeDirectoryPath(out);
    const struct {
        int angle;
        QSize box;
        const char* name;
        QSize expected;
    } rows[] = {
        {0, {40, 30}, "My10photo4030.jpg", {40, 30}},
        {1, {60, 60}, "My10photo_r16060.jpg", {45, 60}},
        {0, {500, 500}, "My10photo500500.jpg", {400, 300}},
    };
    std::vector<std::pair<QString, CImageEffectSource>> results;
    for (const auto& row : rows) {
        const CImageEffectCompound chain = PageChain(row.angle, row.box);
        results.emplace_back(chain.GetResultFileName(out + ExtractLastName(path)),
                             CImageEffectSource(opened, path));
        chain.Apply(results.back().second);
        EXPECT_EQ(results.back().first, out + QLatin1String(row.name));
    }
    results[0].second.Save(results[0].first);
    ASSERT_TRUE(QFile::remove(path)); // nobody needs it any more
    for (size_t i = 0; i < std::size(rows); ++i) {
        results[i].second.Save(results[i].first);
        EXPECT_EQ(CImage::FromFile(results[i].first).GetSize(), rows[i].expected);
    }
}
