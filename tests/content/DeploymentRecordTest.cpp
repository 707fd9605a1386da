#include "content/DeploymentRecord.h"

#include <sys/stat.h>

#include <QDataStream>
#include <QDateTime>
#include <QDir>
#include <QFile>

#include "common/DirectoryProcessor.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "content/PageGeneration.h"
#include "document/galleries/Gallery.h"
#include "effects/StampParams.h"
#include "imaging/Image.h"
#include "support/ProjectFixture.h"

namespace {

class DeploymentRecord : public testing::Test, protected CGenerationProgress {
protected:
    DeploymentRecord()
    {
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"p.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("p.html"),
                          "<%=p.file_name%><%picture id=\"p\" width=\"20\" height=\"15\" href=\"\"%>"
                          "<%picture id=\"p\" width=\"30\" height=\"20\" href=\"\"%>");
        fixture.NewProject();
        for (const char* const name : {"one.jpg", "two.jpg", "three.jpg"}) {
            fixture.GetRoot().AddPicture(fixture.WritePicture(QLatin1String(name)));
        }
    }

    void OnPageDone(int32_t, int32_t) override
    {
        if (++pagesDone == cancelAt) {
            stop.Set();
        }
    }

    // Into the folder, with its record.
    GenerationResult Deploy(std::chrono::milliseconds restless = {})
    {
        CDeploymentRecord record(Path("record"), Path("site"), restless);
        const GenerationResult result = Generate({Path("site"), &record});
        if (!stop.IsSet()) {
            record.RemoveLeftovers();
        }
        record.Save();
        return result;
    }

    GenerationResult Generate(const GenerationTarget& target)
    {
        fixture.GetProject().SetPreviewMode(false);
        const GenerationResult result = GeneratePages(fixture.GetProject(), target, stop, *this);
        fixture.GetProject().SetPreviewMode(true);
        return result;
    }

    // With the project reopened and a temporary folder of another name.
    GenerationResult InAnotherRun(const std::function<GenerationResult()>& deploy)
    {
        runFolder = std::make_unique<CTempFolder>(fixture.scratch.Path());
        CProjectEnvironment environment = fixture.GetEnvironment();
        environment.tempFolder = runFolder.get();
        fixture.OpenProject(Path("project.gallery"), environment);
        return deploy();
    }

    // The site is as if it had been made anew.
    void ExpectSiteLikeFresh()
    {
        RemoveDirectoryTree(Path("fresh"));
        Generate({Path("fresh")});
        EXPECT_EQ(FilesIn("site"), FilesIn("fresh"));
        for (const QString& file : FilesIn("fresh")) {
            EXPECT_EQ(fixture.scratch.Read(QStringLiteral("site/") + file),
                      fixture.scratch.Read(QStringLiteral("fresh/") + file))
                << qPrintable(file);
        }
    }

    QStringList FilesIn(const QString& folder) const
    {
        QStringList files;
        for (const QString& file : fixture.scratch.ListFiles()) {
            if (file.startsWith(folder + QLatin1Char('/'))) {
                files += file.mid(folder.size() + 1);
            }
        }
        return files;
    }

    // The inode changes whenever the program writes a file.
    std::map<QString, ino_t> ImagesOnDisk() const
    {
        std::map<QString, ino_t> images;
        for (const QString& file : FilesIn(QStringLiteral("site")).filter(QStringLiteral("pictures/"))) {
            struct stat status {};
            ::stat(QFile::encodeName(Path("site/") + file).constData(), &status);
            images[file] = status.st_ino;
        }
        return images;
    }

    // How many images of before were written again.
    static int CountRewritten(const std::map<QString, ino_t>& before, const std::map<QString, ino_t>& after)
    {
        int count = 0;
        for (const auto& [file, inode] : after) {
            const auto old = before.find(file);
            count += old != before.end() && old->second != inode ? 1 : 0;
        }
        return count;
    }

    QString Path(const char* name) const { return fixture.scratch.Path(QLatin1String(name)); }

    std::unique_ptr<CTempFolder> runFolder;
    CProjectFixture fixture;
    CStopSignal stop;
    int pagesDone = 0;
    int cancelAt = -1;
};

} // namespace

TEST_F(DeploymentRecord, ASecondRunWritesNoImageAndCountsAll)
{
    const GenerationResult first = Deploy();
    const auto before = ImagesOnDisk();
    EXPECT_EQ(before.size(), 6u);
    const GenerationResult second = Deploy();
    EXPECT_EQ(ImagesOnDisk(), before);
    EXPECT_EQ(second.images, first.images);
    EXPECT_EQ(second.pages, first.pages);
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, PagesThatStayTheSameAreLeftAloneAndOthersWritten)
{
    Deploy();
    const auto inodeOf = [this](const char* page) {
        struct stat status {};
        EXPECT_EQ(::stat(QFile::encodeName(Path(page)).constData(), &status), 0);
        return status.st_ino;
    };
    const ino_t first = inodeOf("site/p.html");
    const ino_t second = inodeOf("site/p1.html");
    fixture.scratch.Write(QStringLiteral("site/p1.html"), "changed by hand");
    Deploy();
    EXPECT_EQ(inodeOf("site/p.html"), first);
    EXPECT_NE(inodeOf("site/p1.html"), second);
    ExpectSiteLikeFresh();
    // Removed with the rest, though the last run has not written it.
    fixture.GetRoot().RemovePicture(1);
    fixture.GetRoot().RemovePicture(1);
    Deploy();
    EXPECT_EQ(FilesIn(QStringLiteral("site")).filter(QStringLiteral(".html")).size(), 1);
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, AChangedPhotographOfTheSameSizeAndTimeIsMadeAnew)
{
    Deploy();
    const auto before = ImagesOnDisk();
    const QString path = Path("photos/two.jpg");
    const QByteArray old = fixture.scratch.Read(QStringLiteral("photos/two.jpg"));
    KeepingTimes(path, [&] {
        // Padded to the size of the old one after the picture's end.
        QByteArray other = fixture.scratch.Read(
            QStringLiteral("photos/") + fixture.WritePicture(QStringLiteral("x.jpg"), QSize(40, 30), 0x991122)
                                            .section(QLatin1Char('/'), -1));
        other = other.leftJustified(old.size(), '\0', true);
        ASSERT_EQ(other.size(), old.size());
        fixture.scratch.Write(QStringLiteral("photos/two.jpg"), other);
    });
    Deploy();
    EXPECT_EQ(CountRewritten(before, ImagesOnDisk()), 2);
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, AChangedSettingIsSeenEvenWhereTheNameStays)
{
    CTextStampParams& stamp = fixture.GetRoot().GetTextStamps()[0];
    stamp.text = QStringLiteral("ad");
    Deploy();
    const auto before = ImagesOnDisk();
    stamp.text = QStringLiteral("bc"); // the same sum of characters, and so the same file names
    Deploy();
    const auto after = ImagesOnDisk();
    EXPECT_EQ(after.size(), before.size());
    EXPECT_EQ(CountRewritten(before, after), 6);
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, AChangedWatermarkFileIsSeen)
{
    CImageStampParams& stamp = fixture.GetRoot().GetImageStamps()[0];
    stamp.file = fixture.WritePicture(QStringLiteral("mark.png"), QSize(8, 8), 0x112233);
    Deploy();
    const auto before = ImagesOnDisk();
    KeepingTimes(stamp.file,
                 [&] { fixture.WritePicture(QStringLiteral("mark.png"), QSize(8, 8), 0x332211); });
    Deploy();
    EXPECT_EQ(CountRewritten(before, ImagesOnDisk()), 6);
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, ARemovedPictureTakesItsFilesAlong)
{
    Deploy();
    EXPECT_TRUE(FilesIn(QStringLiteral("site")).contains(QStringLiteral("p2.html")));
    fixture.GetRoot().RemovePicture(1);
    Deploy();
    EXPECT_FALSE(FilesIn(QStringLiteral("site")).contains(QStringLiteral("p2.html")));
    EXPECT_EQ(ImagesOnDisk().size(), 4u);
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, FilesOfOthersAndFilesThatOthersChangedStay)
{
    Deploy();
    fixture.scratch.Write(QStringLiteral("site/mine.html"), "mine");
    fixture.scratch.Write(QStringLiteral("site/pictures/mine.jpg"), "mine");
    fixture.scratch.Write(QStringLiteral("site/p2.html"),
                          "changed by hand, and longer or shorter than before");
    fixture.GetRoot().RemovePicture(1);
    Deploy();
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("site/mine.html")), "mine");
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("site/pictures/mine.jpg")), "mine");
    EXPECT_TRUE(fixture.scratch.Read(QStringLiteral("site/p2.html")).startsWith("changed by hand"));
    // It is nobody's business any more, later either.
    Deploy();
    EXPECT_TRUE(FilesIn(QStringLiteral("site")).contains(QStringLiteral("p2.html")));
}

TEST_F(DeploymentRecord, AFileThatOthersChangedToTheSameSizeStays)
{
    Deploy();
    const QByteArray changed(fixture.scratch.Read(QStringLiteral("site/p2.html")).size(), 'x');
    QFile page(fixture.scratch.Write(QStringLiteral("site/p2.html"), changed));
    ASSERT_TRUE(page.open(QIODevice::ReadWrite));
    ASSERT_TRUE(page.setFileTime(QDateTime::currentDateTime().addSecs(1), QFile::FileModificationTime));
    page.close();
    fixture.GetRoot().RemovePicture(1);
    Deploy();
    ASSERT_TRUE(FilesIn(QStringLiteral("site")).contains(QStringLiteral("p2.html")));
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("site/p2.html")), changed);
}

TEST_F(DeploymentRecord, ADamagedOneDoesNotLeadOutOfTheTarget)
{
    Deploy();
    const auto wide = [](const char* text) {
        QByteArray bytes;
        for (const char* unit = text; *unit != 0; ++unit) {
            bytes += '\0';
            bytes += *unit;
        }
        return bytes;
    };
    QByteArray record = fixture.scratch.Read(QStringLiteral("record"));
    ASSERT_EQ(record.count(wide("p2.html")), 1);
    fixture.scratch.Write(QStringLiteral("record"), record.replace(wide("p2.html"), wide("../mine")));
    // With its size and time it is the very file that the record speaks of.
    ASSERT_TRUE(QFile::rename(Path("site/p2.html"), Path("mine")));
    fixture.GetRoot().RemovePicture(1);
    Deploy();
    EXPECT_TRUE(FileExists(Path("mine")));
}

TEST_F(DeploymentRecord, ADamagedOneDoesNotNameTheTargetItself)
{
    fixture.scratch.Write(QStringLiteral("site/p"), "a page");
    CDeploymentRecord record(Path("record"), Path("site"));
    record.Save();
    const QByteArray empty = fixture.scratch.Read(QStringLiteral("record"));
    record.NoteFile(Path("site/p"));
    record.Save();
    const QByteArray name("\0\0\0\2\0p", 6);
    QByteArray damaged = fixture.scratch.Read(QStringLiteral("record"));
    ASSERT_EQ(damaged.count(name), 1);
    fixture.scratch.Write(QStringLiteral("record"), damaged.replace(name, QByteArray("\0\0\0\2\0.", 6)));
    CDeploymentRecord(Path("record"), Path("site")).Save();
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("record")), empty);
}

TEST_F(DeploymentRecord, ARemovedGalleryTakesItsFolderAlong)
{
    const int32_t index = fixture.GetProject().AddChildGallery(fixture.GetRoot().GetIndex());
    CGallery& child = *fixture.GetProject().FindGallery(index);
    child.AddPicture(Path("photos/one.jpg"));
    const QString folder = Path("site/") + QString::number(index);
    Deploy();
    EXPECT_TRUE(FolderExists(folder));
    fixture.GetProject().RemoveGallery(index);
    Deploy();
    EXPECT_FALSE(FolderExists(folder));
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, AnImageThatOthersChangedOrRemovedIsMadeAgain)
{
    Deploy();
    const QStringList images = FilesIn(QStringLiteral("site")).filter(QStringLiteral("pictures/"));
    fixture.scratch.Write(QStringLiteral("site/") + images[0], "changed");
    QFile::remove(Path("site/") + images[1]);
    Deploy();
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, ASourceThatWasJustChangedIsNotTrusted)
{
    Deploy(std::chrono::hours(1));
    const auto before = ImagesOnDisk();
    Deploy(std::chrono::hours(1));
    EXPECT_EQ(CountRewritten(before, ImagesOnDisk()), 6);
}

TEST_F(DeploymentRecord, WithoutItsFileOrWithADamagedOneEverythingIsMadeAnew)
{
    Deploy();
    const QByteArray whole = fixture.scratch.Read(QStringLiteral("record"));
    for (const QByteArray& damaged : {QByteArray(), QByteArray("nonsense"), whole.left(whole.size() / 2),
                                      whole.left(20), QByteArray(1000, '\xff')}) {
        const auto before = ImagesOnDisk();
        fixture.scratch.Write(QStringLiteral("record"), damaged);
        Deploy();
        EXPECT_EQ(CountRewritten(before, ImagesOnDisk()), 6) << damaged.size();
        ExpectSiteLikeFresh();
    }
}

TEST_F(DeploymentRecord, TheRecordOfAnotherFolderSaysNothing)
{
    Deploy();
    EXPECT_NE(CDeploymentRecord::PathFor(Path("records"), Path("site")),
              CDeploymentRecord::PathFor(Path("records"), Path("other")));
    EXPECT_EQ(CDeploymentRecord::PathFor(Path("records"), Path("site")),
              CDeploymentRecord::PathFor(Path("records"), Path("x/../site/")));
    CDeploymentRecord record(Path("record"), Path("other"));
    Generate({Path("other"), &record});
    record.RemoveLeftovers();
    EXPECT_EQ(FilesIn(QStringLiteral("site")), FilesIn(QStringLiteral("other")));
}

TEST_F(DeploymentRecord, AWarningComesAgainThoughNothingIsMade)
{
    const QString path = Path("photos/two.jpg");
    const QByteArray whole = fixture.scratch.Read(
        QStringLiteral("photos/") +
        fixture.WritePicture(QStringLiteral("two.jpg"), QSize(400, 300)).section(QLatin1Char('/'), -1));
    fixture.scratch.Write(QStringLiteral("photos/two.jpg"), whole.left(whole.size() * 2 / 3));
    const GenerationResult first = Deploy();
    ASSERT_EQ(first.warnings.size(), 1);
    const auto before = ImagesOnDisk();
    EXPECT_EQ(Deploy().warnings, first.warnings);
    EXPECT_EQ(ImagesOnDisk(), before);
}

TEST_F(DeploymentRecord, WhatACancelledRunHasMadeIsKnownToTheNext)
{
    // More pictures than a machine has cores: each worker may finish the one that it holds.
    for (int i = 0; i < 200; ++i) {
        fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("%1.jpg").arg(i)));
    }
    cancelAt = 1;
    Deploy();
    const auto before = ImagesOnDisk();
    EXPECT_LT(before.size(), 406u);
    stop.Reset();
    cancelAt = -1;
    Deploy();
    EXPECT_EQ(CountRewritten(before, ImagesOnDisk()), 0);
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, ACoverOfAnotherRunWithTheSameContentIsKnown)
{
    const int32_t index = fixture.GetProject().AddChildGallery(fixture.GetRoot().GetIndex());
    fixture.GetProject().FindGallery(index)->AddPicture(Path("photos/one.jpg"));
    fixture.GetProject().Save(Path("project.gallery"));
    Deploy();
    const auto before = ImagesOnDisk();
    EXPECT_EQ(before.size(), 10u);
    const GenerationResult again = InAnotherRun([&] { return Deploy(); });
    EXPECT_EQ(ImagesOnDisk(), before);
    EXPECT_EQ(again.images, 10);
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, ACoverOfTheSameNameWithOtherContentIsMadeAnew)
{
    const int32_t index = fixture.GetProject().AddChildGallery(fixture.GetRoot().GetIndex());
    CGallery& child = *fixture.GetProject().FindGallery(index);
    child.AddPicture(fixture.WritePicture(QStringLiteral("four.png"), QSize(40, 30), 0x112233));
    child.AddPicture(Path("photos/one.jpg"));
    fixture.GetProject().Save(Path("project.gallery"));
    Deploy();
    const auto before = ImagesOnDisk();
    fixture.WritePicture(QStringLiteral("four.png"), QSize(40, 30), 0x332211);
    InAnotherRun([&] { return Deploy(); });
    // The two of the cover and the two of the picture.
    EXPECT_EQ(CountRewritten(before, ImagesOnDisk()), 4);
    ExpectSiteLikeFresh();
}

TEST_F(DeploymentRecord, TheRecordIsForItsOwnerAlone)
{
    CDeploymentRecord record(Path("records/a"), Path("site"));
    record.Save();
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(Path("records")).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(DeploymentRecord, NamesTheFilesOfThisRunAndOfEarlierOnes)
{
    {
        CDeploymentRecord record(Path("record"), Path("site"));
        record.NoteFile(fixture.scratch.Write(QStringLiteral("site/b.html"), "page"));
        record.NoteFile(fixture.scratch.Write(QStringLiteral("site/2/a.html"), "page"));
        record.NoteFile(fixture.scratch.Write(QStringLiteral("elsewhere.html"), "page"));
        record.Save();
    }
    CDeploymentRecord record(Path("record"), Path("site"));
    record.NoteFile(fixture.scratch.Write(QStringLiteral("site/c.html"), "page"));
    EXPECT_EQ(record.GetFiles(),
              QStringList({QStringLiteral("2/a.html"), QStringLiteral("b.html"), QStringLiteral("c.html")}));
    record.RemoveLeftovers();
    EXPECT_EQ(record.GetFiles(), QStringList(QStringLiteral("c.html")));
}

// Field by field as docs/formats.md tells it.
TEST_F(DeploymentRecord, IsWrittenAsThePageOfFormatsTells)
{
    const QString source = Path("source");
    const QString image = fixture.scratch.Write(QStringLiteral("site/a.jpg"), "image");
    const QString file = fixture.scratch.Write(QStringLiteral("site/b.html"), "page");
    const CDeploymentRecord::Origin origin = {.sourcePath = source,
                                              .source = {.size = 1, .modified = 2, .changed = 3, .sample = 4},
                                              .key = QStringLiteral("chain")};
    CDeploymentRecord record(Path("record"), Path("site"), std::chrono::milliseconds(0));
    record.NoteImage(image, {origin, false});
    record.NoteFile(file);
    record.Save();

    const QByteArray bytes = fixture.scratch.Read(QStringLiteral("record"));
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    const auto read32 = [&] {
        quint32 number = 0;
        stream >> number;
        return number;
    };
    const auto read64 = [&] {
        quint64 number = 0;
        stream >> number;
        return number;
    };
    const auto readText = [&] {
        QString text;
        stream >> text;
        return text;
    };
    const auto readFlag = [&] {
        quint8 flag = 9;
        stream >> flag;
        return int{flag};
    };
    EXPECT_EQ(read32(), 0x56445231u);
    EXPECT_EQ(read32(), 1u);
    EXPECT_EQ(readText(), Path("site/"));
    ASSERT_EQ(read32(), 2u);
    for (const QString& path : {image, file}) {
        const auto stamp = FileStamp::Of(path);
        EXPECT_EQ(readText(), ExtractLastName(path));
        EXPECT_EQ(read64(), static_cast<quint64>(stamp->size));
        EXPECT_EQ(read64(), static_cast<quint64>(stamp->modified));
        EXPECT_EQ(readFlag(), path == image ? 1 : 0);
        if (path == image) {
            EXPECT_EQ(readText(), source);
            for (const quint64 expected : {1u, 2u, 3u, 4u}) {
                EXPECT_EQ(read64(), expected);
            }
            EXPECT_EQ(readText(), QStringLiteral("chain"));
            EXPECT_EQ(readFlag(), 0);
        }
    }
    EXPECT_EQ(read64(), 0u); // no run is under way
    EXPECT_TRUE(stream.atEnd());
    EXPECT_EQ(stream.status(), QDataStream::Ok);
}
