#include "effects/ImageEffect.h"

#include <QFile>

#include "TestPictures.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "effects/FileNames.h"
#include "effects/GeometricEffects.h"
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
