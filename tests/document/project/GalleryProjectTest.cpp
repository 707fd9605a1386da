#include "document/project/GalleryProject.h"

#include "TestProject.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"

namespace {

QString Folders(const CGalleryProject& project)
{
    QStringList folders;
    for (const QString& folder : project.GetFolders()) {
        folders += folder;
    }
    return folders.join(QLatin1Char(' '));
}

void SetFolderLimit(CTestProject& test, const char* limit)
{
    test.settings->Write(CSettingsStore::Scope::User, QStringLiteral("Corvane/Vistorama"),
                         QStringLiteral("RecentFoldersCount"), QString::fromUtf8(limit));
}

} // namespace

TEST(Project, IsEmptyUntilItIsOpened)
{
    CTestProject test;
    EXPECT_FALSE(test.project.IsLoaded());
    EXPECT_TRUE(test.project.IsPreviewMode());
    EXPECT_EQ(test.project.GetCurrentGallery(), nullptr);
    EXPECT_EQ(test.project.GetRootGallery(), nullptr);
    test.project.Save(test.ProjectPath());
    EXPECT_FALSE(FileExists(test.ProjectPath()));
    EXPECT_EQ(test.project.AddChildGallery(-1), -1);
}

TEST(Project, OpeningANameThatDoesNotExistMakesAndSavesANewProject)
{
    CTestProject test;
    test.AddStandard();
    test.project.Open(test.Path(QStringLiteral("deep/er/My Site.v2.gallery")));
    EXPECT_TRUE(test.project.IsLoaded());
    EXPECT_EQ(test.project.GetName(), QStringLiteral("My Site"));
    EXPECT_EQ(test.project.GetGalleries().size(), 1u);
    EXPECT_EQ(Folders(test.project), test.Path(QStringLiteral("pictures")));
    EXPECT_EQ(test.project.GetRecentFolder(), test.Path(QStringLiteral("pictures")));

    // And what was saved opens again, though no page was ever chosen.
    CGalleryProject again(test.environment);
    again.Open(test.Path(QStringLiteral("deep/er/My Site.v2.gallery")));
    EXPECT_TRUE(again.IsLoaded());
    EXPECT_EQ(again.GetRootGallery()->GetLayout().GetTemplatePage(), QStringLiteral("index.html"));
}

TEST(Project, ItsNameIsTheFileNameUpToTheFirstDot)
{
    const struct {
        const char* path;
        const char* name;
    } rows[] = {
        {"a.b.gallery", "a"},           {"name", "name"}, {"x.gallery", "x"},
        {"C\\d\\site.gallery", "site"}, {".hidden", ""},
    };
    for (const auto& row : rows) {
        CTestProject test;
        test.NewGallery();
        test.project.Save(test.Path(QString::fromUtf8(row.path)));
        EXPECT_EQ(test.project.GetName(), QString::fromUtf8(row.name)) << row.path;
    }
}

TEST(Project, TheFirstNameBecomesTheSuggestedDeployFolder)
{
    CTestProject test;
    test.NewGallery();
    test.project.Save(test.Path(QStringLiteral("v1.5/site.gallery")));
    EXPECT_EQ(test.project.GetDeploySettings().folder, test.Path(QStringLiteral("v1")));
    test.project.Save(test.Path(QStringLiteral("other.gallery")));
    EXPECT_EQ(test.project.GetDeploySettings().folder, test.Path(QStringLiteral("v1")));
}

TEST(Project, ASaveUnderAnotherNameCopiesNoPicture)
{
    CTestProject test;
    test.NewGallery(2);
    test.project.Save(test.ProjectPath());
    test.project.Save(test.Path(QStringLiteral("copy/Other.gallery")));
    EXPECT_TRUE(test.scratch.Read(QStringLiteral("copy/Other.gallery")).contains("/pictures/1.jpg"));
    EXPECT_EQ(ListDirectory(test.Path(QStringLiteral("copy"))).size(), 1u);
}

TEST(Project, WithoutAPicturesFolderThereIsNoNewProject)
{
    CTestProject test;
    CProjectEnvironment environment = test.environment;
    environment.picturesFolder.clear();
    CGalleryProject project(environment);
    EXPECT_THROW(project.Open(test.ProjectPath()), CWin32Exception);
    EXPECT_FALSE(project.IsLoaded());
    EXPECT_FALSE(FileExists(test.ProjectPath()));
}

TEST(Project, ClearPutsBackAll)
{
    CTestProject test;
    test.AddStandard();
    test.NewGallery();
    CDeploySettings& settings = test.project.GetDeploySettings();
    settings = {.folder = QStringLiteral("f"),
                .destination_kind = 1,
                .ftp_directory = QStringLiteral("d"),
                .ftp_destination = 3,
                .redeploy_mode = 0,
                .open_browser_after_deploy = false};
    test.project.Clear();
    const CDeploySettings expected;
    EXPECT_EQ(settings, expected);
    EXPECT_EQ(expected.redeploy_mode, 1);
    EXPECT_EQ(expected.ftp_destination, -1);
    EXPECT_TRUE(expected.open_browser_after_deploy);
    EXPECT_FALSE(test.project.IsLoaded());
    EXPECT_TRUE(test.project.GetGalleries().empty());
    EXPECT_TRUE(test.project.GetFolders().empty());
    EXPECT_TRUE(test.project.GetRecentFolder().isEmpty());
    EXPECT_TRUE(test.project.GetCatalogue().GetTemplates().empty());
    EXPECT_TRUE(test.project.GetCatalogue().GetStyles().empty());
}

TEST(RecentFolders, LetterCaseCounts)
{
    CTestProject test;
    EXPECT_TRUE(test.project.AddFolder(QStringLiteral("/a/Photos")));
    EXPECT_TRUE(test.project.AddFolder(QStringLiteral("/a/photos")));
    EXPECT_FALSE(test.project.AddFolder(QStringLiteral("/a/Photos")));
    EXPECT_EQ(Folders(test.project), QStringLiteral("/a/Photos /a/photos"));
}

TEST(RecentFolders, AnEleventhFolderRemovesTheOldest)
{
    CTestProject test;
    for (int number = 1; number <= 10; ++number) {
        test.project.AddFolder(QString::number(number));
    }
    EXPECT_EQ(Folders(test.project), QStringLiteral("1 2 3 4 5 6 7 8 9 10"));
    EXPECT_EQ(test.project.GetRecentFolder(), QStringLiteral("1"));
    test.project.AddFolder(QStringLiteral("11"));
    EXPECT_EQ(Folders(test.project), QStringLiteral("2 3 4 5 6 7 8 9 10 11"));
    EXPECT_EQ(test.project.GetRecentFolder(), QStringLiteral("2"));
    test.project.SetRecentFolder(QStringLiteral("5"));
    test.project.AddFolder(QStringLiteral("12"));
    EXPECT_EQ(test.project.GetRecentFolder(), QStringLiteral("5"));
}

TEST(RecentFolders, TheLimitIsASettingAndOneFolderGoesAtATime)
{
    CTestProject test;
    for (const char* name : {"a", "b", "c"}) {
        test.project.AddFolder(QString::fromUtf8(name));
    }
    SetFolderLimit(test, "2");
    test.project.AddFolder(QStringLiteral("d"));
    EXPECT_EQ(Folders(test.project), QStringLiteral("b c d"));
    SetFolderLimit(test, "0");
    test.project.AddFolder(QStringLiteral("e"));
    EXPECT_EQ(Folders(test.project), QStringLiteral("c d e"));
    SetFolderLimit(test, "nonsense");
    test.project.AddFolder(QStringLiteral("f"));
    EXPECT_EQ(Folders(test.project), QStringLiteral("c d e f"));
}

TEST(RecentFolders, ALimitOfNoneStillTakesTheFirstFolder)
{
    CTestProject test;
    SetFolderLimit(test, "0");
    EXPECT_TRUE(test.project.AddFolder(QStringLiteral("a")));
    EXPECT_EQ(Folders(test.project), QStringLiteral("a"));
}

TEST(RecentFolders, OneOfThemIsSelected)
{
    CTestProject test;
    test.project.AddFolder(QStringLiteral("/Pictures"));
    test.project.AddFolder(QStringLiteral("/b"));
    test.project.SetRecentFolder(QStringLiteral("/Pictures"));
    EXPECT_EQ(test.project.GetRecentFolder(), QStringLiteral("/Pictures"));
    test.project.SetRecentFolder(QStringLiteral("/PICTURES"));
    EXPECT_EQ(test.project.GetRecentFolder(), QString());
    EXPECT_TRUE(test.project.RemoveFolder(QStringLiteral("/Pictures")));
    EXPECT_FALSE(test.project.RemoveFolder(QStringLiteral("/Pictures")));
    EXPECT_EQ(Folders(test.project), QStringLiteral("/b"));
}

TEST(Project, OpeningAFileTakesItsNameAndSuggestsADeployFolder)
{
    CTestProject test;
    const QString path = test.scratch.Write(QStringLiteral("site/a.b.gallery"), "<project/>");
    test.project.Open(path);
    EXPECT_EQ(test.project.GetName(), QStringLiteral("a"));
    EXPECT_EQ(test.project.GetDeploySettings().folder, test.Path(QStringLiteral("site/a")));
}
