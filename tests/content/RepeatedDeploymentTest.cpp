#include <fcntl.h>
#include <functional>
#include <sys/stat.h>

#include <QFile>
#include <gtest/gtest.h>

#include "common/DirectoryProcessor.h"
#include "common/FileSystem.h"
#include "common/StopSignal.h"
#include "content/DeploymentRecord.h"
#include "content/PageGeneration.h"
#include "document/galleries/Gallery.h"
#include "support/ProjectFixture.h"

// What a program that has deployed a tree of galleries before writes, with all that it keeps between its
// runs, beside what one writes that knows nothing of an earlier run.

namespace {

class RepeatedDeployment : public testing::Test, protected CGenerationProgress {
protected:
    RepeatedDeployment()
    {
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"p.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("p.html"),
                          "<%=p.file_name%><%picture id=\"p\" width=\"20\" height=\"15\" href=\"\"%>"
                          "<%picture id=\"q\" width=\"300\" height=\"200\" href=\"\"%>");
        CGalleryProject& project = fixture.NewProject();
        CGallery& root = fixture.GetRoot();
        CGallery& child = *project.FindGallery(project.AddChildGallery(root.GetIndex()));
        CGallery& grandchild = *project.FindGallery(project.AddChildGallery(child.GetIndex()));
        int number = 0;
        for (CGallery* gallery : {&root, &child, &child, &child, &grandchild}) {
            gallery->SetTemplate(gallery->GetLayout().GetTemplateKey());
            gallery->AddPicture(fixture.WritePicture(QStringLiteral("%1.png").arg(number),
                                                     QSize(40 + 9 * number, 30),
                                                     0x203040 + static_cast<uint32_t>(number) * 0x151015));
            ++number;
        }
        project.Save(Path("tree.gallery"));
    }

    void OnPageDone(int32_t, int32_t) override {}

    static constexpr int32_t childIndex = 1;
    static constexpr int32_t grandchildIndex = 2;

    void Change(const std::function<void(CGalleryProject&)>& change)
    {
        CGalleryProject& project = fixture.OpenProject(Path("tree.gallery"), fixture.GetEnvironment());
        change(project);
        project.Save(Path("tree.gallery"));
    }

    // Both as a program of its own does it.
    GenerationResult DeployAgain()
    {
        CProjectEnvironment environment = fixture.GetEnvironment();
        environment.covers = {.folder = Path("covers"), .restless = std::chrono::milliseconds(0)};
        CDeploymentRecord record(Path("record"), Path("site"), std::chrono::milliseconds(0));
        const GenerationResult result = Run(environment, {Path("site"), &record});
        record.RemoveLeftovers();
        record.Save();
        return result;
    }
    void DeployFresh()
    {
        RemoveDirectoryTree(Path("fresh"));
        Run(fixture.GetEnvironment(), {Path("fresh")});
    }

    GenerationResult Run(CProjectEnvironment environment, const GenerationTarget& target)
    {
        CTempFolder runFolder(fixture.scratch.Path());
        environment.tempFolder = &runFolder;
        CGalleryProject project(environment);
        project.Open(Path("tree.gallery"));
        project.SetPreviewMode(false);
        return GeneratePages(project, target, CStopSignal(), *this);
    }

    void ExpectTheSame(const char* what)
    {
        DeployAgain();
        DeployFresh();
        const QStringList files = FilesIn("fresh/");
        EXPECT_GT(files.size(), 10);
        EXPECT_EQ(FilesIn("site/"), files) << what;
        for (const QString& file : files) {
            EXPECT_EQ(fixture.scratch.Read(QStringLiteral("site/") + file),
                      fixture.scratch.Read(QStringLiteral("fresh/") + file))
                << what << ": " << qPrintable(file);
        }
    }

    QStringList FilesIn(const QString& folder) const
    {
        QStringList files;
        for (const QString& file : fixture.scratch.ListFiles()) {
            if (file.startsWith(folder)) {
                files += file.mid(folder.size());
            }
        }
        return files;
    }

    QStringList FilesIn(const char* folder) const { return FilesIn(QString::fromLatin1(folder)); }

    std::map<QString, ino_t> InodesOfSite() const
    {
        std::map<QString, ino_t> inodes;
        for (const QString& file : FilesIn("site/")) {
            struct stat status {};
            ::stat(QFile::encodeName(Path("site/") + file).constData(), &status);
            inodes[file] = status.st_ino;
        }
        return inodes;
    }

    QString Path(const char* name) const { return fixture.scratch.Path(QLatin1String(name)); }

    CProjectFixture fixture;
};

// The bytes of the one file into the other, whose size and times stay.
void ReplaceUnseen(const QString& path, const QString& other)
{
    struct stat before {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &before), 0);
    // Padded after the picture's end.
    const QByteArray bytes = ReadWholeFile(other).leftJustified(before.st_size, '\0');
    ASSERT_EQ(bytes.size(), before.st_size);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    const timespec times[] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}

} // namespace

TEST_F(RepeatedDeployment, OfTheSameTreeWritesNothingAndCountsAll)
{
    const GenerationResult first = DeployAgain();
    const auto inodes = InodesOfSite();
    const GenerationResult second = DeployAgain();
    EXPECT_EQ(InodesOfSite(), inodes);
    EXPECT_EQ(second.pages, first.pages);
    EXPECT_EQ(second.images, first.images);
    EXPECT_EQ(first.images, 7); // five pictures and two covers
    ExpectTheSame("nothing changed");
}

TEST_F(RepeatedDeployment, WhateverHasChangedTheSiteIsThatOfAFreshDeployment)
{
    const struct {
        const char* what;
        std::function<void()> change;
    } rows[] = {
        {"nothing before",
         [] {
         }},
        {"covers damaged",
         [this] {
             EXPECT_GT(FilesIn("covers/").size(), 1);
             for (const QString& file : FilesIn("covers/")) {
                 fixture.scratch.Write(QStringLiteral("covers/") + file, "damaged");
             }
         }},
        {"a photograph of the same size and time",
         [this] {
             const QString other = fixture.WritePicture(QStringLiteral("other.png"), QSize(9, 7), 0xff0000);
             ReplaceUnseen(Path("photos/4.png"), other);
         }},
        {"the order of pictures",
         [this] {
             Change([](CGalleryProject& project) { project.FindGallery(childIndex)->MovePicture(1, 2); });
         }},
        {"an angle",
         [this] {
             Change(
                 [](CGalleryProject& project) { project.FindGallery(childIndex)->RotatePicture(1, true); });
         }},
        {"a picture removed",
         [this] {
             Change([](CGalleryProject& project) { project.FindGallery(childIndex)->RemovePicture(1); });
         }},
        {"content of a grandchild",
         [this] {
             Change([this](CGalleryProject& project) {
                 project.FindGallery(grandchildIndex)->AddPicture(Path("photos/0.png"));
             });
         }},
        {"covers lost",
         [this] {
             EXPECT_TRUE(RemoveDirectoryTree(Path("covers")));
         }},
        {"covers can't be kept",
         [this] {
             EXPECT_TRUE(RemoveDirectoryTree(Path("covers")));
             fixture.scratch.Write(QStringLiteral("covers"), "a file in the way");
         }},
    };
    for (const auto& row : rows) {
        row.change();
        ExpectTheSame(row.what);
        ExpectTheSame(row.what); // with what that run has kept
    }
}
