#include "common/TempFolder.h"

#include <ctime>
#include <sys/stat.h>
#include <sys/time.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include "common/DirectoryProcessor.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Platform.h"
#include "resources/Resources.h"
#include "support/ScratchFolder.h"

TEST(TempFolder, IsPrivateNamedByItsRuleAndGoneAtTheEnd)
{
    const CScratchFolder scratch;
    QString path;
    {
        const CTempFolder folder(scratch.Path());
        path = folder.GetPath();
        EXPECT_TRUE(QRegularExpression(QStringLiteral("/cvn_tmp_cvn_tmp_[0-9a-f]+/$")).match(path).hasMatch())
            << qPrintable(path);
        struct stat status;
        ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0700u);
        QFile file(path + QStringLiteral("x"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
    EXPECT_FALSE(FileExists(path));
}

// As a run leaves it that was killed: its lock has gone with it.
TEST(TempFolder, WhatKilledRunsLeftBehindIsRemoved)
{
    const CScratchFolder scratch;
    const auto makeLeftover = [&](const char* name, bool isOld) {
        const QString folder = scratch.Path(QString::fromLatin1(name));
        scratch.Write(QString::fromLatin1(name) + QStringLiteral("/a/secret.jpg"), "x");
        const timeval hourAgo{::time(nullptr) - 3600, 0};
        const timeval times[2] = {hourAgo, hourAgo};
        EXPECT_EQ(isOld ? ::utimes(QFile::encodeName(folder).constData(), times) : 0, 0);
        return folder;
    };
    const QString old = makeLeftover("cvn_tmp_cvn_tmp_1a2b", true);
    const QString young = makeLeftover("cvn_tmp_cvn_tmp_2a2b", false);
    const QString other = makeLeftover("cvn_tmp_other", true);
    ASSERT_TRUE(QFile::link(old, scratch.Path(QStringLiteral("cvn_tmp_cvn_tmp_link"))));

    const CTempFolder first(scratch.Path());
    EXPECT_FALSE(FileExists(old));
    EXPECT_TRUE(FileExists(young));
    EXPECT_TRUE(FileExists(other));

    // However long a run takes, its folder is left alone.
    const timeval hourAgo{::time(nullptr) - 3600, 0};
    const timeval times[2] = {hourAgo, hourAgo};
    ASSERT_EQ(::utimes(QFile::encodeName(first.GetPath()).constData(), times), 0);
    const CTempFolder second(scratch.Path());
    EXPECT_TRUE(FileExists(first.GetPath()));
}

TEST(TempFolder, AResourceIsWrittenOverAnOldFileOnlyWhenAsked)
{
    const CScratchFolder scratch;
    CTempFolder folder(scratch.Path());
    const auto extract = [&](bool overwrite) {
        return folder.ExtractResource(QStringLiteral("contextmenu"), QStringLiteral("js"),
                                      QStringLiteral("c.js"), overwrite);
    };
    const QString path = extract(false);
    EXPECT_EQ(path, folder.GetPath() + QStringLiteral("c.js"));
    const QByteArray bytes = FindResource(QStringLiteral("contextmenu"), QStringLiteral("js"));
    EXPECT_EQ(ReadWholeFile(path), bytes);
    WriteFileAtomically(path, "mine");
    extract(false);
    EXPECT_EQ(ReadWholeFile(path), "mine");
    extract(true);
    EXPECT_EQ(ReadWholeFile(path), bytes);
}

TEST(TempFolder, TheUsersFolderIsPrivateAndAnUnsafeOneIsRefused)
{
    const CScratchFolder scratch;
    qputenv("XDG_CACHE_HOME", QFile::encodeName(scratch.Path(QStringLiteral("cache"))));
    const QString folder = FindTemporaryFolder();
    EXPECT_EQ(folder, scratch.Path(QStringLiteral("cache/vistorama/tmp/")));
    EXPECT_EQ(FindTemporaryFolder(), folder);
    ASSERT_EQ(::chmod(QFile::encodeName(folder).constData(), 0770), 0);
    EXPECT_THROW(FindTemporaryFolder(), CUnexpectedException);

    // One that is planted in its place leads elsewhere.
    MakeDirectoryPath(scratch.Path(QStringLiteral("elsewhere")), DirectoryAccess::OwnerOnly);
    RemoveDirectoryTree(folder);
    ASSERT_TRUE(QFile::link(scratch.Path(QStringLiteral("elsewhere")), folder.chopped(1)));
    EXPECT_THROW(FindTemporaryFolder(), CUnexpectedException);
    qunsetenv("XDG_CACHE_HOME");
}

TEST(ProgramFolder, IsTheOneOfTheEnvironmentIfSet)
{
    qputenv("VISTORAMA_DATA", "/opt/pictures");
    EXPECT_EQ(FindProgramFolder(), QStringLiteral("/opt/pictures/"));
    qunsetenv("VISTORAMA_DATA");
    EXPECT_TRUE(FindProgramFolder().endsWith(QStringLiteral("/share/vistorama/")));
}

TEST(Resources, TheContextMenuScriptHasItsExactBytes)
{
    const QByteArray expected = "function no_right_click(e) {\r\n"
                                "  try { if (event.button==2||event.button==3) return false; }  \r\n"
                                "  catch (e) { if (e.which == 3) return false; } \r\n"
                                "}\r\n"
                                "document.oncontextmenu = function() { return false; }\r\n"
                                "document.ondragstart   = function() { return false; }\r\n"
                                "document.onmousedown   = no_right_click;";
    EXPECT_EQ(FindResource(QStringLiteral("CONTEXTMENU"), QStringLiteral("JS")), expected);
    EXPECT_TRUE(FindResource(QStringLiteral("missing"), QStringLiteral("js")).isNull());
    EXPECT_TRUE(FindResource(QStringLiteral("new_gallery"), QStringLiteral("png")).startsWith("\x89PNG"));
}

TEST(ProgramFolder, LosesALastPartReleaseOrDebug)
{
    const struct {
        const char* folder;
        const char* expected;
    } rows[] = {
        {"/src/Release/", "/src/"},
        {"/src/Debug/", "/src/"},
        {"/src/", "/src/"},
        {"/src/MyRelease/", "/src/MyRelease/"},
        {"/Debug/src/", "/Debug/src/"},
        {"/src/Release/Debug/", "/src/Release/"}, // once only
    };
    for (const auto& row : rows) {
        EXPECT_EQ(WithoutBuildFolder(QString::fromLatin1(row.folder)), QString::fromLatin1(row.expected));
    }
}
