#include "content/ImageCache.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QFile>

#include "common/FileIdentity.h"
#include "common/FileSystem.h"
#include "common/Platform.h"
#include "effects/FileNames.h"
#include "effects/GeometricEffects.h"
#include "support/ProjectFixture.h"

namespace {

class ImageCache : public testing::Test {
protected:
    QString Folder() const { return scratch.Path(QStringLiteral("images")); }
    QString Write(const QString& name, const QByteArray& bytes = "bytes") const
    {
        return scratch.Write(QStringLiteral("images/") + name, bytes);
    }
    static void SetTime(const QString& path, int64_t seconds, long nanoseconds = 0)
    {
        const timespec times[] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
        EXPECT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    }

    const CScratchFolder scratch;
    const CImageCache cache{{.folder = Folder()}};
    const CImageEffectRename rename;
};

} // namespace

TEST_F(ImageCache, EachPathHasAnImageOfItsOwn)
{
    const QString one = cache.PathFor(QStringLiteral("/2019/Sea/a.jpg"), rename);
    EXPECT_TRUE(one.startsWith(Folder() + QStringLiteral("/a_"))) << qPrintable(one);
    EXPECT_TRUE(one.endsWith(QStringLiteral(".jpg")));
    EXPECT_EQ(cache.PathFor(QStringLiteral("/2019/Sea/a.jpg"), rename), one);
    for (const QString& other : {QStringLiteral("/2020/Sea/a.jpg"), QStringLiteral("/2019/Sea/A.jpg"),
                                 QStringLiteral("/2019/Sea/a.jpeg"), QStringLiteral("a.jpg")}) {
        EXPECT_NE(cache.PathFor(other, rename).toLower(), one.toLower()) << qPrintable(other);
    }
}

TEST_F(ImageCache, AChangedPictureHasANewImage)
{
    const QString source = scratch.Write(QStringLiteral("a.jpg"), "one");
    SetTime(source, 1'700'000'000, 1);
    const QString before = cache.PathFor(source, rename);
    SetTime(source, 1'700'000'000, 2); // nanoseconds
    const QString touched = cache.PathFor(source, rename);
    EXPECT_NE(touched, before);
    scratch.Write(QStringLiteral("a.jpg"), "four");
    SetTime(source, 1'700'000'000, 2);
    EXPECT_NE(cache.PathFor(source, rename), touched);
    QFile::remove(source);
    EXPECT_NE(cache.PathFor(source, rename), before);
}

TEST_F(ImageCache, EverythingThatIsDoneToAPictureIsInItsName)
{
    const QString source = QStringLiteral("/x/a.jpg");
    std::set<QString> paths;
    for (int angle = 0; angle < 4; ++angle) {
        for (const QSize box : {QSize(12, 34), QSize(123, 4)}) {
            CImageEffectCompound chain;
            chain.Add(std::make_shared<CImageEffectRename>());
            chain.Add(std::make_shared<CImageEffectRotate>(angle));
            chain.Add(std::make_shared<CImageEffectResize>(box, CImageEffectResize::Options{}));
            paths.insert(cache.PathFor(source, chain));
        }
    }
    EXPECT_EQ(paths.size(), 8u);
}

TEST_F(ImageCache, AnyNameGivesOneThatTheDiskTakes)
{
    for (const QString& name : {QStringLiteral("\u00e4").repeated(120), QStringLiteral("50% #1?\n"),
                                QString(), QStringLiteral(".."), QStringLiteral("x").repeated(250)}) {
        const QString path = cache.PathFor(QStringLiteral("/x/") + name, rename);
        EXPECT_EQ(ExtractFolder(path), Folder() + QLatin1Char('/')) << qPrintable(name);
        EXPECT_LT(ExtractLastName(path).size(), 100) << qPrintable(name);
    }
}

TEST_F(ImageCache, ItsFolderIsForTheUserAlone)
{
    cache.PathFor(QStringLiteral("/x/a.jpg"), rename);
    struct stat status;
    ASSERT_EQ(::stat(QFile::encodeName(Folder()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(ImageCache, TheLongestUnusedFilesGoBeyondTheLimit)
{
    const CImageCache small({.folder = Folder(), .limit = 10});
    const QString used = small.PathFor(QStringLiteral("/x/a.jpg"), rename);
    Write(ExtractLastName(used));
    SetTime(used, 1'000'000'000);
    SetTime(Write(QStringLiteral("b.jpg")), 1'100'000'000);
    SetTime(Write(QStringLiteral("c.jpg")), 1'200'000'000);
    EXPECT_EQ(small.PathFor(QStringLiteral("/x/a.jpg"), rename), used); // a use
    small.RemoveLongestUnused();
    EXPECT_TRUE(FileExists(used));
    EXPECT_FALSE(FileExists(scratch.Path(QStringLiteral("images/b.jpg"))));
    EXPECT_TRUE(FileExists(scratch.Path(QStringLiteral("images/c.jpg"))));
}

TEST_F(ImageCache, WhatIsMadeKeepsTheLimit)
{
    const CImageCache small({.folder = Folder(), .limit = 20});
    for (int i = 0; i < 100; ++i) {
        small.NoteMade(Write(QString::number(i)));
    }
    EXPECT_LE(small.GetSize(), 25);
}

TEST_F(ImageCache, KnowsItsSizeAndCanBeEmptied)
{
    EXPECT_EQ(cache.GetSize(), 0);
    Write(QStringLiteral("a.jpg"));
    Write(QStringLiteral("b.jpg"), "12345678");
    EXPECT_EQ(cache.GetSize(), 13);
    cache.Clear();
    EXPECT_EQ(cache.GetSize(), 0);
    EXPECT_FALSE(FileExists(scratch.Path(QStringLiteral("images/a.jpg"))));
}

TEST_F(ImageCache, ThoseOfEarlierVersionsAreRemoved)
{
    scratch.Write(QStringLiteral("tmp/Sea_imgs/a2020.jpg"), "old");
    scratch.Write(QStringLiteral("tmp/Sea_0123456789abcdef_imgs/a.jpg"), "old");
    scratch.Write(QStringLiteral("tmp/cvn_tmp_cvn_tmp_1/vsm0.png"), "of a run");
    scratch.Write(QStringLiteral("tmp/menu_1_2.bmp"), "strip");
    scratch.Write(QStringLiteral("kept/a.jpg"), "behind a link");
    QFile::link(scratch.Path(QStringLiteral("kept")), scratch.Path(QStringLiteral("tmp/Sea_imgs/link")));
    RemoveFormerImageFolders(scratch.Path(QStringLiteral("tmp/")));
    EXPECT_EQ(scratch.ListFiles(),
              QStringList({QStringLiteral("kept/a.jpg"), QStringLiteral("tmp/cvn_tmp_cvn_tmp_1/vsm0.png"),
                           QStringLiteral("tmp/menu_1_2.bmp")}));
}
