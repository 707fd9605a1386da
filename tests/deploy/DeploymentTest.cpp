#include "deploy/Deployment.h"

#include <condition_variable>
#include <mutex>

#include <QFile>
#include <QRegularExpression>

#include "common/FileSystem.h"
#include "deploy/server/SiteNames.h"
#include "document/galleries/Gallery.h"
#include "ftpengine/messages/EngineStatus.h"
#include "server/MemoryServer.h"
#include "support/ProjectFixture.h"

namespace {

using Verb = CMemoryServer::Verb;
using Fault = CMemoryServer::Fault;

// Keeps the messages of a run as words, and lets the test act on one.
class CRecordingReceiver final : public CDeploymentReceiver {
public:
    void Post(DeploymentMessage message) override
    {
        const std::lock_guard lock(mutex);
        const QString word = std::visit([](const auto& body) { return Describe(body); }, message);
        if (words.isEmpty() || words.back() != word) {
            words += word;
        }
        if (onMessage) {
            onMessage(message);
        }
    }
    QString GetWords()
    {
        const std::lock_guard lock(mutex);
        return words.join(QLatin1Char(' '));
    }

    std::function<void(const DeploymentMessage&)> onMessage;

private:
    static QString Describe(const DeployPhaseBegun& begun)
    {
        static const char* const names[] = {"look", "pages", "compare", "send", "tidy"};
        return QString::fromLatin1(names[static_cast<int>(begun.phase)]);
    }
    static QString Describe(const DeployPagesDone& pages)
    {
        return QStringLiteral("%1/%2").arg(pages.done).arg(pages.total);
    }
    static QString Describe(const DeploySummary& summary)
    {
        return summary.GetLines().join(QLatin1Char(','));
    }
    static QString Describe(const SendProgress&) { return QStringLiteral("progress"); }
    static QString Describe(const SendRetry& retry) { return QStringLiteral("retry ") + retry.path; }
    static QString Describe(const DeployEnded&) { return QStringLiteral("ended"); }

    std::mutex mutex;
    QStringList words;
};

class Deployment : public testing::Test {
protected:
    Deployment()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"),
                          "<%=a.file_name%><%picture id=\"a\" width=\"20\" height=\"15\" href=\"\"%>");
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.NewProject();
        AddPicture("one.png");
        AddPicture("two.png");
        fixture.GetProject().Save(Path("Trip.gallery"));
    }

    void AddPicture(const char* name)
    {
        fixture.GetRoot().AddPicture(fixture.WritePicture(QString::fromLatin1(name)));
    }
    QString Path(const char* name) const { return fixture.scratch.Path(QString::fromLatin1(name)); }

    struct Choices {
        bool leaveOutMissing = false;
        bool overwrite = false;
        bool isDryRun = false;
        bool awaitsConsent = false;
    };
    CDeployment::Setting Setting(const DeploymentTarget& target, const Choices& choices) const
    {
        return {.target = target,
                .leaveOutMissing = choices.leaveOutMissing,
                .overwrite = choices.overwrite,
                .isDryRun = choices.isDryRun,
                .awaitsConsent = choices.awaitsConsent,
                .recordsFolder = Path("records"),
                .sitesFolder = Path("sites")};
    }
    DeploymentTarget Server()
    {
        abort = std::make_shared<CEvent>();
        return ServerTarget{.server = QStringLiteral("ftp://ann@example.org"),
                            .directory = QStringLiteral("web"),
                            .open = open ? open : server.MakeOpener(abort),
                            .abort = abort,
                            .mostSessions = 1};
    }
    DeploymentTarget Folder() const { return FolderTarget{Path("site")}; }

    DeployEnd Deploy(const DeploymentTarget& target, const Choices& choices)
    {
        receiver = std::make_shared<CRecordingReceiver>();
        receiver->onMessage = [this](const DeploymentMessage& message) {
            if (onMessage) {
                onMessage(message);
            }
        };
        CDeployment run(fixture.GetProject(), Setting(target, choices));
        deployment = &run;
        run.Start(receiver);
        run.WaitFinished();
        deployment = nullptr;
        result = run.GetResult();
        return run.GetEnd();
    }
    DeployEnd Deploy(const DeploymentTarget& target) { return Deploy(target, Choices()); }

    template <class Wanted>
    Wanted Expect(const DeployEnd& end)
    {
        EXPECT_TRUE(std::holds_alternative<Wanted>(end)) << "the end is number " << end.index();
        if (const auto* const failure = std::get_if<DeployFailure>(&end)) {
            EXPECT_TRUE((std::is_same_v<Wanted, DeployFailure>)) << qPrintable(failure->description);
        }
        return std::holds_alternative<Wanted>(end) ? std::get<Wanted>(end) : Wanted();
    }

    // The site on the server, without the manifest.
    std::map<QString, QByteArray> Served() const
    {
        std::map<QString, QByteArray> files;
        for (const auto& [path, file] : server.files) {
            if (!path.contains(ManifestFolder)) {
                files[path.mid(4)] = file.bytes;
            }
        }
        return files;
    }
    std::map<QString, QByteArray> InFolder() const
    {
        std::map<QString, QByteArray> files;
        for (const QString& path : FilesBelow(Path("site"))) {
            files[path] = fixture.scratch.Read(QStringLiteral("site/") + path);
        }
        return files;
    }

    CProjectFixture fixture;
    CMemoryServer server;
    std::shared_ptr<CEvent> abort;
    SessionOpener open;
    std::shared_ptr<CRecordingReceiver> receiver;
    std::function<void(const DeploymentMessage&)> onMessage;
    CDeployment* deployment = nullptr; // the one at work
    DeployResult result;
};

} // namespace

TEST_F(Deployment, ToAFolderTellsItsPhasesAndPages)
{
    Expect<DeployDone>(Deploy(Folder()));
    EXPECT_EQ(receiver->GetWords(), QStringLiteral("look pages 1/2 2/2 ended"));
    EXPECT_EQ(result.generation.pages, 2);
    EXPECT_EQ(result.generation.images, 2);
    EXPECT_FALSE(result.summary.has_value());
    EXPECT_TRUE(FileExists(Path("site/index1.html")));
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
}

TEST_F(Deployment, OnAServerIsTheSameSiteAsInAFolder)
{
    Expect<DeployDone>(Deploy(Folder()));
    Expect<DeployDone>(Deploy(Server()));
    EXPECT_EQ(Served(), InFolder());
    EXPECT_EQ(
        receiver->GetWords(),
        QStringLiteral("look pages 1/2 2/2 compare 6 new,0 changed,0 removed,%1 bytes send progress ended")
            .arg(result.summary->bytes));
    EXPECT_EQ(result.summary->newFiles, 6);
    EXPECT_EQ(server.openSessions, 0u);
}

TEST_F(Deployment, TheNextOneSendsOnlyWhatChanged)
{
    Expect<DeployDone>(Deploy(Server()));
    const int64_t sent = server.sentBytes;
    Expect<DeployDone>(Deploy(Server()));
    EXPECT_EQ(server.sentBytes, sent);
    EXPECT_EQ(result.summary->unchangedFiles, 6);
    fixture.GetRoot().RemovePicture(1);
    AddPicture("three.png");
    Expect<DeployDone>(Deploy(Server()));
    EXPECT_EQ(result.summary->newFiles, 1);     // its picture
    EXPECT_EQ(result.summary->changedFiles, 1); // the second page
    EXPECT_EQ(result.summary->removedFiles, 1); // the other picture
    EXPECT_TRUE(receiver->GetWords().endsWith(QStringLiteral(" tidy ended")))
        << qPrintable(receiver->GetWords());
    Expect<DeployDone>(Deploy(Folder()));
    EXPECT_EQ(Served(), InFolder());
}

TEST_F(Deployment, ADryRunChangesNothingOnTheServer)
{
    bool isChanged = false;
    server.onChange = [&isChanged] {
        isChanged = true;
    };
    Expect<DeployDone>(Deploy(Server(), {.isDryRun = true}));
    EXPECT_FALSE(isChanged);
    const QStringList lines = result.summary->GetLines();
    EXPECT_EQ(lines.mid(0, 3).join(QLatin1Char(' ')), QStringLiteral("6 new 0 changed 0 removed"));
    EXPECT_TRUE(lines[3].endsWith(QStringLiteral(" bytes")));
    EXPECT_GT(result.summary->bytes, 0);
    // It tells as well what would stop the run itself.
    server.Put(QStringLiteral("web/index.html"), "mine");
    Expect<DeployDoubts>(Deploy(Server(), {.isDryRun = true}));
    EXPECT_EQ(result.summary->changedFiles, 1);
    Expect<DeployDone>(Deploy(Server(), {.overwrite = true, .isDryRun = true}));
    EXPECT_EQ(server.Find(QStringLiteral("web/index.html"))->bytes, "mine");
}

TEST_F(Deployment, MissingFilesAreADoubtBeforeAnythingIsAskedOrWritten)
{
    QFile::remove(Path("photos/two.png"));
    for (const DeploymentTarget& target : {Folder(), Server()}) {
        const auto doubts = Expect<DeployDoubts>(Deploy(target));
        EXPECT_EQ(doubts.absentPictures, (std::vector<UnusableFile>{{0, Path("photos/two.png")}}));
    }
    EXPECT_EQ(server.operations, 0);
    EXPECT_FALSE(FileExists(Path("site")));
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
}

TEST_F(Deployment, WhatIsLeftOutStaysOnTheServer)
{
    Expect<DeployDone>(Deploy(Server()));
    const size_t before = Served().size();
    QFile::remove(Path("photos/two.png"));
    Expect<DeployDone>(Deploy(Server(), {.leaveOutMissing = true}));
    EXPECT_EQ(result.warnings.size(), 1);
    EXPECT_EQ(result.summary->removedFiles, 0);
    EXPECT_EQ(Served().size(), before);
}

TEST_F(Deployment, StrangersInTheFolderAreADoubt)
{
    fixture.scratch.Write(QStringLiteral("site/index.html"), "mine");
    const auto doubts = Expect<DeployDoubts>(Deploy(Folder()));
    EXPECT_EQ(doubts.strangeFiles, QStringList(Path("site/index.html")));
    EXPECT_EQ(InFolder().size(), 1u);
    Expect<DeployDone>(Deploy(Folder(), {.overwrite = true}));
    EXPECT_NE(fixture.scratch.Read(QStringLiteral("site/index.html")), "mine");
}

TEST_F(Deployment, StrangersOnTheServerAreADoubt)
{
    server.Put(QStringLiteral("web/index.html"), "mine");
    const auto doubts = Expect<DeployDoubts>(Deploy(Server()));
    EXPECT_EQ(doubts.strangeFiles, QStringList(QStringLiteral("index.html")));
    const DeployFailure error = StrangeFilesOnServerError(doubts.strangeFiles);
    EXPECT_EQ(error.caption,
              QStringLiteral("The gallery was not published: there is something to decide first."));
    EXPECT_TRUE(error.description.endsWith(QStringLiteral("overwritten: 1.\nindex.html")))
        << qPrintable(error.description);
    EXPECT_TRUE(error.advice.contains(QStringLiteral("--overwrite")));
    EXPECT_EQ(Served().size(), 1u);
    EXPECT_EQ(server.Find(QStringLiteral("web/index.html"))->bytes, "mine");
    Expect<DeployDone>(Deploy(Server(), {.overwrite = true}));
    EXPECT_EQ(Served().size(), 6u);
}

TEST_F(Deployment, AServerInDoubtIsToldBeforeThePagesAreMade)
{
    for (const int status : {EngineStatus::UntrustedServer, EngineStatus::TlsNotOffered}) {
        open = [status](SessionLog& log) -> std::unique_ptr<CRemoteSession> {
            log.identity = ServerIdentity{.server = QStringLiteral("example.org"),
                                          .port = 21,
                                          .fingerprint = QByteArray(32, 'f'),
                                          .subject = {},
                                          .issuer = {},
                                          .hostKey = {}};
            log.transcript = {QStringLiteral("220 hello")};
            throw status;
        };
        const auto doubt = Expect<ServerDoubt>(Deploy(Server()));
        EXPECT_EQ(doubt.status, status);
        ASSERT_TRUE(doubt.identity.has_value());
        EXPECT_EQ(doubt.identity->fingerprint, QByteArray(32, 'f'));
        EXPECT_EQ(receiver->GetWords(), QStringLiteral("look ended"));
        EXPECT_EQ(result.transcript.size(), 1u);
    }
}

TEST_F(Deployment, AServerThatIsNotThereIsAFailureOfThreeTexts)
{
    open = [](SessionLog&) -> std::unique_ptr<CRemoteSession> {
        throw 10061;
    };
    const auto failure = Expect<DeployFailure>(Deploy(Server()));
    EXPECT_FALSE(failure.caption.isEmpty());
    EXPECT_TRUE(failure.description.contains(QStringLiteral("Connection refused")))
        << qPrintable(failure.description);
    EXPECT_FALSE(failure.advice.isEmpty());
}

TEST_F(Deployment, AFailedPictureIsAFailureOfThreeTexts)
{
    fixture.GetRoot().AddPicture(fixture.scratch.Write(QStringLiteral("photos/bad.jpg"), "text"));
    for (const DeploymentTarget& target : {Folder(), Server()}) {
        const auto failure = Expect<DeployFailure>(Deploy(target));
        EXPECT_TRUE(failure.description.contains(QStringLiteral("bad.jpg")))
            << qPrintable(failure.description);
    }
    EXPECT_TRUE(Served().empty());
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
}

TEST_F(Deployment, ARefusedFileIsNamedAndTheNextRunGoesOn)
{
    server.onOperation = [](const CMemoryServer::Operation& operation) {
        return operation.newPath == QStringLiteral("web/index1.html") ? Fault::Refuse : Fault::None;
    };
    const auto failure = Expect<DeployFailure>(Deploy(Server()));
    EXPECT_TRUE(failure.description.contains(QStringLiteral("index1.html")))
        << qPrintable(failure.description);
    server.onOperation = {};
    Expect<DeployDone>(Deploy(Server()));
    EXPECT_LT(result.summary->newFiles, 6);
    Expect<DeployDone>(Deploy(Folder()));
    EXPECT_EQ(Served(), InFolder());
}

TEST_F(Deployment, CancelEndsItWhileItSends)
{
    onMessage = [this](const DeploymentMessage& message) {
        const auto* const begun = std::get_if<DeployPhaseBegun>(&message);
        if (begun && begun->phase == DeployPhase::Send) {
            deployment->RequestCancel();
        }
    };
    Expect<DeployCancelled>(Deploy(Server()));
    EXPECT_TRUE(abort->IsSet());
    EXPECT_TRUE(Served().empty());
    EXPECT_EQ(receiver->GetWords().section(QLatin1Char(' '), -1), QStringLiteral("ended"));
}

TEST_F(Deployment, CancelEndsItWhilePagesAreMade)
{
    for (int i = 0; i < 100; ++i) {
        AddPicture(qPrintable(QStringLiteral("%1.png").arg(i)));
    }
    onMessage = [this](const DeploymentMessage& message) {
        if (std::holds_alternative<DeployPagesDone>(message)) {
            deployment->RequestCancel();
        }
    };
    for (const DeploymentTarget& target : {Folder(), Server()}) {
        Expect<DeployCancelled>(Deploy(target));
        EXPECT_LT(result.generation.pages, 102);
    }
    EXPECT_TRUE(Served().empty());
}

TEST_F(Deployment, ACancelledRunRemovesNothingFromTheFolder)
{
    Expect<DeployDone>(Deploy(Folder()));
    const auto before = InFolder();
    fixture.GetRoot().RemovePicture(1);
    onMessage = [this](const DeploymentMessage& message) {
        if (std::holds_alternative<DeployPagesDone>(message)) {
            deployment->RequestCancel();
        }
    };
    Expect<DeployCancelled>(Deploy(Folder()));
    EXPECT_EQ(InFolder().size(), before.size());
    onMessage = {};
    Expect<DeployDone>(Deploy(Folder()));
    EXPECT_EQ(InFolder().size(), before.size() - 2); // a page and a picture
}

// Two projects of one name must not take each other's files for leftovers.
TEST_F(Deployment, EachProjectHasItsOwnManifestOnTheServer)
{
    Expect<DeployDone>(Deploy(Server()));
    fixture.NewProject();
    AddPicture("other.png");
    fixture.GetProject().Save(Path("Other.gallery"));
    EXPECT_FALSE(Expect<DeployDoubts>(Deploy(Server())).strangeFiles.isEmpty());
    Expect<DeployDone>(Deploy(Server(), {.overwrite = true}));
    EXPECT_EQ(result.summary->removedFiles, 0);
    EXPECT_EQ(Served().count(QStringLiteral("pictures/two2015.png")), 1u);
}

TEST_F(Deployment, SendsNothingBeforeThePersonConsents)
{
    bool wasAsked = false;
    onMessage = [&](const DeploymentMessage& message) {
        if (const auto* const summary = std::get_if<DeploySummary>(&message)) {
            EXPECT_TRUE(summary->awaitsConsent);
            EXPECT_GT(summary->newFiles, 0);
            EXPECT_TRUE(Served().empty());
            wasAsked = true;
            deployment->Consent();
        }
    };
    Expect<DeployDone>(Deploy(Server(), {.awaitsConsent = true}));
    EXPECT_TRUE(wasAsked);
    EXPECT_FALSE(Served().empty());
}

TEST_F(Deployment, CancelIsAnAnswerToTheSummary)
{
    onMessage = [this](const DeploymentMessage& message) {
        if (std::holds_alternative<DeploySummary>(message)) {
            deployment->RequestCancel();
        }
    };
    Expect<DeployCancelled>(Deploy(Server(), {.awaitsConsent = true}));
    EXPECT_TRUE(Served().empty());
}

TEST_F(Deployment, AsksNobodyWhereThereIsNothingToSendOrSomethingElseToDecide)
{
    Expect<DeployDone>(Deploy(Server()));
    Expect<DeployDone>(Deploy(Server(), {.awaitsConsent = true}));
    EXPECT_TRUE(result.summary->IsNothing());
    EXPECT_FALSE(result.summary->awaitsConsent);
    fixture.NewProject();
    AddPicture("other.png");
    fixture.GetProject().Save(Path("Other.gallery"));
    Expect<DeployDoubts>(Deploy(Server(), {.awaitsConsent = true}));
    EXPECT_FALSE(result.summary->awaitsConsent);
}

TEST_F(Deployment, IsExaminedBeforeAnythingIsWritten)
{
    const QString lost = fixture.GetRoot().GetPictures().GetAt(0)->GetPath();
    ASSERT_TRUE(QFile::remove(lost));
    fixture.scratch.Write(QStringLiteral("site/index.html"), "mine");
    const QStringList before = fixture.scratch.ListFiles();
    const DeployDoubts inFolder = ExamineDeployment(fixture.GetProject(), Folder(), Path("records"));
    ASSERT_EQ(inFolder.absentPictures.size(), 1u);
    EXPECT_EQ(inFolder.absentPictures[0].path, lost);
    EXPECT_EQ(inFolder.strangeFiles.size(), 1);
    const DeployDoubts atServer = ExamineDeployment(fixture.GetProject(), Server(), Path("records"));
    EXPECT_EQ(atServer.absentPictures.size(), 1u);
    EXPECT_TRUE(atServer.strangeFiles.isEmpty()); // nobody has been there yet
    EXPECT_EQ(server.operations, 0);
    EXPECT_EQ(fixture.scratch.ListFiles(), before);
    EXPECT_TRUE(fixture.GetProject().IsPreviewMode());
}

TEST_F(Deployment, AReceiverThatIsGoneIsNoDanger)
{
    CDeployment run(fixture.GetProject(), Setting(Folder(), {}));
    run.Start(std::make_shared<CRecordingReceiver>());
    run.WaitFinished();
    EXPECT_TRUE(std::holds_alternative<DeployDone>(run.GetEnd()));
}

TEST_F(Deployment, AFolderThatIsAFileIsNamed)
{
    fixture.scratch.Write(QStringLiteral("site"), "x");
    const auto failure = Expect<DeployFailure>(Deploy(Folder()));
    EXPECT_EQ(failure.caption, QStringLiteral("Could not create directory %1.").arg(Path("site")));
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("site")), "x");
}

// By the record that the run before has kept, though it was cancelled.
TEST_F(Deployment, ARemovedPictureTakesItsFilesAlong)
{
    for (int i = 0; i < 100; ++i) {
        AddPicture(qPrintable(QStringLiteral("%1.png").arg(i)));
    }
    const auto pictures = [this] {
        return fixture.scratch.ListFiles().filter(QStringLiteral("site/pictures/")).size();
    };
    onMessage = [this](const DeploymentMessage& message) {
        if (std::holds_alternative<DeployPagesDone>(message)) {
            deployment->RequestCancel();
        }
    };
    Expect<DeployCancelled>(Deploy(Folder()));
    EXPECT_GT(pictures(), 0);
    onMessage = {};
    for (const int left : {3, 2}) {
        while (fixture.GetRoot().GetPictures().GetCount() > left) {
            fixture.GetRoot().RemovePicture(0);
        }
        Expect<DeployDone>(Deploy(Folder()));
        EXPECT_EQ(pictures(), left);
    }
}
