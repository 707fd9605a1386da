#include "shell/frame/RecentProjects.h"

#include <gtest/gtest.h>

#include "common/Settings.h"
#include "shell/frame/MainFrameSettings.h"
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
