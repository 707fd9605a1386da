#include "deploy/server/SiteSender.h"

#include <gtest/gtest.h>

#include "MemoryServer.h"
#include "deploy/server/ContentHash.h"
#include "deploy/server/ServerLook.h"
#include "support/ScratchFolder.h"

namespace {

using Verb = CMemoryServer::Verb;
using Fault = CMemoryServer::Fault;

const QString ProjectKey = QStringLiteral("0123456789abcdef0123456789abcdef");

class SiteSender : public testing::Test {
protected:
    SiteSender()
    {
        Write("index.html", "front");
        Write("p1.html", "page");
        Write("pictures/a.jpg", "picture");
        Write("Blue/style.css", "style");
    }

    void Write(const char* path, const QByteArray& bytes)
    {
        site[QString::fromLatin1(path)] = bytes;
        scratch.Write(QStringLiteral("site/") + QString::fromLatin1(path), bytes);
    }

    // As a run of the program does it.
    void Deploy()
    {
        std::vector<LocalFile> local;
        for (const auto& [path, bytes] : site) {
            local.push_back({.path = path,
                             .source = scratch.Path(QStringLiteral("site/") + path),
                             .size = bytes.size(),
                             .modified = 0,
                             .hash = CContentHash::Of(bytes)});
        }
        CSessionCrew crew({.open = server.MakeOpener(abort),
                           .abort = abort,
                           .mostSessions = 1,
                           .onRetry = [this](const SendRetry& retry) { retries += retry.path; },
                           .pause = [](std::chrono::milliseconds) {},
                           .now = {}});
        CSiteJournal journal(scratch.Path(QStringLiteral("journal")));
        const RemoteSite remote = LookAtServer(crew, {place, ProjectKey, local}, journal);
        plan = MakeSitePlan({.local = local,
                             .remote = remote,
                             .stored = journal.GetStored(),
                             .sender = journal.GetSender(),
                             .now = server.clock,
                             .removeLeftovers = true});
        CSiteSender sender({.place = place,
                            .projectKey = ProjectKey,
                            .crew = crew,
                            .journal = journal,
                            .onProgress = [this](const SendProgress& progress) { last = progress; },
                            .now = {}},
                           plan);
        sender.Run();
        warnings = sender.GetWarnings();
        crew.Quit();
    }
    SendFailure FailureOfDeploy()
    {
        try {
            Deploy();
        } catch (const SendFailure& failure) {
            return failure;
        }
        ADD_FAILURE() << "no failure";
        return {};
    }

    // The names that files get, in their order.
    void WatchNames()
    {
        server.onNamed = [this](const QString&, const QString& path) {
            named += path.startsWith(ManifestFolder) ? QStringLiteral("manifest") : path;
        };
    }
    void FaultAt(Verb verb, const char* pathEnd, Fault fault)
    {
        server.onOperation = [verb, end = QString::fromLatin1(pathEnd), fault,
                              isDone = false](const CMemoryServer::Operation& operation) mutable {
            const bool isMeant =
                operation.verb == verb && (operation.path.endsWith(end) || operation.newPath.endsWith(end));
            return isMeant && !std::exchange(isDone, true) ? fault : Fault::None;
        };
    }
    std::optional<SiteManifest> Manifest() const
    {
        const auto* const file = server.Find(place.PathOf(ManifestPathFor(ProjectKey)));
        return file ? SiteManifest::Parse(file->bytes) : std::nullopt;
    }
    QByteArray Served(const char* path) const
    {
        const auto* const file = server.Find(place.PathOf(QString::fromLatin1(path)));
        return file ? file->bytes : QByteArray("not there");
    }

    const CScratchFolder scratch;
    CMemoryServer server;
    std::shared_ptr<CEvent> abort = std::make_shared<CEvent>();
    ServerPlace place{QStringLiteral("web/site")};
    std::map<QString, QByteArray> site;
    SitePlan plan;
    SendProgress last;
    QStringList warnings;
    QStringList retries;
    QStringList named;
};

} // namespace

TEST_F(SiteSender, BringsASiteToANewDirectoryFrontPageLast)
{
    WatchNames();
    Deploy();
    EXPECT_EQ(named.join(QLatin1Char(' ')),
              QStringLiteral("manifest web/site/Blue/style.css web/site/pictures/a.jpg web/site/p1.html "
                             "web/site/index.html manifest")
                  .replace(QStringLiteral("manifest"), place.PathOf(ManifestPathFor(ProjectKey))));
    for (const auto& [path, bytes] : site) {
        EXPECT_EQ(Served(path.toUtf8().constData()), bytes);
    }
    EXPECT_EQ(server.files.size(), 5u); // and nothing else
    EXPECT_EQ(last.doneFiles, 4);
    EXPECT_EQ(last.doneBytes, 21);
    EXPECT_EQ(last.totalBytes, 21);
    ASSERT_TRUE(Manifest().has_value());
    EXPECT_EQ(Manifest()->files.size(), 4u);
    EXPECT_EQ(Manifest()->project, ProjectKey);
    EXPECT_FALSE(Manifest()->program.isEmpty());
    EXPECT_GT(Manifest()->files.begin()->second.time, 1'700'000'000);
}

TEST_F(SiteSender, AnAbsoluteDirectoryIsMadeLevelByLevel)
{
    place.directory = QStringLiteral("/srv/www");
    QStringList made;
    server.directories.insert(QStringLiteral("/srv"));
    server.onOperation = [&made](const CMemoryServer::Operation& operation) {
        if (operation.verb == Verb::MakeDirectory) {
            made += operation.path;
        }
        return Fault::None;
    };
    Deploy();
    EXPECT_EQ(made.mid(0, 2), QStringList({QStringLiteral("/srv"), QStringLiteral("/srv/www")}));
    EXPECT_EQ(Served("index.html"), "front");
}

TEST_F(SiteSender, SendsOnlyWhatChangedAndNothingIfNothingDid)
{
    Deploy();
    const int64_t before = server.sentBytes;
    const int operations = server.operations;
    Deploy();
    EXPECT_EQ(server.sentBytes, before);
    EXPECT_LE(server.operations - operations, 7); // login, manifest, five listings
    Write("p1.html", "PAGE");
    named.clear();
    WatchNames();
    Deploy();
    EXPECT_EQ(named.filter(QStringLiteral("web/site/p1.html")).size(), 1);
    EXPECT_EQ(named.size(), 3); // and the manifest, before and after
    EXPECT_EQ(Served("p1.html"), "PAGE");
}

// Between its two manifests a run may end at any moment.
TEST_F(SiteSender, WhileItSendsTheManifestSaysSo)
{
    Deploy();
    Write("p1.html", "other");
    bool wasOpen = false;
    server.onNamed = [&](const QString&, const QString& path) {
        if (path == place.PathOf(QStringLiteral("p1.html"))) {
            wasOpen = !Manifest()->files.at(QStringLiteral("p1.html")).IsWhole() &&
                      Manifest()->files.at(QStringLiteral("index.html")).IsWhole();
        }
    };
    Deploy();
    EXPECT_TRUE(wasOpen);
    EXPECT_TRUE(Manifest()->files.at(QStringLiteral("p1.html")).IsWhole());
}

TEST_F(SiteSender, RemovesPagesThenAssetsThenEmptyDirectories)
{
    Write("2/index.html", "second");
    Write("2/pictures/b.jpg", "b");
    Deploy();
    server.Put(place.PathOf(QStringLiteral("pictures/mine.jpg")), "mine");
    site.erase(QStringLiteral("2/index.html"));
    site.erase(QStringLiteral("2/pictures/b.jpg"));
    site.erase(QStringLiteral("pictures/a.jpg"));
    QStringList removed;
    server.onOperation = [&removed](const CMemoryServer::Operation& operation) {
        if (operation.verb == Verb::RemoveFile || operation.verb == Verb::RemoveDirectory) {
            removed += operation.path.mid(QStringLiteral("web/site/").size());
        }
        return Fault::None;
    };
    Deploy();
    EXPECT_EQ(removed.join(QLatin1Char(' ')),
              QStringLiteral("2/index.html 2/pictures/b.jpg pictures/a.jpg pictures 2/pictures 2"));
    EXPECT_FALSE(server.directories.contains(place.PathOf(QStringLiteral("2"))));
    EXPECT_EQ(Served("pictures/mine.jpg"), "mine");
    EXPECT_EQ(Manifest()->files.size(), 3u);
}

TEST_F(SiteSender, AGoodbyeIsNoRefusalEvenWhereRefusalsDoNotCount)
{
    Write("2/index.html", "second");
    Deploy();
    const QString temporary = place.PathOf(TemporaryPathFor(
        CSiteJournal(scratch.Path(QStringLiteral("journal"))).GetSender(), QStringLiteral("gone.jpg")));
    for (const Verb verb : {Verb::RemoveDirectory, Verb::RemoveFile}) {
        server.Put(temporary, "x");
        site.erase(QStringLiteral("2/index.html"));
        FaultAt(verb, verb == Verb::RemoveFile ? ".part" : "/2", Fault::Goodbye);
        Deploy();
        EXPECT_FALSE(server.directories.contains(place.PathOf(QStringLiteral("2"))));
        EXPECT_EQ(server.Find(temporary), nullptr);
    }
}

TEST_F(SiteSender, ALeftoverThatTheServerKeepsIsAWarningAndStaysListed)
{
    Deploy();
    site.erase(QStringLiteral("p1.html"));
    FaultAt(Verb::RemoveFile, "p1.html", Fault::Refuse);
    Deploy();
    ASSERT_EQ(warnings.size(), 1);
    EXPECT_TRUE(warnings[0].contains(QStringLiteral("p1.html"))) << qPrintable(warnings[0]);
    EXPECT_EQ(Manifest()->files.count(QStringLiteral("p1.html")), 1u);
    Deploy();
    EXPECT_TRUE(warnings.isEmpty());
    EXPECT_EQ(Served("p1.html"), "not there");
}

TEST_F(SiteSender, APageThatTheServerKeepsKeepsItsPictures)
{
    Deploy();
    site.erase(QStringLiteral("p1.html"));
    site.erase(QStringLiteral("pictures/a.jpg"));
    FaultAt(Verb::RemoveFile, "p1.html", Fault::Refuse);
    Deploy();
    EXPECT_EQ(Served("pictures/a.jpg"), "picture");
    Deploy();
    EXPECT_EQ(server.files.size(), 3u);
}

TEST_F(SiteSender, ARefusedFileIsNamedAndWhatArrivedStays)
{
    FaultAt(Verb::Rename, "/p1.html", Fault::Refuse);
    const SendFailure failure = FailureOfDeploy();
    EXPECT_EQ(failure.kind, SendFailure::Kind::Refused);
    EXPECT_EQ(failure.path, QStringLiteral("p1.html"));
    EXPECT_EQ(Served("pictures/a.jpg"), "picture");
    EXPECT_EQ(Served("index.html"), "not there");
    // Another computer learns it from the manifest.
    EXPECT_TRUE(Manifest()->files.at(QStringLiteral("pictures/a.jpg")).IsWhole());
    EXPECT_FALSE(Manifest()->files.at(QStringLiteral("p1.html")).IsWhole());
    Deploy();
    // It had arrived, only its name was missing.
    EXPECT_EQ(plan.CountBytes(), 5);
    EXPECT_EQ(Served("p1.html"), "page");
    EXPECT_EQ(server.files.size(), 5u);
}

TEST_F(SiteSender, AFullServerIsARefusal)
{
    FaultAt(Verb::Send, TemporaryPathFor(QString(), QStringLiteral("p1.html")).right(17).toUtf8().constData(),
            Fault::NoSpace);
    const SendFailure failure = FailureOfDeploy();
    EXPECT_EQ(failure.kind, SendFailure::Kind::Refused);
    EXPECT_EQ(failure.path, QStringLiteral("p1.html"));
    EXPECT_EQ(failure.reply.code, 552);
}

TEST_F(SiteSender, WhatArrivesIncompleteIsSentAgain)
{
    FaultAt(Verb::Send, TemporaryPathFor(QString(), QStringLiteral("p1.html")).right(17).toUtf8().constData(),
            Fault::StoreLess);
    Deploy();
    EXPECT_EQ(retries, QStringList(QStringLiteral("p1.html")));
    EXPECT_EQ(Served("p1.html"), "page");
    EXPECT_EQ(last.doneBytes, 21);
}

TEST_F(SiteSender, AfterALostReplyToARenameNothingIsSentAgain)
{
    FaultAt(Verb::Rename, "/p1.html", Fault::CutAfter);
    Deploy();
    EXPECT_EQ(retries, QStringList(QStringLiteral("p1.html")));
    EXPECT_EQ(server.sentPaths.size(), 6u); // four files, two manifests
    server.Remove(place.PathOf(QStringLiteral("p1.html")));
    FaultAt(Verb::Rename, "/p1.html", Fault::CutBefore);
    Deploy();
    EXPECT_EQ(server.sentPaths.size(), 9u); // the page once, two manifests
    EXPECT_EQ(Served("p1.html"), "page");
}

// The bytes under the temporary name change from then on, and the program may be ended at any of them.
TEST_F(SiteSender, WhatIsSentOnceMoreIsNotedAsNotStored)
{
    const auto isStored = [this] {
        return CSiteJournal(scratch.Path(QStringLiteral("journal"))).IsStored(QStringLiteral("p1.html"));
    };
    std::vector<bool> whenSent;
    server.onOperation = [&](const CMemoryServer::Operation& operation) {
        const bool isPage =
            operation.path.endsWith(TemporaryPathFor(QString(), QStringLiteral("p1.html")).right(17));
        if (operation.verb == Verb::Send && isPage) {
            whenSent.push_back(isStored());
        }
        if (operation.verb == Verb::Rename && isPage && whenSent.size() == 1) {
            EXPECT_TRUE(isStored());
            server.files.erase(operation.path);
            return Fault::CutBefore;
        }
        return Fault::None;
    };
    Deploy();
    EXPECT_EQ(whenSent, (std::vector<bool>{false, false}));
    EXPECT_EQ(Served("p1.html"), "page");
}

TEST_F(SiteSender, AfterALostReplyToARemovalItIsDone)
{
    Deploy();
    site.erase(QStringLiteral("p1.html"));
    FaultAt(Verb::RemoveFile, "p1.html", Fault::CutAfter);
    Deploy();
    EXPECT_TRUE(warnings.isEmpty());
    EXPECT_EQ(Manifest()->files.count(QStringLiteral("p1.html")), 0u);
}

TEST_F(SiteSender, AFileThatChangedMeanwhileIsAFailureOfThisComputer)
{
    Write("p1.html", "page");
    scratch.Write(QStringLiteral("site/p1.html"), "longer page");
    const SendFailure failure = FailureOfDeploy();
    EXPECT_EQ(failure.kind, SendFailure::Kind::LocalFile);
    EXPECT_TRUE(failure.path.endsWith(QStringLiteral("site/p1.html")));
}

// The manifest tells of the bytes that have arrived, not of those that were there when the run began.
TEST_F(SiteSender, AFileThatWasReplacedMeanwhileIsKnownByWhatWasSent)
{
    scratch.Write(QStringLiteral("site/p1.html"), "PAGE");
    Deploy();
    EXPECT_EQ(Served("p1.html"), "PAGE");
    EXPECT_EQ(Manifest()->files.at(QStringLiteral("p1.html")).hash, CContentHash::Of("PAGE"));
}

TEST_F(SiteSender, AServerThatTakesNoManifestGetsTheSiteAllTheSame)
{
    server.takesDotNames = false;
    Deploy();
    EXPECT_EQ(server.files.size(), 4u);
    const int64_t before = server.sentBytes;
    Deploy();
    EXPECT_EQ(server.sentBytes, before);
    Write("p1.html", "PAGE");
    Deploy();
    EXPECT_EQ(plan.CountChanged(), 1);
    EXPECT_EQ(plan.CountNew(), 0);
    site.erase(QStringLiteral("p1.html"));
    Deploy();
    EXPECT_EQ(Served("p1.html"), "not there");
}

// Without its list another computer would take everything for somebody else's.
TEST_F(SiteSender, AManifestThatIsRefusedOnceStopsTheRunBeforeItSends)
{
    Deploy();
    Write("p1.html", "PAGE");
    FaultAt(Verb::Rename, ManifestPathFor(ProjectKey).toUtf8().constData(), Fault::Refuse);
    const SendFailure failure = FailureOfDeploy();
    EXPECT_EQ(failure.kind, SendFailure::Kind::Refused);
    EXPECT_EQ(Served("p1.html"), "page");
    Deploy();
    EXPECT_EQ(Served("p1.html"), "PAGE");
}

TEST_F(SiteSender, ACancelledRunIsGoneOnWith)
{
    server.onOperation = [](const CMemoryServer::Operation& operation) {
        return operation.newPath.endsWith(QStringLiteral("/p1.html")) ? Fault::Cancel : Fault::None;
    };
    EXPECT_THROW(Deploy(), SendCancelled);
    EXPECT_EQ(Served("p1.html"), "not there");
    server.onOperation = {};
    abort = std::make_shared<CEvent>();
    Deploy();
    EXPECT_EQ(plan.unchanged, 2);
    EXPECT_EQ(plan.CountBytes(), 5); // the front page; the other one had arrived
}
