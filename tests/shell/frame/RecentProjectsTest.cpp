#include "shell/frame/RecentProjects.h"

#include <QDir>
#include <QMenu>
#include <QTest>
#include <gtest/gtest.h>

#include "common/Settings.h"
#include "shell/frame/FrameMenus.h"
#include "shell/frame/MainFrameSettings.h"
#include "shell/frame/ProjectPath.h"
#include "support/ScratchFolder.h"

namespace {

const auto User = CSettingsStore::Scope::User;
const QString Key = QStringLiteral("Corvane/Vistorama");

QStringList PathsOf(const CRecentProjects& projects)
{
    return QStringList(projects.GetPaths().begin(), projects.GetPaths().end());
}

class RecentProjects : public testing::Test {
protected:
    const CScratchFolder scratch;
    const std::unique_ptr<CSettingsStore> settings =
        CreateIniSettings(scratch.Path(QStringLiteral("user")), scratch.Path(QStringLiteral("machine")));

    CRecentProjects Load(const QStringList& paths)
    {
        CRecentProjects projects(*settings);
        for (auto path = paths.crbegin(); path != paths.crend(); ++path) {
            projects.Add(*path);
        }
        return projects;
    }
};

QString Entry(const QMenu& menu, int position)
{
    const QAction* const action = menu.actions().at(position);
    return action->isSeparator() ? QStringLiteral("-") : action->text();
}

QStringList EntriesOf(const QMenu& menu)
{
    QStringList entries;
    for (int position = 0; position < menu.actions().size(); ++position) {
        entries += Entry(menu, position);
    }
    return entries;
}

void AddSettledItems(QMenu& menu)
{
    for (const char* name : {"New", "Open", "Save", "Save As"}) {
        menu.addAction(QString::fromLatin1(name));
    }
    menu.addSeparator();
    menu.addAction(QStringLiteral("Exit"));
}

} // namespace

TEST_F(RecentProjects, AFirstRunBeginsWithTheDefaultProject)
{
    CRecentProjects projects(*settings);
    projects.Load();
    EXPECT_EQ(PathsOf(projects), QStringList{GetDefaultProjectPath()});
    EXPECT_TRUE(GetDefaultProjectPath().endsWith(QStringLiteral("/Vistorama/My Vistorama.gallery")));
}

TEST_F(RecentProjects, EmptyEntriesOfTheSettingsAreSkipped)
{
    settings->Write(User, Key, QStringLiteral("ProjectFileName"), QStringLiteral("/a.gallery"));
    settings->Write(User, Key, QStringLiteral("ProjectFileName1"), QString());
    settings->Write(User, Key, QStringLiteral("ProjectFileName3"), QStringLiteral("/c.gallery"));
    CRecentProjects projects(*settings);
    projects.Load();
    EXPECT_EQ(PathsOf(projects), (QStringList{QStringLiteral("/a.gallery"), QStringLiteral("/c.gallery")}));
}

TEST_F(RecentProjects, TheListComesBackAsItWasStored)
{
    const QStringList paths{QStringLiteral("/c.gallery"), QStringLiteral("/Mit Lücke/b, \"x\"=1.gallery"),
                            QStringLiteral("/a.gallery")};
    EXPECT_TRUE(Load(paths).Store());
    CRecentProjects again(*settings);
    again.Load();
    EXPECT_EQ(PathsOf(again), paths);
    // What a longer list has left does not come back.
    EXPECT_TRUE(Load({QStringLiteral("/a.gallery")}).Store());
    again.Load();
    EXPECT_EQ(PathsOf(again), QStringList{QStringLiteral("/a.gallery")});
}

TEST_F(RecentProjects, AProjectThatIsListedMovesToTheFront)
{
    CRecentProjects projects =
        Load({QStringLiteral("/a.gallery"), QStringLiteral("/b.gallery"), QStringLiteral("/c.gallery")});
    projects.Add(QStringLiteral("/x/../b.gallery"));
    EXPECT_EQ(PathsOf(projects), (QStringList{QStringLiteral("/b.gallery"), QStringLiteral("/a.gallery"),
                                              QStringLiteral("/c.gallery")}));
    EXPECT_TRUE(projects.IsCurrent(QStringLiteral("//b.gallery")));
    EXPECT_FALSE(projects.IsCurrent(QStringLiteral("/a.gallery")));
}

// On a file system that tells case apart the one would be saved over the other.
TEST_F(RecentProjects, ProjectsThatDifferInCaseAreTwo)
{
    CRecentProjects projects = Load({QStringLiteral("/trip.gallery")});
    projects.Add(QStringLiteral("/Trip.gallery"));
    EXPECT_EQ(PathsOf(projects),
              (QStringList{QStringLiteral("/Trip.gallery"), QStringLiteral("/trip.gallery")}));
}

TEST_F(RecentProjects, RelativePathsAreThoseOfTheWorkingFolder)
{
    EXPECT_EQ(NormalisedProjectPath(QStringLiteral("a.gallery")),
              QDir::current().absoluteFilePath(QStringLiteral("a.gallery")));
}

TEST_F(RecentProjects, TheListIsNotLongerThanTheSettingSays)
{
    const struct {
        const char* setting;
        int length;
    } rows[] = {
        {"1", 1}, {"2", 2}, {"10", 10}, {"0", 1}, {"21", 21}, {"4294967295", 21}, {"many", 10}, {"-3", 10},
    };
    for (const auto& row : rows) {
        settings->Write(User, Key, QStringLiteral("RecentProjectsCount"), QString::fromLatin1(row.setting));
        CRecentProjects projects(*settings);
        for (int i = 0; i < 30; ++i) {
            projects.Add(QStringLiteral("/%1.gallery").arg(i));
        }
        EXPECT_EQ(PathsOf(projects).size(), row.length) << row.setting;
        EXPECT_EQ(projects.GetFront(), QStringLiteral("/29.gallery")) << row.setting;
    }
}

TEST_F(RecentProjects, ACountOfOneKeepsOnlyTheFirstValue)
{
    EXPECT_TRUE(Load({QStringLiteral("/a.gallery"), QStringLiteral("/b.gallery")}).Store());
    settings->Write(User, Key, QStringLiteral("RecentProjectsCount"), QStringLiteral("1"));
    CRecentProjects projects(*settings);
    projects.Load();
    EXPECT_EQ(PathsOf(projects), QStringList{QStringLiteral("/a.gallery")});
    EXPECT_TRUE(projects.Store());
    EXPECT_EQ(settings->Read(User, Key, QStringLiteral("ProjectFileName")).value_or(QString()),
              QStringLiteral("/a.gallery"));
    EXPECT_FALSE(settings->Read(User, Key, QStringLiteral("ProjectFileName1")).has_value());
}

TEST_F(RecentProjects, ProjectsAreNamedByTheirFilesWithoutExtension)
{
    EXPECT_EQ(ProjectNameOf(QStringLiteral("/x.y/Trip.2024.gallery")), QStringLiteral("Trip.2024"));
    EXPECT_EQ(ProjectNameOf(QStringLiteral("C:\\x\\Trip.gallery")), QStringLiteral("Trip"));
    EXPECT_EQ(ProjectNameOf(QStringLiteral("/x/Trip")), QStringLiteral("Trip"));
    EXPECT_EQ(ProjectNameOf(QStringLiteral("/x/.gallery")), QStringLiteral(".gallery"));
}

TEST_F(RecentProjects, TheMenuListsTheOthersByName)
{
    const CRecentProjects projects =
        Load({QStringLiteral("/m.gallery"), QStringLiteral("/z/Alps.gallery"),
              QStringLiteral("/you & me.gallery"), QStringLiteral("/a/beach.gallery")});
    QMenu menu;
    AddSettledItems(menu);
    UpdateRecentProjectsMenu(menu, projects, [](int) {});
    EXPECT_EQ(EntriesOf(menu).join(QLatin1Char('|')),
              QStringLiteral("New|Open|Save|Save As|-|Alps|beach|you && me|-|Exit"));
    // 32999 plus the place in the list, counted from 1.
    EXPECT_EQ(menu.actions().at(5)->data().toInt(), 33001);
    EXPECT_EQ(menu.actions().at(6)->data().toInt(), 33003);
    EXPECT_EQ(menu.actions().at(7)->data().toInt(), 33002);
    EXPECT_EQ(menu.actions().at(5)->statusTip(), QStringLiteral("/z/Alps.gallery"));
}

TEST_F(RecentProjects, OneProjectLeavesTheMenuAsItIs)
{
    QMenu menu;
    AddSettledItems(menu);
    const QStringList settled = EntriesOf(menu);
    UpdateRecentProjectsMenu(menu, Load({QStringLiteral("/a.gallery"), QStringLiteral("/b.gallery")}),
                             [](int) {});
    EXPECT_EQ(menu.actions().size(), 8);
    UpdateRecentProjectsMenu(menu, Load({QStringLiteral("/a.gallery")}), [](int) {});
    EXPECT_EQ(EntriesOf(menu), settled);
}

// The menu changes while one of its entries is at work.
TEST_F(RecentProjects, AnEntryGivesItsNumberOnceTheMenuIsThrough)
{
    const CRecentProjects projects = Load({QStringLiteral("/a.gallery"), QStringLiteral("/b.gallery")});
    QMenu menu;
    AddSettledItems(menu);
    int chosen = 0;
    UpdateRecentProjectsMenu(menu, projects, [&](int commandId) { chosen = commandId; });
    menu.actions().at(5)->trigger();
    EXPECT_EQ(chosen, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return chosen == 33001; }));
}
