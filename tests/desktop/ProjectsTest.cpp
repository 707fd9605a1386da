#include <gtest/gtest.h>

#include "DesktopProgram.h"
#include "SavedProject.h"
#include "common/FileSystem.h"

// Which project is opened, where it is saved, and what the list of recent ones says.

namespace {

QString RecentValue(const QByteArray& settings, const QByteArray& name)
{
    for (const QByteArray& line : settings.split('\n')) {
        if (line.startsWith(name + '=')) {
            return QString::fromUtf8(line.mid(name.size() + 1));
        }
    }
    return QString();
}

const QString GoodPage = QStringLiteral("document.body.innerText.length > 0");

} // namespace

TEST(Projects, AFirstRunMakesTheDefaultProject)
{
    CDesktopProgram program;
    program.Start({});
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - My Vistorama"));
    EXPECT_TRUE(FileExists(program.GetDefaultProject()));
    program.TakePicture(QStringLiteral("first-run"));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(RecentValue(program.ReadSettings(), "ProjectFileName"), program.GetDefaultProject());
    EXPECT_EQ(SavedProject(program.GetDefaultProject()).galleries.size(), 1u);
}

TEST(Projects, APathWithBlanksOnTheCommandLineIsOpenedAndListedFirst)
{
    const struct {
        const char* folder;
        bool quoted;
    } rows[] = {
        {"with two  blanks & ümlaut #1", false},
        {"in quotes", true},
    };
    for (const auto& row : rows) {
        CDesktopProgram program;
        const QString project = program.CopySample(QString::fromUtf8(row.folder));
        program.Start({row.quoted ? QStringLiteral("\"%1\"").arg(project) : project});
        EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - sample"));
        EXPECT_TRUE(
            program.WaitInPage(QStringLiteral("document.querySelectorAll('img[onmouseenter]').length > 5")));
        EXPECT_TRUE(program.WaitForPictures());
        EXPECT_EQ(program.Terminate(), 0);
        EXPECT_FALSE(FileExists(program.GetDefaultProject()));
        const QByteArray settings = program.ReadSettings();
        EXPECT_EQ(RecentValue(settings, "ProjectFileName1"), program.GetDefaultProject());
    }
}

// The shell has already cut the text at its blanks.
TEST(Projects, APathInSeveralArgumentsIsOnePath)
{
    CDesktopProgram program;
    const QString project = program.CopySample(QStringLiteral("one two"));
    program.Start(project.split(QLatin1Char(' ')));
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - sample"));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST(Projects, TheProjectThatWasOpenLastIsOpenedAgain)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.Start({project});
    EXPECT_EQ(program.Terminate(), 0);
    program.Start({});
    EXPECT_EQ(program.GetTitle(), QStringLiteral("Vistorama - sample"));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST(Projects, ARecentProjectIsChosenInTheFileMenu)
{
    CDesktopProgram program;
    const QString first = program.CopySample(QStringLiteral("a"));
    const QString other = program.Path(QStringLiteral("b/other.gallery"));
    program.WriteSettings("ProjectFileName=" + first.toUtf8() + "\nProjectFileName1=" + other.toUtf8() +
                          '\n');
    program.Start({});
    // Behind New, Open, Save, Save As.
    program.PressKeys({QStringLiteral("alt+f"), QStringLiteral("Down"), QStringLiteral("Down"),
                       QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Down")});
    program.TakePicture(QStringLiteral("file-menu"));
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Vistorama - other")));
    EXPECT_TRUE(FileExists(other));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(RecentValue(program.ReadSettings(), "ProjectFileName"), other);
    EXPECT_EQ(RecentValue(program.ReadSettings(), "ProjectFileName1"), first);
    // The one that was left was saved.
    EXPECT_EQ(SavedProject(first).galleries.size(), 4u);
}

TEST(Projects, ACountOfOneKeepsOnlyTheCurrentProject)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.WriteSettings(
        "RecentProjectsCount=1\nProjectFileName=/gone/a.gallery\nProjectFileName1=/gone/b.gallery\n");
    program.Start({project});
    EXPECT_EQ(program.Terminate(), 0);
    const QByteArray settings = program.ReadSettings();
    EXPECT_EQ(RecentValue(settings, "ProjectFileName"), project);
    EXPECT_FALSE(settings.contains("ProjectFileName1"));
}

TEST(Projects, ANewProjectIsMadeByKeys)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.Start({project});
    program.PressKeys({QStringLiteral("ctrl+n")});
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("New pictures gallery")));
    program.FocusWindow(QStringLiteral("New pictures gallery"));
    program.PressKeys({QStringLiteral("ctrl+a")});
    program.TypeText(QStringLiteral("Autumn"));
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Vistorama - Autumn")));
    EXPECT_TRUE(FileExists(program.GetHome() + QStringLiteral("/Documents/Vistorama/Autumn.gallery")));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST(Projects, SaveAsGivesTheProjectAnotherFile)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.Start({project});
    program.PressKeys({QStringLiteral("alt+f"), QStringLiteral("a")});
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Save project as")));
    program.FocusWindow(QStringLiteral("Save project as"));
    program.PressKeys({QStringLiteral("ctrl+a")});
    program.TypeText(program.Path(QStringLiteral("copy")));
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Vistorama - copy")));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(SavedProject(program.Path(QStringLiteral("copy.gallery"))).galleries.size(), 4u);
    EXPECT_EQ(RecentValue(program.ReadSettings(), "ProjectFileName"),
              program.Path(QStringLiteral("copy.gallery")));
}

TEST(Projects, AnotherProjectIsOpenedByTheDialog)
{
    CDesktopProgram program;
    const QString first = program.CopySample(QStringLiteral("a"));
    const QString second = program.CopySample(QStringLiteral("b c"));
    program.Start({first});
    program.PressKeys({QStringLiteral("ctrl+o")});
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("Open project")));
    program.FocusWindow(QStringLiteral("Open project"));
    program.TypeText(second);
    program.PressKeys({QStringLiteral("Return")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("Open project")));
    ASSERT_TRUE(program.WaitInPage(GoodPage));
    EXPECT_EQ(program.Terminate(), 0);
    EXPECT_EQ(RecentValue(program.ReadSettings(), "ProjectFileName1"), first);
}

TEST(Projects, ExitInTheMenuSavesAndEnds)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    const QString before = SavedProject(project).text;
    program.Start({project});
    program.PressKeys({QStringLiteral("alt+f"), QStringLiteral("x")});
    EXPECT_EQ(program.WaitForEnd(), 0);
    // Saved: the paths are those of this place now.
    EXPECT_NE(SavedProject(project).text, before);
    EXPECT_EQ(SavedProject(project).galleries.size(), 4u);
}
