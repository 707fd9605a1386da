#include "deploy/server/ServerLook.h"

#include <gtest/gtest.h>

#include "MemoryServer.h"
#include "deploy/server/ContentHash.h"
#include "deploy/server/SiteJournal.h"
#include "ftpengine/messages/EngineStatus.h"
#include "support/ScratchFolder.h"

namespace {

using Verb = CMemoryServer::Verb;
using Fault = CMemoryServer::Fault;

const QString ProjectKey = QStringLiteral("0123456789abcdef0123456789abcdef");

LocalFile FileOf(const QString& path)
{
    LocalFile file;
    file.path = path;
    file.size = 1;
    return file;
}

class ServerLookTest : public testing::Test {
protected:
    RemoteSite Look()
    {
        CSessionCrew crew({.open = server.MakeOpener(abort),
                           .abort = abort,
                           .mostSessions = 2,
                           .onRetry = {},
                           .pause = [](std::chrono::milliseconds) {},
                           .now = {}});
        const CSiteJournal journal(scratch.Path(QStringLiteral("journal")));
        listed.clear();
        server.onOperation = [this](const CMemoryServer::Operation& operation) {
            if (operation.verb == Verb::List) {
                listed.insert(operation.path);
            }
            return Fault::None;
        };
        return LookAtServer(crew, {place, ProjectKey, local}, journal);
    }
    QString Listed() const { return QStringList(listed.begin(), listed.end()).join(QLatin1Char(' ')); }

    const CScratchFolder scratch;
    CMemoryServer server;
    const std::shared_ptr<CEvent> abort = std::make_shared<CEvent>();
    const ServerPlace place{QStringLiteral("web")};
    std::vector<LocalFile> local{FileOf(QStringLiteral("2/pictures/a.jpg")),
                                 FileOf(QStringLiteral("index.html"))};
    std::set<QString> listed;
};

} // namespace

TEST_F(ServerLookTest, ANewPlaceHasNothing)
{
    const RemoteSite site = Look();
    EXPECT_TRUE(site.files.empty());
    EXPECT_TRUE(site.directories.empty());
    EXPECT_FALSE(site.manifest.has_value());
    EXPECT_FALSE(site.isManifestThere);
    EXPECT_EQ(Listed(), QStringLiteral("web"));
}

TEST_F(ServerLookTest, ListsWhatTheSiteIsConcernedWithAndNothingElse)
{
    server.Put(QStringLiteral("web/index.html"), "abc");
    server.Put(QStringLiteral("web/2/pictures/a.jpg"), "a");
    server.Put(QStringLiteral("web/private/x"), "x");
    server.Put(QStringLiteral("web/2/films/x"), "x");
    const RemoteSite site = Look();
    EXPECT_EQ(Listed(), QStringLiteral("web web/2 web/2/pictures"));
    EXPECT_EQ(site.files.size(), 2u);
    EXPECT_EQ(site.files.at(QStringLiteral("index.html")).size, 3);
    EXPECT_EQ(site.files.at(QStringLiteral("index.html")).modified,
              server.files.at(QStringLiteral("web/index.html")).modified);
    EXPECT_TRUE(site.directories.contains(QStringLiteral("2/pictures")));
    EXPECT_TRUE(site.directories.contains(QString()));
}

TEST_F(ServerLookTest, ReadsTheManifestAndLooksWhereItHasFiles)
{
    SiteManifest manifest;
    manifest.files[QStringLiteral("3/old.html")] =
        ManifestFile{.size = 1, .hash = {}, .isSeen = false, .time = 0, .rest = {}};
    server.Put(QStringLiteral("web/3/old.html"), "x");
    server.Put(place.PathOf(ManifestPathFor(ProjectKey)), manifest.Format());
    const RemoteSite site = Look();
    ASSERT_TRUE(site.manifest.has_value());
    EXPECT_TRUE(site.isManifestThere);
    EXPECT_EQ(site.manifestTime, server.files.at(place.PathOf(ManifestPathFor(ProjectKey))).modified);
    EXPECT_EQ(Listed(), QStringLiteral("web web/.vistorama web/3"));
    EXPECT_EQ(site.files.count(QStringLiteral("3/old.html")), 1u);
}

TEST_F(ServerLookTest, ADamagedManifestIsNone)
{
    server.Put(place.PathOf(ManifestPathFor(ProjectKey)), "nonsense");
    const RemoteSite site = Look();
    EXPECT_FALSE(site.manifest.has_value());
    EXPECT_FALSE(site.isManifestThere);
    EXPECT_FALSE(site.manifestTime.has_value());
}

TEST_F(ServerLookTest, TheNotesOfThisComputerCompleteTheManifest)
{
    SiteManifest manifest;
    manifest.run = QStringLiteral("r1");
    manifest.files[QStringLiteral("index.html")] =
        ManifestFile{.size = 1, .hash = {}, .isSeen = false, .time = 0, .rest = {}};
    server.Put(place.PathOf(ManifestPathFor(ProjectKey)), manifest.Format());
    CSiteJournal journal(scratch.Path(QStringLiteral("journal")));
    journal.BeginRun(manifest.run);
    journal.NoteSent(
        QStringLiteral("index.html"),
        {.size = 1, .hash = QByteArray(CContentHash::size, 'a'), .isSeen = false, .time = 0, .rest = {}});
    const RemoteSite site = Look();
    EXPECT_TRUE(site.manifest->files.at(QStringLiteral("index.html")).IsWhole());
    EXPECT_EQ(site.amended, std::set<QString>{QStringLiteral("index.html")});
}

TEST_F(ServerLookTest, ChangesNothing)
{
    server.Put(QStringLiteral("web/index.html"), "abc");
    bool isChanged = false;
    server.onChange = [&isChanged] {
        isChanged = true;
    };
    Look();
    EXPECT_FALSE(isChanged);
}
