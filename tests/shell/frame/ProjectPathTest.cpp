#include "shell/frame/ProjectPath.h"

#include <QDir>
#include <gtest/gtest.h>

#include "common/Exceptions.h"
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

// Any XML can be read as a project; a drawing that is opened by mistake must not become one.
TEST(ProjectFile, AFileOfAnotherKindIsNoProject)
{
    const CScratchFolder scratch;
    const QString drawing = scratch.Write(QStringLiteral("drawing.svg"), "<svg/>");
    try {
        RequireProjectFile(drawing);
        FAIL();
    } catch (const CGenericException& failure) {
        EXPECT_EQ(failure.GetCaption(), QStringLiteral("The file %1 is not a gallery project.").arg(drawing));
    }
    EXPECT_NO_THROW(RequireProjectFile(scratch.Write(QStringLiteral("a.GALLERY"), "")));
    EXPECT_NO_THROW(RequireProjectFile(scratch.Path(QStringLiteral("new one"))));
    EXPECT_THROW(RequireProjectFile(scratch.Path()), CGenericException);
}
