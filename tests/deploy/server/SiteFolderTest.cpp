#include "deploy/server/SiteFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QDir>
#include <gtest/gtest.h>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "support/ScratchFolder.h"

namespace {

class SiteFolder : public testing::Test {
protected:
    CSiteFolder::Options Options(int64_t limit = 1000) const
    {
        return {.folder = scratch.Path(QStringLiteral("sites")), .limit = limit};
    }
    // A site of that many bytes that was last used so many seconds ago.
    QString Make(const char* key, int bytes, int64_t ago)
    {
        const CSiteFolder folder(Options(), QString::fromLatin1(key));
        WriteFileAtomically(folder.GetSite() + QStringLiteral("index.html"), QByteArray(bytes, 'x'));
        const timespec time{::time(nullptr) - ago, 0};
        const timespec times[] = {time, time};
        const QString root = QDir(folder.GetSite() + QStringLiteral("..")).canonicalPath();
        ::utimensat(AT_FDCWD, (root + QStringLiteral("/lock")).toUtf8().constData(), times, 0);
        return root;
    }

    const CScratchFolder scratch;
};

} // namespace

TEST_F(SiteFolder, EachProjectAndPlaceHasItsOwnForItsOwnerAlone)
{
    const CSiteFolder one(Options(), QStringLiteral("one"));
    const CSiteFolder two(Options(), QStringLiteral("two"));
    EXPECT_TRUE(FolderExists(one.GetSite()));
    EXPECT_TRUE(one.GetSite().endsWith(QLatin1Char('/')));
    EXPECT_NE(one.GetSite(), two.GetSite());
    EXPECT_NE(one.GetJournalPath(), two.GetJournalPath());
    struct stat status {};
    ASSERT_EQ(::stat(scratch.Path(QStringLiteral("sites")).toUtf8().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(SiteFolder, KeepsWhatIsInIt)
{
    Make("one", 10, 0);
    const CSiteFolder folder(Options(), QStringLiteral("one"));
    EXPECT_TRUE(FileExists(folder.GetSite() + QStringLiteral("index.html")));
}

TEST_F(SiteFolder, TwoProgramsDoNotWorkInOne)
{
    const CSiteFolder first(Options(), QStringLiteral("one"));
    try {
        const CSiteFolder second(Options(), QStringLiteral("one"));
        ADD_FAILURE() << "a second one was let in";
    } catch (const CGenericException& failure) {
        EXPECT_TRUE(failure.GetDescription().startsWith(QStringLiteral("Another program")));
    }
}

TEST_F(SiteFolder, BeyondTheLimitTheLongestUnusedGo)
{
    const QString oldest = Make("oldest", 400, 3000);
    const QString middle = Make("middle", 400, 2000);
    const QString youngest = Make("youngest", 400, 1000);
    {
        const CSiteFolder own(Options(1000), QStringLiteral("own"));
        WriteFileAtomically(own.GetSite() + QStringLiteral("a"), QByteArray(100, 'x'));
        own.RemoveLongestUnused();
        EXPECT_TRUE(FolderExists(own.GetSite()));
    }
    EXPECT_FALSE(FolderExists(oldest));
    EXPECT_TRUE(FolderExists(middle));
    EXPECT_TRUE(FolderExists(youngest));
    // To be used again makes it young.
    Make("middle", 400, 10);
    CSiteFolder(Options(500), QStringLiteral("own")).RemoveLongestUnused();
    EXPECT_TRUE(FolderExists(middle));
    EXPECT_FALSE(FolderExists(youngest));
}

TEST_F(SiteFolder, OneInUseStays)
{
    const QString path = Make("busy", 400, 3000);
    const CSiteFolder busy(Options(), QStringLiteral("busy"));
    const CSiteFolder own(Options(10), QStringLiteral("own"));
    own.RemoveLongestUnused();
    EXPECT_TRUE(FolderExists(path));
    EXPECT_GE(GetSizeOfSites(Options().folder), 400);
    ClearSites(Options().folder);
    EXPECT_TRUE(FolderExists(path));
}

TEST_F(SiteFolder, AllCanBeRemoved)
{
    Make("one", 400, 0);
    ClearSites(Options().folder);
    EXPECT_EQ(GetSizeOfSites(Options().folder), 0);
    ClearSites(scratch.Path(QStringLiteral("nothing there")));
}
