#include <atomic>

#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProgressBar>
#include <QRadioButton>

#include "WizardFixture.h"
#include "common/StopSignal.h"
#include "content/PageGeneration.h"

namespace {

const QString Failed = QStringLiteral("An error occured during upload a new web gallery to Internet site.");

class CNoProgress final : public CGenerationProgress {
    void OnPageDone(int32_t, int32_t) override {}
};

} // namespace

class WizardUpload : public CWizardFixture {
protected:
    QString Step() const { return OnPage<QLabel>("step").text(); }

    void ExpectError(const QString& reason, const QString& solution)
    {
        Press("next");
        WAIT_UNTIL(PageId() == 245);
        EXPECT_EQ(ErrorTexts(), QStringList({Failed, reason, solution}));
        EXPECT_TRUE(TemporaryFiles().isEmpty()) << qPrintable(TemporaryFiles().join(QLatin1Char(' ')));
    }
};

TEST_F(WizardUpload, SendsTheWholeSite)
{
    server.Start();
    OpenUpload();
    EXPECT_EQ(OnPage<QLineEdit>("server").text(), QStringLiteral("127.0.0.1"));
    EXPECT_EQ(OnPage<QLineEdit>("directory").text(), QStringLiteral("web"));
    Press("next");
    EXPECT_FALSE(CanPress("finish"));
    EXPECT_FALSE(CanPress("back"));
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(PageId(), 239);
    EXPECT_EQ(Step(), QString());
    EXPECT_EQ(Status(), QStringLiteral("The gallery has uploaded successfully!"));
    EXPECT_TRUE(TemporaryFiles().isEmpty());

    CNoProgress progress;
    const CStopSignal stop;
    GeneratePages(fixture.GetProject(), {Path(QStringLiteral("expected"))}, stop, progress);
    const QStringList expected = FilesBelow(Path(QStringLiteral("expected")));
    EXPECT_EQ(OnPage<QProgressBar>("progress").maximum(), expected.size());
    EXPECT_EQ(OnPage<QProgressBar>("progress").value(), expected.size());
    auto files = server.GetFiles();
    for (const QString& file : expected) {
        const std::string name = file.section(QLatin1Char('/'), -1).toStdString();
        EXPECT_EQ(files[name], fixture.scratch.Read(QStringLiteral("expected/") + file).toStdString())
            << name;
    }
    KeepPictures(*wizard, QStringLiteral("wizard-239-done"));
    Press("finish");
    EXPECT_EQ(Stored().destination_kind, 1);
    EXPECT_EQ(Stored().ftp_directory, QStringLiteral("web"));
    EXPECT_TRUE(opened.isEmpty());
}

TEST_F(WizardUpload, TellsItsThreeStepsAndCountsFiles)
{
    CGate directory;
    CGate file;
    directory.Put(server, "MKD", "257 made\r\n");
    file.Put(server, "STOR", "550 enough\r\n");
    server.Start();
    OpenUpload();
    Press("next");
    EXPECT_EQ(Step(), QStringLiteral("Step 1 of 3. Generating gallery content..."));
    WAIT_UNTIL(directory.IsReached());
    EXPECT_EQ(Step(), QStringLiteral("Step 2 of 3. Preparing upload file list and destination directory..."));
    EXPECT_EQ(Status(), QStringLiteral("Deployed pages: 3 of 3. "));
    EXPECT_FALSE(TemporaryFiles().isEmpty());
    directory.Open();
    WAIT_UNTIL(file.IsReached() && Status().startsWith(QStringLiteral("Uploading")));
    EXPECT_EQ(Step(), QStringLiteral("Step 3 of 3. Uploading gallery files..."));
    EXPECT_EQ(Status(), QStringLiteral("Uploading file: style.css."));
    EXPECT_EQ(OnPage<QProgressBar>("progress").value(), 0);
    EXPECT_EQ(OnPage<QProgressBar>("progress").minimum(), 0);
    EXPECT_GT(OnPage<QProgressBar>("progress").maximum(), 3);
    KeepPictures(*wizard, QStringLiteral("wizard-239-uploading"));
}

TEST_F(WizardUpload, TellsOfARefusedLogin)
{
    server.Reply("PASS", "530 Not you.\r\n");
    server.Start();
    OpenUpload();
    ExpectError(QStringLiteral("FTP server returns an error: 530 Not you.."),
                QStringLiteral("Please check FTP site parameters and destination directory."));
    KeepPictures(*wizard, QStringLiteral("wizard-245-refused"));
}

TEST_F(WizardUpload, TellsOfAServerThatIsNotThere)
{
    OpenUpload();
    server.Stop();
    CListener closed;
    CFTPDestination destination = destinations.Load(Stored().ftp_destination);
    destination.connection.port = closed.GetPort();
    closed.Close();
    destinations.Save(destination);
    ExpectError(QStringLiteral("Could not connect to the Internet site. Windows sockets subsystem return the "
                               "following error code: 274d."),
                QStringLiteral("Please try to upload your gallery later."));
}

TEST_F(WizardUpload, TakesALossAtTheFirstFileForAFailedConnect)
{
    server.On("STOR", [](CServerSession& session, const std::string&) { session.Reset(); });
    server.Start();
    OpenUpload();
    ExpectError(QStringLiteral("Could not connect to the Internet site. Windows sockets subsystem return the "
                               "following error code: 2746."),
                QStringLiteral("Please try to upload your gallery later."));
}

TEST_F(WizardUpload, TellsOfAServerThatDiesInTheMiddleAndBeginsAnew)
{
    auto files = std::make_shared<int>(0);
    server.Once("TYPE", [files](CServerSession& session, const std::string&) { session.Send("200 ok\r\n"); });
    server.On("PASV", [files](CServerSession& session, const std::string&) {
        if (++*files == 3) {
            session.Reset();
        } else {
            session.Send(session.ListenForData());
        }
    });
    server.Start();
    OpenUpload();
    ExpectError(
        QStringLiteral("Connection with internet site has been lost during uploading. Windows sockets "
                       "subsystem return the following error code: 2746."),
        QStringLiteral("Please try to upload your gallery later."));
    Press("back");
    EXPECT_EQ(PageId(), 241);
    EXPECT_TRUE(OnPage<QRadioButton>("site").isChecked());
    Press("next");
    EXPECT_EQ(OnPage<QLineEdit>("directory").text(), QStringLiteral("web"));
    Press("next");
    EXPECT_EQ(Step(), QString());
    Press("next");
    WAIT_UNTIL(CanPress("finish"));
    EXPECT_EQ(PageId(), 239);
    EXPECT_TRUE(server.GetFiles().count("index.html"));
}

TEST_F(WizardUpload, SendsNothingOfAFailedGeneration)
{
    server.Start();
    OpenUpload();
    fixture.scratch.Write(QStringLiteral("photos/2.jpg"), "no picture any more");
    Press("next");
    WAIT_UNTIL(PageId() == 245);
    EXPECT_TRUE(ErrorTexts().join(QLatin1Char(' ')).contains(QStringLiteral("2.jpg")));
    EXPECT_TRUE(server.GetCommands().empty());
    EXPECT_FALSE(TemporaryFiles().isEmpty()); // until a later run, or the end of the wizard
    Press("cancel");
    wizard.reset();
    EXPECT_TRUE(TemporaryFiles().isEmpty());
}

TEST_F(WizardUpload, TellsOfATemporaryFolderThatCanNotBeMade)
{
    server.Start();
    OpenUpload();
    QDir(fixture.tempFolder.GetPath()).removeRecursively();
    Press("next");
    WAIT_UNTIL(PageId() == 245);
    EXPECT_TRUE(ErrorTexts().first().startsWith(QStringLiteral("Could not create directory ")));
    Press("back");
    EXPECT_EQ(PageId(), 241);
}

TEST_F(WizardUpload, MakesTheDirectorySeenFromTheLoginsFolder)
{
    server.Start();
    AddServer(QStringLiteral("stored/elsewhere"));
    fixture.GetProject().GetDeploySettings().ftp_directory = QStringLiteral("web");
    Open();
    Press("next");
    Press("next");
    Press("next");
    WAIT_UNTIL(CanPress("finish"));
    const auto commands = server.GetCommands();
    EXPECT_EQ(std::count(commands.begin(), commands.end(), "MKD web"), 1);
    EXPECT_EQ(std::count(commands.begin(), commands.end(), "CWD stored/elsewhere"), 0);
}

TEST_F(WizardUpload, CancelsWhereverTheServerIsSilent)
{
    for (const char* verb : {"GREETING", "USER", "MKD", "TYPE", "PASV"}) {
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
        WAIT_UNTIL(reached->IsSet());
        const CDeploySettings before = Stored();
        bool errorShown = false;
        QObject::connect(wizard.get(), &QWizard::currentIdChanged,
                         [&](int id) { errorShown = errorShown || id == DeployPageId::DeployError; });
        Press("cancel");
        WAIT_UNTIL(!wizard->isVisible());
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
    WAIT_UNTIL(Step().startsWith(QStringLiteral("Step 2")));
    Press("cancel");
    WAIT_UNTIL(!wizard->isVisible());
    QElapsedTimer timer;
    timer.start();
    wizard.reset();
    EXPECT_LT(timer.elapsed(), 10000); // nothing waits for the connection, which would take 20 seconds
}

TEST_F(WizardUpload, BreaksTheFileInProgressOffWhenCancelled)
{
    const auto reached = std::make_shared<CEvent>();
    const auto failure = std::make_shared<std::atomic<int>>(0);
    server.On("STOR", [=](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        session.AcceptData();
        session.TakeSomeData();
        reached->Set();
        *failure = session.AwaitDataFailure();
        session.Stall();
    });
    server.Start();
    // More than a connection takes that nobody reads.
    fixture.scratch.Write(QStringLiteral("program/Styles/Blue/style.css"), QByteArray(30'000'000, ' '));
    OpenUpload();
    Press("next");
    WAIT_UNTIL(reached->IsSet());
    Press("cancel");
    EXPECT_EQ(Status(), QStringLiteral("Cancelling. The file in progress is broken off."));
    WAIT_UNTIL(!wizard->isVisible());
    server.Stop();
    EXPECT_EQ(*failure, 10054); // an end would make the part a whole
    const auto commands = server.GetCommands();
    EXPECT_EQ(std::count_if(commands.begin(), commands.end(),
                            [](const std::string& command) { return command.substr(0, 4) == "STOR"; }),
              1);
    EXPECT_TRUE(TemporaryFiles().isEmpty());
}

TEST_F(WizardUpload, CancelsTheGenerationBeforeAnythingIsSent)
{
    server.Start();
    OpenUpload();
    Press("next");
    Press("cancel");
    EXPECT_EQ(Status(), QStringLiteral("Cancelling. The files in progress are finished first."));
    WAIT_UNTIL(!wizard->isVisible());
    EXPECT_TRUE(server.GetCommands().empty());
    wizard.reset();
    EXPECT_TRUE(TemporaryFiles().isEmpty());
}
