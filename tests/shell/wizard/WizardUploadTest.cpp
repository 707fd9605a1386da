#include <QAbstractButton>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProgressBar>
#include <QRadioButton>

#include "WizardFixture.h"
#include "common/StopSignal.h"
#include "content/PageGeneration.h"
#include "ftpengine/messages/EngineStatus.h"
#include "server/MemoryServer.h"

namespace {

using Verb = CMemoryServer::Verb;
using Fault = CMemoryServer::Fault;

const QString Failed = QStringLiteral("An error occured during upload a new web gallery to Internet site.");
const QString Manifest = QStringLiteral(".vistorama/");

class CNoProgress final : public CGenerationProgress {
    void OnPageDone(int32_t, int32_t) override {}
};

} // namespace

// The page that brings the site to a server: one in memory where nothing else is told.
class WizardUpload : public CWizardFixture {
protected:
    QString Step() const { return OnPage<QLabel>("step").text(); }
    QString Figures() const { return OnPage<QLabel>("figures").text(); }

    void UseMemory()
    {
        openSession = [this](const SessionSetting& setting, SessionLog& log) {
            return memory.MakeOpener(setting.abortEvent)(log);
        };
    }

    void ExpectError(const QString& reason, const QString& solution)
    {
        Press("next");
        WAIT_UNTIL(PageId() == 245);
        EXPECT_EQ(ErrorTexts(), QStringList({Failed, reason, solution}));
        EXPECT_TRUE(TemporaryFiles().isEmpty()) << qPrintable(TemporaryFiles().join(QLatin1Char(' ')));
    }

    // Relative to the directory, without the program's own.
    std::map<QString, QByteArray> Served() const
    {
        std::map<QString, QByteArray> served;
        for (const auto& [path, file] : memory.files) {
            if (path.startsWith(QStringLiteral("web/")) && !path.contains(Manifest)) {
                served[path.mid(4)] = file.bytes;
            }
        }
        return served;
    }

    std::map<QString, QByteArray> Expected()
    {
        CNoProgress progress;
        const CStopSignal stop;
        GeneratePages(fixture.GetProject(), {Path(QStringLiteral("expected"))}, stop, progress);
        std::map<QString, QByteArray> files;
        for (const QString& file : FilesBelow(Path(QStringLiteral("expected")))) {
            files[file] = fixture.scratch.Read(QStringLiteral("expected/") + file);
        }
        return files;
    }

    CMemoryServer memory;
};

TEST_F(WizardUpload, SendsTheWholeSiteAfterTheSummary)
{
    UseMemory();
    OpenUpload();
    EXPECT_EQ(OnPage<QLineEdit>("server").text(), QStringLiteral("127.0.0.1"));
    EXPECT_EQ(OnPage<QLineEdit>("directory").text(), QStringLiteral("web"));
    Press("next");
    EXPECT_FALSE(CanPress("next"));
    EXPECT_FALSE(CanPress("back"));
    WAIT_UNTIL(IsAsking());
    EXPECT_TRUE(Served().empty());
    EXPECT_FALSE(CanPress("back"));
    EXPECT_TRUE(Step().startsWith(QStringLiteral("Ready to publish. New files: "))) << qPrintable(Step());
    EXPECT_TRUE(Step().contains(QStringLiteral("Changed files: 0. Files to be removed: 0.")));
    ExpectUsable(*wizard, QStringLiteral("wizard-239-summary"));
    Press("next");
    EXPECT_FALSE(CanPress("finish"));
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(PageId(), 239);
    EXPECT_EQ(Step(), QString());
    EXPECT_EQ(Figures(), QString());
    EXPECT_EQ(Status(), QStringLiteral("The gallery has uploaded successfully!"));
    EXPECT_EQ(OnPage<QProgressBar>("progress").value(), OnPage<QProgressBar>("progress").maximum());
    EXPECT_TRUE(TemporaryFiles().isEmpty());
    EXPECT_GT(Served().size(), 5u);
    EXPECT_EQ(Served(), Expected());
    KeepPictures(*wizard, QStringLiteral("wizard-239-done"));
    Press("finish");
    EXPECT_EQ(Stored().destination_kind, 1);
    EXPECT_EQ(Stored().ftp_directory, QStringLiteral("web"));
    EXPECT_TRUE(opened.isEmpty());
}

TEST_F(WizardUpload, SaysThatNothingHasChangedAndCountsWhatHas)
{
    UseMemory();
    OpenUpload();
    Publish();
    WAIT_UNTIL(CanPress("finish"));
    const int64_t sent = memory.sentBytes;
    OpenUpload();
    Press("next");
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(Status(), QStringLiteral("Nothing has changed. The site on the server is up to date."));
    EXPECT_EQ(memory.sentBytes, sent);
    KeepPictures(*wizard, QStringLiteral("wizard-239-nothing"));
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "<p>second</p>");
    OpenUpload();
    Press("next");
    WAIT_UNTIL(IsAsking());
    EXPECT_TRUE(Step().contains(QStringLiteral("New files: 0. Changed files: 1."))) << qPrintable(Step());
    Press("next");
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(Served(), Expected());
}

TEST_F(WizardUpload, TheSummaryCanBeDeclined)
{
    UseMemory();
    OpenUpload();
    Press("next");
    WAIT_UNTIL(IsAsking());
    Press("cancel");
    WAIT_UNTIL(!wizard->isVisible());
    EXPECT_EQ(wizard->result(), QDialog::Rejected);
    EXPECT_TRUE(Served().empty());
}

TEST_F(WizardUpload, TellsItsThreeStepsAndItsFigures)
{
    UseMemory();
    QStringList steps;
    QStringList figures;
    OpenUpload();
    const auto note = [&] {
        if (!Step().isEmpty() && (steps.isEmpty() || steps.last() != Step())) {
            steps += Step();
        }
        if (!Figures().isEmpty()) {
            figures += Figures();
        }
    };
    int highest = 0;
    QObject::connect(&OnPage<QProgressBar>("progress"), &QProgressBar::valueChanged, [&](int value) {
        note();
        highest = value;
    });
    Press("next");
    WAIT_UNTIL((note(), IsAsking()));
    Press("next");
    WAIT_UNTIL((note(), CanPress("finish")));
    ASSERT_GE(steps.size(), 3);
    EXPECT_EQ(steps.first(), QStringLiteral("Step 1 of 3. Generating gallery content..."));
    EXPECT_EQ(steps.last(), QStringLiteral("Step 3 of 3. Uploading gallery files..."));
    ASSERT_FALSE(figures.isEmpty());
    EXPECT_TRUE(figures.last().startsWith(QStringLiteral("Files: "))) << qPrintable(figures.last());
    EXPECT_EQ(highest, OnPage<QProgressBar>("progress").maximum());
}

TEST_F(WizardUpload, TellsOfANewTryAfterABrokenConnection)
{
    UseMemory();
    bool isBroken = false;
    memory.onOperation = [&](const CMemoryServer::Operation& operation) {
        const bool breaks = operation.verb == Verb::Send && !std::exchange(isBroken, true);
        return breaks ? Fault::CutInside : Fault::None;
    };
    OpenUpload();
    Publish();
    WAIT_UNTIL(Status().contains(QStringLiteral("Next try in 1 s, 1 of 3.")));
    EXPECT_TRUE(Status().contains(QStringLiteral("the connection broke"))) << qPrintable(Status());
    KeepPictures(*wizard, QStringLiteral("wizard-239-retry"));
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(PageId(), 239);
    EXPECT_EQ(Served(), Expected());
}

TEST_F(WizardUpload, TellsOfARefusedFileAndBeginsAnew)
{
    UseMemory();
    memory.onOperation = [](const CMemoryServer::Operation& operation) {
        return operation.verb == Verb::Send ? Fault::NoSpace : Fault::None;
    };
    OpenUpload();
    Publish();
    WAIT_UNTIL(PageId() == 245);
    EXPECT_EQ(ErrorTexts().at(0), Failed);
    EXPECT_TRUE(ErrorTexts().at(1).contains(QStringLiteral("552 Disk full")))
        << qPrintable(ErrorTexts().at(1));
    EXPECT_TRUE(ErrorTexts().at(2).contains(QStringLiteral("space left")));
    KeepPictures(*wizard, QStringLiteral("wizard-245-refused"));
    memory.onOperation = {};
    Press("back");
    EXPECT_EQ(PageId(), 241);
    EXPECT_TRUE(OnPage<QRadioButton>("site").isChecked());
    Press("next");
    EXPECT_EQ(OnPage<QLineEdit>("directory").text(), QStringLiteral("web"));
    Press("next");
    EXPECT_EQ(Step(), QString());
    Publish();
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(PageId(), 239);
    EXPECT_EQ(Served(), Expected());
}

TEST_F(WizardUpload, TellsOfARefusedLogin)
{
    server.Reply("PASS", "530 Not you.\r\n");
    server.Start();
    OpenUpload();
    ExpectError(QStringLiteral("The server doesn't let you in: 530 Not you."),
                QStringLiteral("Please check FTP site parameters and destination directory."));
}

TEST_F(WizardUpload, TellsOfAServerThatIsNotThere)
{
    OpenUpload();
    CListener closed;
    CFTPDestination destination = destinations.Load(Stored().ftp_destination);
    destination.connection.port = closed.GetPort();
    closed.Close();
    destinations.Save(destination);
    Press("next");
    WAIT_UNTIL(PageId() == 245);
    EXPECT_EQ(ErrorTexts().at(0), Failed);
    EXPECT_TRUE(ErrorTexts().at(1).startsWith(QStringLiteral("The server could not be reached: ")))
        << qPrintable(ErrorTexts().at(1));
    EXPECT_EQ(ErrorTexts().at(2),
              QStringLiteral("Please check the name of the server and your connection, and try again."));
}

TEST_F(WizardUpload, AsksAboutTheServerInTheMiddleAndGoesOn)
{
    const CTestCertificate certificate;
    server.UseTls(std::make_shared<CTlsServer>(certificate));
    server.Start();
    CFTPDestination destination = AddServer();
    destination.connection.protocol = ServerProtocol::FtpTls;
    destinations.Save(destination);
    fixture.GetProject().GetDeploySettings().ftp_directory = QStringLiteral("web");
    Open();
    Press("next");
    Press("next");
    {
        const CModalAnswer answer([](QWidget& modal) { Click(modal, "cancel"); });
        Press("next");
        // The page is as it was before.
        WAIT_UNTIL(answer.WasAsked() && CanPress("next") && CanPress("back"));
        EXPECT_EQ(PageId(), 239);
        EXPECT_FALSE(IsAsking());
    }
    const CModalAnswer answer([](QWidget& modal) { Click(modal, "agree"); });
    Press("next");
    WAIT_UNTIL(IsAsking());
    EXPECT_TRUE(answer.WasAsked());
}

TEST_F(WizardUpload, RemembersThatAServerHasNoTls)
{
    server.Reply("AUTH", "502 No.\r\n");
    server.Start();
    CFTPDestination destination = AddServer();
    destination.connection.protocol = ServerProtocol::FtpTls;
    destinations.Save(destination);
    Open();
    Press("next");
    Press("next");
    const CModalAnswer answer([](QWidget& modal) { Click(modal, "agree"); });
    Press("next");
    WAIT_UNTIL(IsAsking());
    EXPECT_EQ(destinations.Load(destination.key).connection.protocol, ServerProtocol::Ftp);
}

TEST_F(WizardUpload, SendsNothingOfAFailedGeneration)
{
    UseMemory();
    OpenUpload();
    fixture.scratch.Write(QStringLiteral("photos/2.jpg"), "no picture any more");
    Press("next");
    WAIT_UNTIL(PageId() == 245);
    EXPECT_TRUE(ErrorTexts().join(QLatin1Char(' ')).contains(QStringLiteral("2.jpg")));
    EXPECT_TRUE(memory.files.empty());
}

TEST_F(WizardUpload, TellsOfASitesFolderThatCanNotBeMade)
{
    UseMemory();
    OpenUpload();
    fixture.scratch.Write(QStringLiteral("sites"), "a file in the way");
    Press("next");
    WAIT_UNTIL(PageId() == 245);
    EXPECT_FALSE(ErrorTexts().contains(QString()));
    Press("back");
    EXPECT_EQ(PageId(), 241);
}

TEST_F(WizardUpload, MakesTheDirectorySeenFromTheLoginsFolder)
{
    UseMemory();
    AddServer(QStringLiteral("stored/elsewhere"));
    fixture.GetProject().GetDeploySettings().ftp_directory = QStringLiteral("web");
    Open();
    Press("next");
    Press("next");
    Publish();
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_TRUE(memory.directories.contains(QStringLiteral("web")));
    EXPECT_FALSE(memory.directories.contains(QStringLiteral("stored")));
}

TEST_F(WizardUpload, CancelsWhereverTheServerIsSilent)
{
    for (const char* verb : {"GREETING", "USER", "FEAT", "EPSV", "MKD", "STOR"}) {
        CScriptedServer silent;
        const auto reached = std::make_shared<CEvent>();
        silent.On(verb, [reached](CServerSession& session, const std::string&) {
            reached->Set();
            session.Stall();
        });
        silent.Start();
        timeouts = FTPTimeouts(); // a minute for each reply
        OpenUpload();
        CFTPDestination destination = destinations.Load(Stored().ftp_destination);
        destination.connection.port = silent.GetPort();
        destinations.Save(destination);
        Press("next");
        WAIT_UNTIL(reached->IsSet() || IsAsking());
        if (IsAsking()) {
            Press("next");
        }
        WAIT_UNTIL(reached->IsSet());
        const CDeploySettings before = Stored();
        bool errorShown = false;
        QObject::connect(wizard.get(), &QWizard::currentIdChanged,
                         [&](int id) { errorShown = errorShown || id == DeployPageId::DeployError; });
        QElapsedTimer timer;
        timer.start();
        Press("cancel");
        WAIT_UNTIL(!wizard->isVisible());
        EXPECT_LT(timer.elapsed(), 30000) << verb; // nothing waits for the server's minute
        EXPECT_FALSE(errorShown) << verb;
        EXPECT_EQ(Stored(), before);
        wizard.reset();
        EXPECT_TRUE(TemporaryFiles().isEmpty()) << verb;
        EXPECT_FALSE(silent.GetFiles().count("index.html"));
    }
}

TEST_F(WizardUpload, CancelsWhileAConnectionIsMade)
{
    // The queue of a listener that nobody serves fills up, and then it answers no more.
    CListener deaf(0);
    CSocket first;
    ASSERT_EQ(first.Create(), 0);
    ASSERT_EQ(first.Connect(LoopbackAddress(deaf.GetPort()), NoLimit), 0);
    OpenUpload();
    CFTPDestination destination = destinations.Load(Stored().ftp_destination);
    destination.connection.port = deaf.GetPort();
    destinations.Save(destination);
    Press("next");
    WAIT_UNTIL(Step().startsWith(QStringLiteral("Step 1")));
    Press("cancel");
    WAIT_UNTIL(!wizard->isVisible());
    QElapsedTimer timer;
    timer.start();
    wizard.reset();
    EXPECT_LT(timer.elapsed(), 10000); // nothing waits for the connection, which would take 20 seconds
}

TEST_F(WizardUpload, BreaksTheFileInProgressOffWhenCancelledAndKeepsWhatWasSent)
{
    const auto reached = std::make_shared<CEvent>();
    const auto release = std::make_shared<CEvent>();
    const auto failure = std::make_shared<int>(0);
    server.On("STOR", [=, this](CServerSession& session, const std::string& name) {
        session.Send("150 go on\r\n");
        session.AcceptData();
        if (name.find("Blue/") == std::string::npos) {
            server.PutFile(name, session.ReadData());
            session.Send("226 stored\r\n");
            return;
        }
        session.TakeSomeData();
        reached->Set();
        release->Wait(std::chrono::seconds(60));
        *failure = session.AwaitDataFailure();
    });
    server.Start();
    // More than a connection takes that nobody reads.
    fixture.scratch.Write(QStringLiteral("program/Styles/Blue/style.css"), QByteArray(60'000'000, ' '));
    OpenUpload();
    Publish();
    WAIT_UNTIL(reached->IsSet());
    Press("cancel");
    EXPECT_EQ(Status(),
              QStringLiteral("Cancelling. What has arrived stays on the server, and the next time goes "
                             "on from there."));
    KeepPictures(*wizard, QStringLiteral("wizard-239-cancelling"));
    WAIT_UNTIL(!wizard->isVisible());
    release->Set();
    server.Stop();
    EXPECT_EQ(*failure, EngineStatus::ConnectionReset); // nobody takes it for complete
    EXPECT_FALSE(server.GetFiles().count("web/index.html"));
}

TEST_F(WizardUpload, CancelsTheGenerationBeforeAnythingIsSent)
{
    UseMemory();
    OpenUpload();
    Press("next");
    Press("cancel");
    EXPECT_EQ(Status(), QStringLiteral("Cancelling. The files in progress are finished first."));
    WAIT_UNTIL(!wizard->isVisible());
    EXPECT_TRUE(memory.files.empty());
}
