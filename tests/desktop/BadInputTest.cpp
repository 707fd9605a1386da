#include <sys/stat.h>

#include <QFile>
#include <gtest/gtest.h>

#include "DesktopProgram.h"
#include "SavedProject.h"
#include "common/FileSystem.h"

// What nobody should do to the program, and what becomes of it: a message, and nothing lost.

namespace {

// The title of the program's messages.
const QString Message = QStringLiteral("Vistorama: please note");

} // namespace

TEST(BadInput, AProjectThatCantBeReadIsToldOfAndLeftAlone)
{
    const QByteArray rows[] = {"<project><gallery", "", "no XML at all", QByteArray(1000, '\0')};
    for (const QByteArray& bytes : rows) {
        CDesktopProgram program;
        const QString broken = program.scratch.Write(QStringLiteral("broken.gallery"), bytes);
        program.StartWithMessage({broken}, Message);
        program.FocusWindow(Message);
        program.TakePicture(QStringLiteral("unreadable-project"));
        program.PressKeys({QStringLiteral("Return")});
        program.WaitForPage();
        // A new project is there and works.
        EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - My Vistorama"));
        EXPECT_EQ(program.Terminate(), 0);
        EXPECT_EQ(program.scratch.Read(QStringLiteral("broken.gallery")), bytes);
        EXPECT_TRUE(FileExists(program.GetDefaultProject()));
    }
}

TEST(BadInput, TheLastProjectCantBeReadAnyMore)
{
    CDesktopProgram program;
    const QString broken = program.scratch.Write(QStringLiteral("broken.gallery"), "<project");
    const QString whole = program.CopySample();
    // A project is in the default place already: it is not touched either.
    const QByteArray kept = "<project version=\"2.0\"/>";
    program.scratch.Write(QStringLiteral("home/Documents/Vistorama/My Vistorama.gallery"), kept);
    program.WriteSettings("ProjectFileName=" + broken.toUtf8() + "\nProjectFileName1=" + whole.toUtf8() +
                          '\n');
    program.StartWithMessage({}, Message);
    program.FocusWindow(Message);
    program.PressKeys({QStringLiteral("Return")});
    program.WaitForPage();
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - My Vistorama1"));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(program.scratch.Read(QStringLiteral("broken.gallery")), "<project");
    EXPECT_EQ(program.scratch.Read(QStringLiteral("home/Documents/Vistorama/My Vistorama.gallery")), kept);
    const QByteArray settings = program.ReadSettings();
    EXPECT_TRUE(settings.contains("ProjectFileName1=" + broken.toUtf8()));
    EXPECT_TRUE(settings.contains("ProjectFileName2=" + whole.toUtf8()));
}

TEST(BadInput, AFileThatIsNoProjectIsNotOverwritten)
{
    CDesktopProgram program;
    const QByteArray drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\"/>";
    const QString path = program.scratch.Write(QStringLiteral("drawing.svg"), drawing);
    program.StartWithMessage({path}, Message);
    program.FocusWindow(Message);
    program.PressKeys({QStringLiteral("Return")});
    program.WaitForPage();
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(program.scratch.Read(QStringLiteral("drawing.svg")), drawing);
}

TEST(BadInput, ARecentProjectThatIsBrokenLeavesTheCurrentOneOpen)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    const QString broken = program.scratch.Write(QStringLiteral("broken.gallery"), "<project");
    program.WriteSettings("ProjectFileName=" + project.toUtf8() + "\nProjectFileName1=" + broken.toUtf8() +
                          '\n');
    program.Start({});
    program.PressKeys({QStringLiteral("alt+f"), QStringLiteral("Down"), QStringLiteral("Down"),
                       QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Down"),
                       QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindow(Message));
    program.FocusWindow(Message);
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindowGone(Message));
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - sample"));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(program.scratch.Read(QStringLiteral("broken.gallery")), "<project");
    EXPECT_EQ(SavedProject(project).galleries.size(), 4u);
}

// The folder of the project is a file: it can be saved neither at the start nor at the end.
TEST(BadInput, AProjectThatCantBeWrittenIsNotLostWithoutAQuestion)
{
    CDesktopProgram program;
    program.scratch.Write(QStringLiteral("file"), "x");
    program.StartWithMessage({program.Path(QStringLiteral("file/new.gallery"))}, Message);
    program.FocusWindow(Message);
    program.PressKeys({QStringLiteral("Return")});
    program.WaitForPage();
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - new"));
    program.PressKeys({QStringLiteral("alt+f"), QStringLiteral("x")});
    ASSERT_TRUE(program.WaitForWindow(Message));
    program.FocusWindow(Message);
    program.TakePicture(QStringLiteral("unsaved-project"));
    // Stays, and asks again.
    program.PressKeys({QStringLiteral("Escape")});
    ASSERT_TRUE(program.WaitForWindowGone(Message));
    EXPECT_TRUE(program.IsRunning());
    program.FocusWindow(QStringLiteral("Vistorama - "));
    program.PressKeys({QStringLiteral("alt+f"), QStringLiteral("x")});
    ASSERT_TRUE(program.WaitForWindow(Message));
    program.FocusWindow(Message);
    program.PressKeys({QStringLiteral("alt+c")});
    EXPECT_EQ(program.WaitForEnd(), 0);
}

// Without any layout there can be no project: what is left is to say so.
TEST(BadInput, AProgramWithoutLayoutsSaysWhatIsWrongAndEnds)
{
    CDesktopProgram program;
    program.SetDataFolder(program.Path(QStringLiteral("no data")));
    program.scratch.Write(QStringLiteral("no data/Templates/bad.xml"), "<template");
    program.scratch.Write(QStringLiteral("a/a.gallery"), "<project/>");
    program.StartWithMessage({program.Path(QStringLiteral("a/a.gallery"))}, Message);
    program.FocusWindow(Message);
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindowGone(Message));
    // What is left is a box without a title.
    program.TakePicture(QStringLiteral("last-resort"));
    EXPECT_TRUE(program.WaitFor([&] {
        program.FocusAnyWindow();
        program.PressKeys({QStringLiteral("Return")});
        return !program.IsRunning();
    }));
    EXPECT_EQ(program.WaitForEnd(), 1);
    EXPECT_EQ(program.scratch.Read(QStringLiteral("a/a.gallery")), "<project/>");
}

// A layout whose page file has gone is told of in the page's place, and another one can be chosen.
TEST(BadInput, ALayoutWithoutItsFileLeavesTheProgramUsable)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.UseOwnData();
    program.WriteLayout(QStringLiteral("second"), "<html></html>");
    program.Start({project});
    const QString file = program.Path(QStringLiteral("data/Templates/second/index.html"));
    ASSERT_TRUE(QFile::remove(file));
    program.PressKeys(
        {QStringLiteral("alt+g"), QStringLiteral("l"), QStringLiteral("Up"), QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("document.body.innerText.includes('second/index.html')")));
    program.TakePicture(QStringLiteral("layout-without-file"));
    program.PressKeys(
        {QStringLiteral("alt+g"), QStringLiteral("l"), QStringLiteral("Home"), QStringLiteral("Return")});
    ASSERT_TRUE(
        program.WaitInPage(QStringLiteral("(document.querySelector('h1') || {}).innerText == 'Wide Open'")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(SavedProject(project).galleries.size(), 4u);
}

// A layout, or a text of the project, may hold scripts of others.
TEST(BadInput, APageThatCallsTheProgramByItselfChangesNothing)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.UseOwnData();
    program.WriteLayout(
        QStringLiteral("hostile"),
        "<html><head><%pageheader%></head><body><%picture id=\"photo1\" width=\"200\" "
        "height=\"150\" href=\"x\"%><script>function attack() { for (var i = 0; i < 20; ++i) {"
        "external.DeleteImage('photo1'); } location.href = 'gl_1';"
        "document.querySelectorAll('img').forEach(function (i) { i.click(); }); }"
        "onload = attack; setInterval(attack, 20);</script></body></html>");
    program.Start({project});
    program.PressKeys(
        {QStringLiteral("alt+g"), QStringLiteral("l"), QStringLiteral("Up"), QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("typeof attack == 'function'")));
    const SavedProject before(project);
    // With a dialog open as well.
    program.PressKeys({QStringLiteral("alt+t"), QStringLiteral("Down"), QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Image signature")));
    program.FocusWindow(QStringLiteral("Image signature"));
    program.PressKeys({QStringLiteral("Escape")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Image signature")));
    EXPECT_EQ(program.Terminate(), 0);
    const SavedProject after(project);
    ASSERT_EQ(after.galleries.size(), before.galleries.size());
    for (const auto& [index, gallery] : before.galleries) {
        EXPECT_EQ(after.galleries.at(index).pictures.size(), gallery.pictures.size()) << index;
    }
}

// To open a pipe waits for its other end.
TEST(BadInput, WhatIsNoFileIsRefusedAtOnce)
{
    CDesktopProgram program;
    const QString pipe = program.Path(QStringLiteral("pipe.gallery"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    program.StartWithMessage({pipe}, Message);
    program.FocusWindow(Message);
    program.TakePicture(QStringLiteral("project-is-a-pipe"));
    program.PressKeys({QStringLiteral("Return")});
    program.WaitForPage();
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - My Vistorama"));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST(BadInput, WithoutADisplayTheProgramAnswersWhatItCan)
{
    const struct {
        QStringList arguments;
        int exitCode;
        const char* output;
        const char* errors;
    } rows[] = {
        {{}, 1, "", "There is no display"},
        {{QStringLiteral("Trip.gallery")}, 1, "", "There is no display"},
        {{QStringLiteral("--help")}, 0, "Usage:\n", ""},
        {{QStringLiteral("--version")}, 0, "vistorama ", ""},
        {{QStringLiteral("--typo")}, 2, "", "There is no option '--typo'.\nUsage:\n"},
    };
    const CScratchFolder scratch;
    for (const auto& row : rows) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
            environment.remove(QString::fromLatin1(name));
        }
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(scratch.Path());
        process.start(QStringLiteral(PROGRAM_FILE), row.arguments);
        ASSERT_TRUE(process.waitForFinished(60'000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), row.exitCode);
        EXPECT_TRUE(process.readAllStandardOutput().startsWith(row.output));
        EXPECT_TRUE(process.readAllStandardError().startsWith(row.errors));
        EXPECT_TRUE(ListDirectory(scratch.Path()).empty());
    }
}
