#include <csignal>

#include <QDateTime>
#include <QFileInfo>
#include <gtest/gtest.h>

#include "DesktopProgram.h"
#include "SavedProject.h"
#include "common/FileSystem.h"

// What becomes of a person's work when the program ends without notice, and when there are two programs.

namespace {

// The angle of any picture that was turned; 0 if none was.
int SavedAngle(const QString& project)
{
    for (const auto& [index, gallery] : SavedProject(project).galleries) {
        for (const SavedProject::Picture& picture : gallery.pictures) {
            if (picture.angle != 0) {
                return picture.angle;
            }
        }
    }
    return 0;
}

void RotateAPicture(CDesktopProgram& program)
{
    program.InPage(QStringLiteral("window.isOld_ = true"));
    program.PressStripButton(PictureOnPage("River Stones"), QStringLiteral("Rotate clockwise"));
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("!window.isOld_")));
}

} // namespace

TEST(Safety, AChangeIsInTheFileThoughTheProgramIsKilled)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.Start({project});
    RotateAPicture(program);
    EXPECT_TRUE(CDesktopProgram::WaitFor([&] { return SavedAngle(project) == 1; }));
    program.Kill();
    EXPECT_EQ(SavedAngle(project), 1);

    // The lock that it left behind stops nobody.
    program.Start({project});
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - sample"));
    RotateAPicture(program);
    EXPECT_TRUE(CDesktopProgram::WaitFor([&] { return SavedAngle(project) == 2; }));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST(Safety, ASignalInTheMiddleOfADeploymentEndsTheProgramInOrder)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.Start({project});
    RotateAPicture(program);
    program.PressKeys({QStringLiteral("alt+g"), QStringLiteral("d")});
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Deploy Wizard")));
    program.FocusWindow(QStringLiteral("Deploy Wizard"));
    const QString site = program.Path(QStringLiteral("site"));
    // A picture takes until the window has come to rest.
    const QString step = QStringLiteral("signal-in-deployment");
    program.PressKeys({QStringLiteral("alt+n")});
    program.TakePicture(step);
    program.PressKeys({QStringLiteral("ctrl+a")});
    program.TypeText(site);
    program.PressKeys({QStringLiteral("alt+n")});
    program.TakePicture(step);
    program.PressKeys({QStringLiteral("alt+o")});
    program.PressKeys({QStringLiteral("alt+n")});
    ASSERT_TRUE(CDesktopProgram::WaitFor([&] { return FileExists(site); }));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(SavedAngle(project), 1);
    EXPECT_FALSE(FileExists(program.Path(QStringLiteral("sample/.sample.gallery.lock"))));
}

TEST(Safety, LookingAtAProjectDoesNotWriteIt)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    const QByteArray before = program.scratch.Read(QStringLiteral("sample/sample.gallery"));
    program.Start({project});
    program.Kill();
    EXPECT_EQ(program.scratch.Read(QStringLiteral("sample/sample.gallery")), before);
}

TEST(Safety, ASecondProgramOpensTheProjectAsReadOnly)
{
    CDesktopProgram first;
    const QString project = first.CopySample();
    first.Start({project});

    CDesktopProgram second;
    second.StartWithMessage({project}, QStringLiteral("please note"));
    second.TakePicture(QStringLiteral("open-elsewhere"));
    second.FocusAnyWindow();
    second.PressKeys({QStringLiteral("Return")});
    second.WaitForPage();
    EXPECT_EQ(second.GetTitle(), QStringLiteral("Vistorama - sample (read-only)"));
    RotateAPicture(second);
    second.TakePicture(QStringLiteral("read-only"));

    // The first one's change arrives, the second one's doesn't.
    first.PressKeys({QStringLiteral("ctrl+s")});
    EXPECT_EQ(SavedAngle(project), 0);
    RotateAPicture(first);
    RotateAPicture(first);
    EXPECT_TRUE(CDesktopProgram::WaitFor([&] { return SavedAngle(project) == 2; }));
    second.Kill();
    EXPECT_EQ(first.Terminate(), 0);
    EXPECT_EQ(SavedAngle(project), 2);
    EXPECT_FALSE(FileExists(first.Path(QStringLiteral("sample/.sample.gallery.lock"))));
}

TEST(Safety, ASecondProgramThatIsLeftBeginsANewProject)
{
    CDesktopProgram first;
    const QString project = first.CopySample();
    first.Start({project});

    CDesktopProgram second;
    second.StartWithMessage({project}, QStringLiteral("please note"));
    second.FocusAnyWindow();
    second.PressKeys({QStringLiteral("Escape")});
    second.WaitForPage();
    EXPECT_EQ(second.GetTitle(), QStringLiteral("Vistorama - My Vistorama"));
    EXPECT_EQ(second.Terminate(), 0);
    EXPECT_EQ(first.Terminate(), 0);
}
