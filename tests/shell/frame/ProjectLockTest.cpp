#include "shell/frame/ProjectLock.h"

#include <QFile>
#include <QSysInfo>
#include <gtest/gtest.h>

#include "common/FileSystem.h"
#include "support/ScratchFolder.h"

namespace {

using State = CProjectLock::State;

class ProjectLock : public testing::Test {
protected:
    const CScratchFolder scratch;
    const QString path = scratch.Path(QStringLiteral("Trip.gallery"));

    // As a program on that computer leaves it.
    void WriteLock(const QByteArray& process, const QByteArray& computer) const
    {
        scratch.Write(QStringLiteral(".Trip.gallery.lock"), process + "\nvistorama\n" + computer + "\n\n\n");
    }
};

} // namespace

TEST_F(ProjectLock, StandsBesideTheProjectAndIsHidden)
{
    EXPECT_EQ(CProjectLock::PathFor(QStringLiteral("/a/b c.gallery")),
              QStringLiteral("/a/.b c.gallery.lock"));
    const CProjectLock lock(path);
    EXPECT_EQ(lock.GetState(), State::Held);
    EXPECT_TRUE(FileExists(CProjectLock::PathFor(path)));
}

TEST_F(ProjectLock, IsHeldByOneAtATime)
{
    CProjectLock first(path);
    CProjectLock second(path);
    EXPECT_EQ(second.GetState(), State::OpenElsewhere);
    EXPECT_EQ(second.GetOtherComputer(), QString());
    first = CProjectLock();
    EXPECT_EQ(first.GetState(), State::None);
    second.Retry();
    EXPECT_EQ(second.GetState(), State::Held);
}

TEST_F(ProjectLock, OfAProgramThatEndedCountsForNothing)
{
    WriteLock("999999999", QSysInfo::machineHostName().toUtf8());
    EXPECT_EQ(CProjectLock(path).GetState(), State::Held);
}

TEST_F(ProjectLock, OfAnotherComputerIsNamedAndCanBeSeized)
{
    WriteLock("1", "attic");
    CProjectLock lock(path);
    EXPECT_EQ(lock.GetState(), State::OpenElsewhere);
    EXPECT_EQ(lock.GetOtherComputer(), QStringLiteral("attic"));
    lock.Seize();
    EXPECT_EQ(lock.GetState(), State::Held);
}

TEST_F(ProjectLock, WithoutAFolderNothingIsKnown)
{
    CProjectLock lock(scratch.Path(QStringLiteral("no/such/folder/a.gallery")));
    EXPECT_EQ(lock.GetState(), State::None);
    EXPECT_EQ(lock.GetOtherComputer(), QString());
    scratch.Write(QStringLiteral("no/such/folder/x"), "");
    lock.Retry();
    EXPECT_EQ(lock.GetState(), State::Held);
}

TEST_F(ProjectLock, InAFolderWithoutRightsNothingIsKnown)
{
    scratch.Write(QStringLiteral("kept/Trip.gallery"), "<project/>");
    const COrdinaryRights rights(scratch);
    EXPECT_EQ(CProjectLock(scratch.Path(QStringLiteral("kept/Trip.gallery"))).GetState(), State::None);
}

TEST_F(ProjectLock, OfNoProjectDoesNothing)
{
    CProjectLock lock;
    lock.Retry();
    lock.Seize();
    EXPECT_EQ(lock.GetState(), State::None);
    EXPECT_EQ(lock.GetOtherComputer(), QString());
}
