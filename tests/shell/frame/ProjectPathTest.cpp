#include "shell/frame/ProjectPath.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include "support/ScratchFolder.h"

TEST(ProjectPath, RelativePathsAreThoseOfTheWorkingFolder)
{
    EXPECT_EQ(NormalisedProjectPath(QStringLiteral("a.gallery")),
              QDir::current().absoluteFilePath(QStringLiteral("a.gallery")));
}

TEST(ProjectPath, ProjectsAreNamedByTheirFilesWithoutExtension)
{
    EXPECT_EQ(ProjectNameOf(QStringLiteral("/x.y/Trip.2024.gallery")), QStringLiteral("Trip.2024"));
    EXPECT_EQ(ProjectNameOf(QStringLiteral("C:\\x\\Trip.gallery")), QStringLiteral("Trip"));
    EXPECT_EQ(ProjectNameOf(QStringLiteral("/x/Trip")), QStringLiteral("Trip"));
    EXPECT_EQ(ProjectNameOf(QStringLiteral("/x/.gallery")), QStringLiteral(".gallery"));
}

TEST(ProjectPath, ALinkStandsForItsFile)
{
    const CScratchFolder scratch;
    const QString file = scratch.Write(QStringLiteral("a/Trip.gallery"), "");
    const QString link = scratch.Path(QStringLiteral("Trip.gallery"));
    const QString linkOfLink = scratch.Path(QStringLiteral("Again.gallery"));
    ASSERT_TRUE(QFile::link(QStringLiteral("a/../a/Trip.gallery"), link)); // relative to its folder
    ASSERT_TRUE(QFile::link(link, linkOfLink));
    EXPECT_EQ(NormalisedProjectPath(link), file);
    EXPECT_EQ(NormalisedProjectPath(linkOfLink), file);
    // One whose file is not there yet is made as that file.
    ASSERT_TRUE(QFile::remove(file));
    EXPECT_EQ(NormalisedProjectPath(linkOfLink), file);
}
