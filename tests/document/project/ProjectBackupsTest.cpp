#include "document/project/ProjectBackups.h"

#include <QDir>
#include <QFile>
#include <QTimeZone>
#include <gtest/gtest.h>

#include "common/Exceptions.h"
#include "support/ScratchFolder.h"

namespace {

QByteArray ProjectWith(int pictures, const QByteArray& id = "0123456789abcdef0123456789abcdef")
{
    QByteArray list;
    for (int i = 0; i < pictures; ++i) {
        list += "<picture path=\"/p/" + QByteArray::number(i) + ".jpg\" angle=\"0\"/>";
    }
    const QByteArray attribute = id.isEmpty() ? QByteArray() : " id=\"" + id + "\"";
    return "<project version=\"2.0\"" + attribute +
           "><gallery index=\"0\"><picture_list><picture index=\"1\"/>" + list +
           "</picture_list></gallery><gallery index=\"1\"/></project>";
}

QDateTime Day(int day)
{
    return QDateTime(QDate(2026, 3, day), QTime(12, 0), QTimeZone::utc());
}

class ProjectBackups : public testing::Test {
protected:
    const CScratchFolder scratch;
    const QString path = scratch.Write(QStringLiteral("projects/a.gallery"), ProjectWith(0));
    const CProjectBackups backups{scratch.Path(QStringLiteral("kept"))};

    std::vector<int> PicturesOf(const QString& project) const
    {
        std::vector<int> counts;
        for (const CProjectBackups::State& state : backups.List(project)) {
            counts.push_back(state.pictures);
        }
        return counts;
    }
};

} // namespace

TEST_F(ProjectBackups, AStateKeepsItsBytesAndTellsItsTimeGalleriesAndPictures)
{
    backups.Keep(path, ProjectWith(3), Day(5));
    const auto states = backups.List(path);
    ASSERT_EQ(states.size(), 1u);
    EXPECT_EQ(states[0].changed, Day(5));
    EXPECT_EQ(states[0].galleries, 2);
    EXPECT_EQ(states[0].pictures, 3);
    QFile file(states[0].path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), ProjectWith(3));
}

TEST_F(ProjectBackups, TheLastFiveStayTheLatestFirst)
{
    for (int day = 1; day <= 7; ++day) {
        backups.Keep(path, ProjectWith(day), Day(day));
    }
    EXPECT_EQ(PicturesOf(path), (std::vector<int>{7, 6, 5, 4, 3}));
}

TEST_F(ProjectBackups, TheSameBytesAreNotKeptTwiceInARow)
{
    backups.Keep(path, ProjectWith(1), Day(1));
    backups.Keep(path, ProjectWith(1), Day(2));
    backups.Keep(path, ProjectWith(2), Day(3));
    backups.Keep(path, ProjectWith(1), Day(4));
    EXPECT_EQ(PicturesOf(path), (std::vector<int>{1, 2, 1}));
}

TEST_F(ProjectBackups, AClockThatWentBackDoesNotMakeTheLatestStateTheOldest)
{
    backups.Keep(path, ProjectWith(1), Day(9));
    backups.Keep(path, ProjectWith(2), Day(1));
    EXPECT_EQ(PicturesOf(path), (std::vector<int>{2, 1}));
}

TEST_F(ProjectBackups, AMovedProjectIsKnownByItsId)
{
    backups.Keep(path, ProjectWith(4), Day(1));
    const QString moved = scratch.Write(QStringLiteral("elsewhere/b.gallery"), ProjectWith(5));
    EXPECT_EQ(PicturesOf(moved), std::vector<int>{4});
}

TEST_F(ProjectBackups, ADamagedOrRemovedProjectIsKnownByItsPath)
{
    backups.Keep(path, ProjectWith(4), Day(1));
    scratch.Write(QStringLiteral("projects/a.gallery"), "<project id=\"0123");
    EXPECT_EQ(PicturesOf(path), std::vector<int>{4});
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(PicturesOf(path), std::vector<int>{4});
}

TEST_F(ProjectBackups, AProjectWithoutAnIdKeepsItsStatesWhenItGetsOne)
{
    scratch.Write(QStringLiteral("projects/a.gallery"), ProjectWith(0, ""));
    backups.Keep(path, ProjectWith(1, ""), Day(1));
    scratch.Write(QStringLiteral("projects/a.gallery"), ProjectWith(2));
    backups.Keep(path, ProjectWith(1), Day(2));
    EXPECT_EQ(PicturesOf(path), (std::vector<int>{1, 1}));
}

TEST_F(ProjectBackups, ProjectsDoNotShareTheirStates)
{
    backups.Keep(path, ProjectWith(1), Day(1));
    const QString other = scratch.Write(QStringLiteral("projects/b.gallery"),
                                        ProjectWith(2, "ffffffffffffffffffffffffffffffff"));
    EXPECT_TRUE(backups.List(other).empty());
    EXPECT_TRUE(backups.List(scratch.Path(QStringLiteral("projects/none.gallery"))).empty());
}

TEST_F(ProjectBackups, AnIdThatIsNoNameForAFolderIsNone)
{
    for (const QByteArray& id : {QByteArray("../../outside"), QByteArray(10'000, 'a'), QByteArray("/etc")}) {
        scratch.Write(QStringLiteral("projects/a.gallery"), ProjectWith(0, id));
        backups.Keep(path, ProjectWith(0, id), Day(1));
    }
    EXPECT_EQ(QDir(scratch.Path(QStringLiteral("kept"))).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(),
              1);
    EXPECT_FALSE(QFile::exists(scratch.Path(QStringLiteral("outside"))));
}

TEST_F(ProjectBackups, DamagedStatesAreLeftOut)
{
    backups.Keep(path, "no project", Day(1));
    backups.Keep(path, ProjectWith(2), Day(2));
    EXPECT_EQ(PicturesOf(path), std::vector<int>{2});
}

TEST_F(ProjectBackups, AFolderThatCanNotBeWrittenIsToldOf)
{
    const CProjectBackups hindered(scratch.Write(QStringLiteral("a file"), ""));
    EXPECT_THROW(hindered.Keep(path, ProjectWith(1), Day(1)), CWin32Exception);
    EXPECT_TRUE(hindered.List(path).empty());
}
