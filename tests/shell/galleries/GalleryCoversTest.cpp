#include "shell/panes/galleries/GalleryCovers.h"

#include <QFile>
#include <gtest/gtest.h>

#include "../host/ViewWindow.h"
#include "common/FileSystem.h"
#include "imaging/Image.h"
#include "support/ProjectFixture.h"

namespace {

constexpr QSize box(72, 39);

class GalleryCovers : public testing::Test {
protected:
    GalleryCovers()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "");
        fixture.WriteStyle(QStringLiteral("plain"));
        fixture.NewProject();
    }

    CGalleryProject& Project() { return fixture.GetProject(); }
    CGallery& Gallery(int32_t index) { return *Project().FindGallery(index); }
    QString Path(int32_t index, QSize size = box) { return CGalleryCovers::GetPath(Gallery(index), size); }

    void AddPictures(int32_t gallery, int count)
    {
        for (int i = 0; i < count; ++i) {
            Gallery(gallery).AppendPicture(
                fixture.WritePicture(QStringLiteral("g%1p%2.jpg").arg(gallery).arg(i), QSize(400, 300)), 0);
        }
    }

    void OrderAndWait(const std::vector<int32_t>& galleries, QSize size = box)
    {
        const int before = finishedCount;
        covers.Order(Project(), galleries, size);
        EXPECT_TRUE(WaitUntil([&] { return finishedCount > before; }));
    }

    CProjectFixture fixture;
    std::vector<int32_t> arrived;
    std::vector<int32_t> changed;
    int finishedCount = 0;
    CGalleryCovers covers{{.arrived =
                               [this](int32_t gallery, bool isChanged) {
                                   arrived.push_back(gallery);
                                   if (isChanged) {
                                       changed.push_back(gallery);
                                   }
                               },
                           .finished =
                               [this] {
                                   ++finishedCount;
                               }}};
};

} // namespace

TEST_F(GalleryCovers, AreScaledIntoTheBoxBesideTheCover)
{
    AddPictures(0, 1);
    EXPECT_FALSE(covers.IsReady(Gallery(0), box));
    OrderAndWait({0});
    EXPECT_TRUE(covers.IsReady(Gallery(0), box));
    EXPECT_TRUE(covers.IsFinished());
    EXPECT_EQ(ExtractFolder(Path(0)), ExtractFolder(Gallery(0).GetCover().GetName()));
    EXPECT_TRUE(Path(0).endsWith(QStringLiteral("7239.jpg"))) << qPrintable(Path(0));
    const QSize size = CImage::FromFile(Path(0)).GetSize();
    EXPECT_TRUE(size.width() == 72 || size.height() == 39) << size.width() << 'x' << size.height();
    EXPECT_TRUE(size.width() <= 72 && size.height() <= 39);
}

TEST_F(GalleryCovers, OfAnEmptyGalleryAreMadeToo)
{
    OrderAndWait({0});
    EXPECT_EQ(arrived, std::vector<int32_t>{0});
    EXPECT_FALSE(CImage::FromFile(Path(0)).GetSize().isEmpty());
}

TEST_F(GalleryCovers, AreOnlyMadeSmaller)
{
    OrderAndWait({0}, QSize(3000, 2000));
    EXPECT_EQ(CImage::FromFile(Path(0, QSize(3000, 2000))).GetSize(),
              CImage::FromFile(Gallery(0).GetCoverPath()).GetSize());
}

TEST_F(GalleryCovers, ThatShowOtherCoversComeBehindThem)
{
    for (const int parent : {0, 0, 1}) {
        Project().AddChildGallery(parent);
    }
    AddPictures(1, 4);
    AddPictures(2, 2);
    AddPictures(3, 1);
    OrderAndWait({0});
    for (const int gallery : {0, 1, 2, 3}) {
        // The files are there and as they would be had they been asked for.
        const QString cover = Gallery(gallery).GetCover().GetName();
        ASSERT_TRUE(FileExists(cover)) << gallery;
        EXPECT_EQ(Gallery(gallery).GetCover().FindUnmade(), nullptr);
        const QByteArray made = ReadWholeFile(cover);
        Gallery(gallery).UpdateCover(0);
        EXPECT_EQ(ReadWholeFile(Gallery(gallery).GetCoverPath()), made) << gallery;
    }
    // Nothing else is left behind.
    for (const DirectoryEntry& entry : ListDirectory(fixture.tempFolder.GetPath())) {
        EXPECT_FALSE(entry.name.contains(QLatin1Char('~'))) << qPrintable(entry.name);
    }
}

TEST_F(GalleryCovers, AreWrittenAtEveryOrder)
{
    OrderAndWait({0});
    EXPECT_EQ(changed, std::vector<int32_t>{0});
    OrderAndWait({0});
    EXPECT_EQ(arrived, (std::vector<int32_t>{0, 0}));
    EXPECT_EQ(changed, std::vector<int32_t>{0}); // the same bytes
    QFile::remove(Path(0));
    OrderAndWait({0});
    EXPECT_TRUE(FileExists(Path(0)));
}

TEST_F(GalleryCovers, AreNotReadyAnyMoreWhenTheGalleryChanges)
{
    AddPictures(0, 2);
    OrderAndWait({0});
    Gallery(0).MovePicture(0, 1);
    EXPECT_FALSE(covers.IsReady(Gallery(0), box));
    OrderAndWait({0});
    EXPECT_TRUE(covers.IsReady(Gallery(0), box));
    // In each box for itself.
    EXPECT_FALSE(covers.IsReady(Gallery(0), QSize(100, 100)));
}

TEST_F(GalleryCovers, OfAChangeInTheMiddleShowTheLastState)
{
    Project().AddChildGallery(0);
    AddPictures(1, 4);
    covers.Order(Project(), {0, 1}, box);
    Gallery(1).RotatePicture(0, true);
    AddPictures(0, 1);
    OrderAndWait({0, 1});
    for (const int gallery : {0, 1}) {
        EXPECT_TRUE(covers.IsReady(Gallery(gallery), box));
        const QByteArray made = ReadWholeFile(Gallery(gallery).GetCover().GetName());
        Gallery(gallery).UpdateCover(0);
        EXPECT_EQ(ReadWholeFile(Gallery(gallery).GetCoverPath()), made) << gallery;
    }
}

TEST_F(GalleryCovers, OfAnotherBoxReplaceTheOrder)
{
    AddPictures(0, 4);
    for (int width = 40; width < 60; ++width) {
        covers.Order(Project(), {0}, QSize(width, width));
    }
    OrderAndWait({0}, QSize(60, 60));
    EXPECT_TRUE(FileExists(Path(0, QSize(60, 60))));
    EXPECT_EQ(arrived, std::vector<int32_t>{0});
}

TEST_F(GalleryCovers, OfGalleriesThatGoAreLeftOut)
{
    Project().AddChildGallery(0);
    AddPictures(1, 1);
    covers.Order(Project(), {0, 1, 77}, box);
    Project().RemoveGallery(1);
    EXPECT_TRUE(WaitUntil([&] { return finishedCount == 1; }));
    EXPECT_TRUE(covers.IsReady(Gallery(0), box));
}

// The folder of the run is gone, the disk is full: the view goes on without pictures.
TEST_F(GalleryCovers, ThatCannotBeWrittenAreGivenUp)
{
    AddPictures(0, 1);
    Project().AddChildGallery(0);
    QDir(fixture.tempFolder.GetPath()).removeRecursively();
    OrderAndWait({0, 1});
    EXPECT_TRUE(arrived.empty());
    EXPECT_TRUE(covers.IsFinished());
    covers.Order(Project(), {}, box);
    EXPECT_TRUE(covers.IsFinished());
}

TEST_F(GalleryCovers, OfBrokenPicturesAreThoseOfAnEmptyGallery)
{
    fixture.scratch.Write(QStringLiteral("photos/broken.jpg"), "no picture");
    Gallery(0).AppendPicture(fixture.scratch.Path(QStringLiteral("photos/broken.jpg")), 0);
    OrderAndWait({0});
    EXPECT_FALSE(CImage::FromFile(Path(0)).GetSize().isEmpty());
}

TEST_F(GalleryCovers, StopLeavesTheDocumentAlone)
{
    AddPictures(0, 4);
    covers.Order(Project(), {0}, box);
    covers.Stop();
    const auto revision = Gallery(0).GetCover().GetRevision();
    Project().Clear();
    fixture.NewProject();
    EXPECT_NE(Gallery(0).GetCover().GetRevision(), revision);
    OrderAndWait({0});
    EXPECT_EQ(arrived, std::vector<int32_t>{0});
}

TEST_F(GalleryCovers, MayGoInTheMiddleOfTheirWork)
{
    AddPictures(0, 4);
    for (int round = 0; round < 5; ++round) {
        CGalleryCovers others({.arrived = [](int32_t, bool) { FAIL(); },
                               .finished =
                                   [] {
                                       FAIL();
                                   }});
        others.Order(Project(), {0}, QSize(50 + round, 50));
    }
    QCoreApplication::processEvents();
    OrderAndWait({0});
}
