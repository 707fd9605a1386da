#include "content/ImageProduction.h"

#include <atomic>
#include <functional>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "effects/ImageEffectCompound.h"
#include "effects/ImageEffectResize.h"
#include "imaging/Image.h"
#include "support/NoThreads.h"
#include "support/ProjectFixture.h"

namespace {

class ImageProduction : public testing::Test, protected CImageProduction::Listener {
protected:
    void OnPageDone() override
    {
        ++pagesDone;
        if (onPageDone) {
            onPageDone();
        }
    }

    ImageRequest Request(const QString& source, QSize box, const QString& result) const
    {
        auto chain = std::make_shared<CImageEffectCompound>();
        chain->Add(std::make_shared<CImageEffectResize>(box, CImageEffectResize::Options{}));
        return {source, chain, fixture.scratch.Path(result)};
    }

    QSize SizeOf(const QString& result) const
    {
        return CImage::FromFile(fixture.scratch.Path(result)).GetSize();
    }

    // The colour of the first pixel, 8 bits a channel.
    uint32_t ColorOf(const QString& result) const
    {
        const QByteArray bytes = CImage::FromFile(fixture.scratch.Path(result)).GetRgba();
        const auto channel = [&](int i) {
            return static_cast<uint32_t>(static_cast<unsigned char>(bytes[i]));
        };
        return channel(0) << 16 | channel(1) << 8 | channel(2);
    }

    CProjectFixture fixture;
    CStopSignal stop;
    std::atomic<int> pagesDone = 0;
    std::function<void()> onPageDone;
    CImageProduction production{*this, stop};
};

constexpr uint32_t Red = 0xff0000;
constexpr uint32_t Blue = 0x0000ff;

} // namespace

TEST_F(ImageProduction, MakesAllSizesOfASource)
{
    const QString source = fixture.WritePicture(QStringLiteral("a.png"), QSize(400, 300));
    production.BeginPage();
    production.Ask(Request(source, QSize(40, 40), QStringLiteral("small.png")));
    production.EndPage();
    production.BeginPage();
    production.Ask(Request(source, QSize(200, 200), QStringLiteral("large.png")));
    production.Ask(Request(source, QSize(800, 800), QStringLiteral("whole.png")));
    production.EndPage();
    production.Finish();
    EXPECT_EQ(SizeOf(QStringLiteral("small.png")), QSize(40, 30));
    EXPECT_EQ(SizeOf(QStringLiteral("large.png")), QSize(200, 150));
    EXPECT_EQ(SizeOf(QStringLiteral("whole.png")), QSize(400, 300));
    EXPECT_EQ(production.GetImageCount(), 3);
    EXPECT_EQ(pagesDone, 2);
}

TEST_F(ImageProduction, OfTwoRequestsForOneFileTheLastOneWins)
{
    const QString red = fixture.WritePicture(QStringLiteral("red.png"), QSize(40, 30), Red);
    const QString blue = fixture.WritePicture(QStringLiteral("blue.png"), QSize(40, 30), Blue);
    // Many pairs, in both orders, so that a race would show.
    for (int i = 0; i < 20; ++i) {
        production.BeginPage();
        production.Ask(Request(red, QSize(40, 40), QStringLiteral("rb%1.png").arg(i)));
        production.Ask(Request(blue, QSize(40, 40), QStringLiteral("br%1.png").arg(i)));
        production.Ask(Request(blue, QSize(20, 20), QStringLiteral("rb%1.png").arg(i)));
        production.EndPage();
        production.BeginPage();
        production.Ask(Request(red, QSize(20, 20), QStringLiteral("br%1.png").arg(i)));
        production.EndPage();
    }
    production.Finish();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(ColorOf(QStringLiteral("rb%1.png").arg(i)), Blue);
        EXPECT_EQ(ColorOf(QStringLiteral("br%1.png").arg(i)), Red);
        EXPECT_EQ(SizeOf(QStringLiteral("rb%1.png").arg(i)), QSize(20, 15));
    }
    EXPECT_EQ(production.GetImageCount(), 40);
    EXPECT_EQ(pagesDone, 40);
}

TEST_F(ImageProduction, APageIsDoneWhenItsFileAndAllItsImagesAreWritten)
{
    const QString source = fixture.WritePicture(QStringLiteral("a.png"));
    const QString result = fixture.scratch.Path(QStringLiteral("one.png"));
    bool wasThere = false;
    onPageDone = [&] {
        wasThere = FileExists(result);
    };
    production.BeginPage();
    production.Ask(Request(source, QSize(20, 20), QStringLiteral("one.png")));
    production.EndPage();
    EXPECT_EQ(pagesDone, 0);
    production.Finish();
    EXPECT_EQ(pagesDone, 1);
    EXPECT_TRUE(wasThere);
}

TEST_F(ImageProduction, APageWithoutImagesIsDoneAtItsEnd)
{
    production.BeginPage();
    EXPECT_EQ(pagesDone, 0);
    production.EndPage();
    EXPECT_EQ(pagesDone, 1);
    production.Finish();
}

TEST_F(ImageProduction, TwoPagesThatShareAFileAreBothDone)
{
    const QString source = fixture.WritePicture(QStringLiteral("a.png"));
    for (int i = 0; i < 2; ++i) {
        production.BeginPage();
        production.Ask(Request(source, QSize(20, 20), QStringLiteral("one.png")));
        production.Ask(Request(source, QSize(20, 20), QStringLiteral("one.png")));
        production.EndPage();
    }
    production.Finish();
    EXPECT_EQ(pagesDone, 2);
    EXPECT_EQ(production.GetImageCount(), 1);
}

TEST_F(ImageProduction, AFailureStopsTheRunAndNamesThePicture)
{
    const QString broken = fixture.scratch.Write(QStringLiteral("photos/broken.jpg"), "text");
    production.BeginPage();
    production.Ask(Request(broken, QSize(20, 20), QStringLiteral("b.jpg")));
    production.EndPage();
    try {
        production.Finish();
        FAIL();
    } catch (const CExceptionBase& error) {
        EXPECT_TRUE(
            error.GetDescription().startsWith(QStringLiteral("Could not save image to '%1'.")
                                                  .arg(fixture.scratch.Path(QStringLiteral("b.jpg")))))
            << qPrintable(error.GetDescription());
        EXPECT_TRUE(error.GetDescription().contains(broken)) << qPrintable(error.GetDescription());
    }
    EXPECT_TRUE(stop.IsSet());
    EXPECT_TRUE(production.GetFailure() != nullptr);
    EXPECT_EQ(pagesDone, 0);
    EXPECT_FALSE(FileExists(fixture.scratch.Path(QStringLiteral("b.jpg"))));
}

TEST_F(ImageProduction, AStoppedRunMakesNoFurtherFile)
{
    const QString source = fixture.WritePicture(QStringLiteral("a.png"));
    stop.Set();
    production.BeginPage();
    production.Ask(Request(source, QSize(20, 20), QStringLiteral("one.png")));
    production.EndPage();
    production.Finish();
    EXPECT_EQ(production.GetImageCount(), 0);
    EXPECT_FALSE(FileExists(fixture.scratch.Path(QStringLiteral("one.png"))));
}

TEST_F(ImageProduction, AStopInTheMiddleEndsTheWorkersAtTheirNextFile)
{
    onPageDone = [this] {
        stop.Set();
    };
    for (int i = 0; i < 50; ++i) {
        const QString source = fixture.WritePicture(QStringLiteral("%1.png").arg(i));
        production.BeginPage();
        production.Ask(Request(source, QSize(20, 20), QStringLiteral("r%1.png").arg(i)));
        production.EndPage();
    }
    production.Finish();
    EXPECT_GE(production.GetImageCount(), 1);
    EXPECT_LT(production.GetImageCount(), 50);
}

TEST_F(ImageProduction, ADestroyedProductionWaitsForItsWorkers)
{
    CStopSignal ownStop;
    const QString source = fixture.WritePicture(QStringLiteral("a.png"));
    {
        CImageProduction abandoned(*this, ownStop);
        abandoned.BeginPage();
        abandoned.Ask(Request(source, QSize(20, 20), QStringLiteral("one.png")));
        abandoned.EndPage();
        abandoned.StartAsked();
    }
    // Begun or not, nothing is half done any more.
    EXPECT_EQ(pagesDone == 1, FileExists(fixture.scratch.Path(QStringLiteral("one.png"))));
    production.Finish();
}

TEST_F(ImageProduction, MakesItsImagesWithoutAnyFurtherThread)
{
    const QString source = fixture.WritePicture(QStringLiteral("a.png"));
    production.BeginPage();
    production.Ask(Request(source, QSize(20, 20), QStringLiteral("one.png")));
    production.EndPage();
    {
        const CNoThreads none;
        production.StartAsked();
    }
    production.Finish();
    EXPECT_TRUE(FileExists(fixture.scratch.Path(QStringLiteral("one.png"))));
    EXPECT_EQ(pagesDone, 1);
}

TEST_F(ImageProduction, PicturesPublishedInPartAreNamedInTheOrderOfAsking)
{
    QStringList expected;
    for (const char* name : {"z.jpg", "a.jpg", "m.jpg"}) {
        const QString path = fixture.WritePicture(QString::fromLatin1(name), QSize(400, 300));
        QByteArray bytes = ReadWholeFile(path);
        bytes.truncate(bytes.size() * 2 / 3);
        WriteFileAtomically(path, bytes);
        production.BeginPage();
        production.Ask(Request(path, QSize(200, 200), QStringLiteral("r-") + QString::fromLatin1(name)));
        production.EndPage();
        expected += Text(StringId::PicturePublishedInPart, path);
    }
    production.Finish();
    EXPECT_EQ(production.GetWarnings(), expected);
    EXPECT_EQ(SizeOf(QStringLiteral("r-a.jpg")), QSize(200, 150));
}
