#include <sys/fsuid.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include "WizardFixture.h"
#include "support/SshServer.h"

class WizardConnection : public CWizardFixture {
protected:
    void OpenNew()
    {
        fixture.GetProject().GetDeploySettings().destination_kind = 1;
        Open();
        Press("next");
        ASSERT_EQ(PageId(), DeployPageId::EditFTP);
    }

    void OpenEdit(const CFTPDestination& destination)
    {
        CDeploySettings& settings = fixture.GetProject().GetDeploySettings();
        settings.destination_kind = 1;
        settings.ftp_destination = destination.key;
        Open();
        Click(*wizard->currentPage(), "edit");
        ASSERT_EQ(PageId(), DeployPageId::EditFTP);
    }

    CFTPDestination Save(bool allUsers, const QString& name, const QString& directory = {})
    {
        CFTPDestination destination = destinations.Create(allUsers);
        destination.connection = server.GetDestination(directory);
        destination.connection.displayName = name;
        EXPECT_EQ(destinations.Save(destination), CFTPDestinations::SaveResult::Saved);
        return destination;
    }

    auto CountCommands(const std::string& line)
    {
        const auto commands = server.GetCommands();
        return std::count(commands.begin(), commands.end(), line);
    }

    QLineEdit& Field(const char* name) const { return OnPage<QLineEdit>(name); }

    void Choose(ServerProtocol protocol)
    {
        auto& choice = OnPage<QComboBox>("protocol");
        choice.setCurrentIndex(choice.findData(static_cast<int>(protocol)));
    }

    void FillIn(ServerProtocol protocol = ServerProtocol::Ftp)
    {
        Choose(protocol);
        OnPage<QSpinBox>("port").setValue(server.GetPort());
        QTest::keyClicks(&Field("server"), QStringLiteral("127.0.0.1"));
        QTest::keyClicks(&Field("userName"), QStringLiteral("anna"));
        QTest::keyClicks(&Field("password"), QStringLiteral("s3cret"));
    }
};

TEST_F(WizardConnection, BeginsEmptyForANewOne)
{
    OpenNew();
    const struct {
        const char* name;
        int limit;
    } rows[] = {{"server", 255}, {"displayName", 255}, {"userName", 50}, {"password", 50}};
    for (const auto& row : rows) {
        EXPECT_TRUE(Field(row.name).text().isEmpty()) << row.name;
        EXPECT_EQ(Field(row.name).maxLength(), row.limit) << row.name;
    }
    EXPECT_EQ(Field("password").echoMode(), QLineEdit::Password);
    EXPECT_EQ(OnPage<QCheckBox>("share").text(),
              QStringLiteral("&Make this FTP connection available for other users of this computer"));
    EXPECT_TRUE(OnPage<QCheckBox>("share").isEnabled());
    EXPECT_FALSE(OnPage<QCheckBox>("share").isChecked());
    EXPECT_TRUE(CanPress("back"));
    ExpectUsable(*wizard, QStringLiteral("wizard-237-new"));
}

TEST_F(WizardConnection, LetsTheDisplayNameFollowTheServer)
{
    OpenNew();
    QTest::keyClicks(&Field("server"), QStringLiteral("ftp.a"));
    EXPECT_EQ(Field("displayName").text(), QStringLiteral("ftp.a"));
    QTest::keyClicks(&Field("displayName"), QStringLiteral(" mine"));
    QTest::keyClicks(&Field("server"), QStringLiteral(".b"));
    EXPECT_EQ(Field("displayName").text(), QStringLiteral("ftp.a mine"));
}

TEST_F(WizardConnection, FollowsForAStoredOneOnlyWhereTheTwoAreEqual)
{
    OpenEdit(Save(false, QStringLiteral("127.0.0.1")));
    QTest::keyClicks(&Field("server"), QStringLiteral("0"));
    EXPECT_EQ(Field("displayName").text(), QStringLiteral("127.0.0.10"));
    wizard.reset();
    OpenEdit(Save(false, QStringLiteral("Mine")));
    QTest::keyClicks(&Field("server"), QStringLiteral("0"));
    EXPECT_EQ(Field("displayName").text(), QStringLiteral("Mine"));
}

TEST_F(WizardConnection, ShowsTheScopeOfAStoredOneAndKeepsIt)
{
    for (const bool allUsers : {false, true}) {
        OpenEdit(Save(allUsers, QStringLiteral("x")));
        EXPECT_FALSE(OnPage<QCheckBox>("share").isEnabled());
        EXPECT_EQ(OnPage<QCheckBox>("share").isChecked(), allUsers);
        EXPECT_FALSE(OnPage<QLabel>("shareNote").isVisible());
        EXPECT_EQ(Field("userName").text(), QStringLiteral("anna"));
        EXPECT_EQ(Field("password").text(), QStringLiteral("s3cret"));
        wizard.reset();
    }
}

TEST_F(WizardConnection, SaysWhyOthersCanNotHaveIt)
{
    // The machine's store lies below a file, so nobody can write it.
    fixture.scratch.Write(QStringLiteral("file"), "");
    const auto settings =
        CreateIniSettings(Path(QStringLiteral("settings")), Path(QStringLiteral("file/machine")));
    CFTPDestinations unwritable(*settings, protection);
    EXPECT_FALSE(unwritable.CanSaveForAllUsers());
    fixture.GetProject().GetDeploySettings().destination_kind = 1;
    DeployWizardServices services = MakeServices();
    services.destinations = &unwritable;
    wizard = std::make_unique<CWizardPropSheetDeploy>(fixture.GetProject(), services, nullptr);
    wizard->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(wizard.get()));
    Press("next");
    EXPECT_FALSE(OnPage<QCheckBox>("share").isEnabled());
    EXPECT_TRUE(OnPage<QLabel>("shareNote").isVisible());
    EXPECT_EQ(OnPage<QLabel>("shareNote").text(),
              QStringLiteral("Only an administrator of this computer can do that."));
    ExpectUsable(*wizard, QStringLiteral("wizard-237-not-shared"));
}

TEST_F(WizardConnection, ADisallowedMachineStoreIsFoundOutWithoutChangingIt)
{
    fixture.scratch.Write(QStringLiteral("machine/Corvane.ini"), "[x]\n");
    {
        const COrdinaryRights ordinary(fixture.scratch);
        ASSERT_EQ(::setfsuid(static_cast<uid_t>(-1)),
                  static_cast<int>(::geteuid() == 0 ? 65534 : ::geteuid()));
        EXPECT_EQ(destinations.CanSaveForAllUsers(), ::geteuid() != 0);
    }
    EXPECT_TRUE(destinations.CanSaveForAllUsers());
    EXPECT_EQ(fixture.scratch.ListFiles().filter(QStringLiteral("machine/")),
              QStringList(QStringLiteral("machine/Corvane.ini")));
}

TEST_F(WizardConnection, IsTriedAndStoredAndGoesOn)
{
    server.Start();
    for (const bool share : {false, true}) {
        OpenNew();
        FillIn();
        OnPage<QCheckBox>("share").setChecked(share);
        Press("next");
        EXPECT_EQ(PageId(), 237);
        EXPECT_FALSE(CanPress("next"));
        EXPECT_FALSE(CanPress("back"));
        WAIT_UNTIL(PageId() == 257);
        const auto stored = destinations.Enumerate();
        ASSERT_EQ(stored.size(), share ? 2u : 1u);
        EXPECT_EQ(stored.back().allUsers, share);
        EXPECT_EQ(stored.back().connection.displayName, QStringLiteral("127.0.0.1"));
        EXPECT_EQ(stored.back().connection.server, QStringLiteral("127.0.0.1"));
        EXPECT_EQ(stored.back().connection.userName, QStringLiteral("anna"));
        EXPECT_EQ(stored.back().connection.password, QStringLiteral("s3cret"));
        EXPECT_EQ(stored.back().connection.directory, QString());
        // It is the chosen one now.
        Press("back");
        Press("back");
        EXPECT_EQ(OnPage<QComboBox>("connection").currentData().toInt(), stored.back().key);
        wizard.reset();
    }
}

TEST_F(WizardConnection, KeepsDirectoryAndPortOfAStoredOne)
{
    server.Start();
    const CFTPDestination before = Save(false, QStringLiteral("Mine"), QStringLiteral("www/photos"));
    OpenEdit(before);
    Field("displayName").setText(QStringLiteral("Ours"));
    Press("next");
    WAIT_UNTIL(PageId() == 257);
    const auto stored = destinations.Enumerate();
    ASSERT_EQ(stored.size(), 1u);
    EXPECT_EQ(stored[0].key, before.key);
    EXPECT_EQ(stored[0].connection.displayName, QStringLiteral("Ours"));
    EXPECT_EQ(stored[0].connection.directory, QStringLiteral("www/photos"));
    EXPECT_EQ(stored[0].connection.port, server.GetPort());
    // The test itself goes to no directory.
    for (const std::string& command : server.GetCommands()) {
        EXPECT_NE(command.substr(0, 3), "CWD");
    }
}

TEST_F(WizardConnection, SaysWhichKindOfFailureItWas)
{
    server.Reply("PASS", "530 no\r\n");
    server.Start();
    OpenNew();
    FillIn();
    {
        const CMessageAnswer message;
        Press("next");
        WAIT_UNTIL(!message.GetText().isEmpty());
        const QString text =
            QStringLiteral("Connection test has failed. Please check user name, password and try again.");
        EXPECT_EQ(message.GetText(), text);
        EXPECT_EQ(message.GetTitle(), QStringLiteral("Gallery deployment wizard"));
        WAIT_UNTIL(CanPress("next"));
        EXPECT_EQ(Status(), text);
        EXPECT_EQ(PageId(), 237);
    }
    KeepPictures(*wizard, QStringLiteral("wizard-237-failed"));
    server.Stop();
    Field("server").setText(QStringLiteral("no such server"));
    const CMessageAnswer message;
    Press("next");
    WAIT_UNTIL(!message.GetText().isEmpty());
    EXPECT_EQ(message.GetText(), QStringLiteral("Connection test has failed. Server name is invalid."));
    EXPECT_TRUE(destinations.Enumerate().empty());
}

TEST_F(WizardConnection, CancelStopsATestAndStays)
{
    server.On("USER", [](CServerSession& session, const std::string&) { session.Stall(); });
    server.Start();
    timeouts = FTPTimeouts();
    OpenNew();
    FillIn();
    Press("next");
    WAIT_UNTIL(Status() == QStringLiteral("Testing FTP connection, please wait ..."));
    KeepPictures(*wizard, QStringLiteral("wizard-237-testing"));
    Press("cancel");
    EXPECT_TRUE(wizard->isVisible());
    EXPECT_EQ(Status(), QString());
    EXPECT_TRUE(CanPress("next"));
    EXPECT_FALSE(Field("server").isReadOnly());
    Press("cancel");
    EXPECT_FALSE(wizard->isVisible());
    EXPECT_TRUE(destinations.Enumerate().empty());
}

TEST_F(WizardConnection, StaysWhenThePasswordCanNotBeProtected)
{
    fixture.scratch.Write(QStringLiteral("keys/Corvane.key"), "no key");
    server.Start();
    OpenNew();
    FillIn();
    const CMessageAnswer message;
    Press("next");
    WAIT_UNTIL(!message.GetText().isEmpty());
    EXPECT_TRUE(message.GetText().contains(QStringLiteral("password can't be protected")));
    WAIT_UNTIL(CanPress("next"));
    EXPECT_EQ(PageId(), 237);
    // It is stored now, and edited from here on.
    EXPECT_EQ(destinations.Enumerate().size(), 1u);
}

TEST_F(WizardConnection, StaysWhenTheStoreCanNotBeWritten)
{
    fixture.scratch.Write(QStringLiteral("settings/Corvane.ini/in/the/way"), "");
    server.Start();
    OpenNew();
    FillIn();
    const CMessageAnswer message;
    Press("next");
    WAIT_UNTIL(!message.GetText().isEmpty());
    EXPECT_EQ(message.GetText(), QStringLiteral("The destination '127.0.0.1' could not be stored.\n"
                                                "Please check that you have the right to write there."));
    EXPECT_EQ(PageId(), 237);
}

TEST_F(WizardConnection, TakesTheDirectoryFromTheServersFolders)
{
    server.listing = "drwxr-xr-x 2 a a 4096 Jan  1 10:00 photos\r\n";
    server.Start();
    AddServer(QStringLiteral("www"));
    Open();
    Press("next");
    ASSERT_EQ(PageId(), 257);
    EXPECT_EQ(OnPage<QLineEdit>("directory").maxLength(), 260);
    OnPage<QLineEdit>("directory").setText(QStringLiteral("typed"));
    for (const bool accepted : {false, true}) {
        CModalAnswer answer([&](QWidget& modal) {
            EXPECT_EQ(modal.windowTitle(), QStringLiteral("Browse Folder"));
            EXPECT_FALSE(Find<QPushButton>(modal, "troubleshoot").isHidden());
            ASSERT_TRUE(QTest::qWaitFor([&] { return Find<QPushButton>(modal, "ok").isEnabled(); }, 60000));
            Click(modal, accepted ? "ok" : "cancel");
        });
        Click(*wizard->currentPage(), "browse");
        EXPECT_TRUE(answer.WasAsked());
        EXPECT_EQ(OnPage<QLineEdit>("directory").text(),
                  accepted ? QStringLiteral("www") : QStringLiteral("typed"));
    }
}

TEST_F(WizardConnection, IsTheOneThatWasChosenNotTheOneOfTheLastTime)
{
    const CFTPDestination first = Save(false, QStringLiteral("First"));
    Save(false, QStringLiteral("Second"));
    CDeploySettings& settings = fixture.GetProject().GetDeploySettings();
    settings.destination_kind = 1;
    settings.ftp_destination = first.key;
    Open();
    auto& connection = OnPage<QComboBox>("connection");
    EXPECT_EQ(connection.currentText(), QStringLiteral("First"));
    connection.setCurrentIndex(connection.findText(QStringLiteral("Second")));
    Click(*wizard->currentPage(), "edit");
    EXPECT_EQ(Field("displayName").text(), QStringLiteral("Second"));
    Press("back");
    EXPECT_EQ(OnPage<QComboBox>("connection").currentText(), QStringLiteral("Second"));
}

TEST_F(WizardConnection, OffersTheProtocolsWithTheirPorts)
{
    OpenNew();
    const struct {
        ServerProtocol protocol;
        const char* name;
        int port;
    } rows[] = {{ServerProtocol::FtpTls, "FTP with TLS", 21},
                {ServerProtocol::Ftp, "FTP without protection", 21},
                {ServerProtocol::FtpImplicitTls, "FTP with TLS from the start (port 990)", 990},
                {ServerProtocol::Sftp, "SFTP", 22}};
    EXPECT_EQ(OnPage<QComboBox>("protocol").count(), 4);
    EXPECT_EQ(OnPage<QComboBox>("protocol").currentText(), QStringLiteral("FTP with TLS"));
    for (const auto& row : rows) {
        Choose(row.protocol);
        EXPECT_EQ(OnPage<QComboBox>("protocol").currentText(), QLatin1String(row.name));
        EXPECT_EQ(OnPage<QSpinBox>("port").value(), row.port);
        EXPECT_EQ(Field("identityFile").isVisible(), row.protocol == ServerProtocol::Sftp);
    }
    ExpectUsable(*wizard, QStringLiteral("wizard-237-sftp"));
    OnPage<QSpinBox>("port").setValue(2222);
    Choose(ServerProtocol::FtpTls);
    EXPECT_EQ(OnPage<QSpinBox>("port").value(), 2222); // the person's own
}

TEST_F(WizardConnection, IsWalkedThroughByTabInTheOrderOfALogin)
{
    OpenNew();
    Choose(ServerProtocol::Sftp);
    QStringList order;
    for (const char* name : {"server", "port", "userName", "password", "identityFile", "browseIdentity",
                             "displayName", "share"}) {
        order += QString::fromLatin1(name);
    }
    Field("server").setFocus();
    for (const QString& name : order) {
        EXPECT_EQ(QApplication::focusWidget()->objectName(), name);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
}

TEST_F(WizardConnection, OfAnOlderVersionIsFTPInClearAsBefore)
{
    OpenEdit(Save(false, QStringLiteral("Mine")));
    EXPECT_EQ(OnPage<QComboBox>("protocol").currentText(), QStringLiteral("FTP without protection"));
    EXPECT_EQ(OnPage<QSpinBox>("port").value(), server.GetPort());
}

TEST_F(WizardConnection, AsksBeforeItTrustsAServerAndKeepsTheAnswer)
{
    const CTestCertificate certificate;
    server.UseTls(std::make_shared<CTlsServer>(certificate));
    server.Start();
    OpenNew();
    FillIn(ServerProtocol::FtpTls);
    {
        const CModalAnswer answer([](QWidget& modal) { Click(modal, "cancel"); });
        Press("next");
        WAIT_UNTIL(answer.WasAsked() && CanPress("next"));
        EXPECT_EQ(PageId(), 237);
        EXPECT_TRUE(destinations.Enumerate().empty());
        EXPECT_EQ(CountCommands("PASS s3cret"), 0);
    }
    {
        const CModalAnswer answer([](QWidget& modal) { Click(modal, "agree"); });
        Press("next");
        WAIT_UNTIL(PageId() == 257);
        EXPECT_TRUE(answer.WasAsked());
    }
    EXPECT_EQ(destinations.Enumerate().front().connection.protocol, ServerProtocol::FtpTls);
    EXPECT_EQ(CountCommands("PASS s3cret"), 1);
    // It is known from now on.
    Press("back");
    Press("next");
    WAIT_UNTIL(PageId() == 257);
    EXPECT_EQ(CountCommands("PASS s3cret"), 2);
}

TEST_F(WizardConnection, AsksBeforeAPasswordGoesInClear)
{
    server.Reply("AUTH", "500 What?\r\n");
    server.Start();
    OpenNew();
    FillIn(ServerProtocol::FtpTls);
    {
        const CModalAnswer answer([](QWidget& modal) { Click(modal, "cancel"); });
        Press("next");
        WAIT_UNTIL(answer.WasAsked() && CanPress("next"));
        EXPECT_EQ(CountCommands("PASS s3cret"), 0);
    }
    const CModalAnswer answer([](QWidget& modal) { Click(modal, "agree"); });
    Press("next");
    WAIT_UNTIL(PageId() == 257);
    EXPECT_EQ(destinations.Enumerate().front().connection.protocol, ServerProtocol::Ftp);
    EXPECT_EQ(destinations.Enumerate().front().connection.port, server.GetPort());
}

TEST_F(WizardConnection, IsLedToTlsByAServerThatDemandsIt)
{
    const CTestCertificate certificate;
    server.UseTls(std::make_shared<CTlsServer>(certificate));
    server.Once("USER", [](CServerSession& session, const std::string&) {
        session.Send("530 Non-anonymous sessions must use encryption.\r\n");
    });
    server.Start();
    OpenNew();
    FillIn(ServerProtocol::Ftp);
    std::unique_ptr<CModalAnswer> trust;
    const CModalAnswer toTls([&](QWidget& modal) {
        Click(modal, "agree");
        trust = std::make_unique<CModalAnswer>([](QWidget& next) { Click(next, "agree"); });
    });
    Press("next");
    WAIT_UNTIL(PageId() == 257);
    EXPECT_TRUE(toTls.WasAsked());
    EXPECT_TRUE(trust->WasAsked());
    EXPECT_EQ(destinations.Enumerate().front().connection.protocol, ServerProtocol::FtpTls);
}

TEST_F(WizardConnection, OverSFTPAsksForTheHostKeyAndKeepsTheKeyFile)
{
    const CSshServer ssh;
    ASSERT_TRUE(ssh.GetProblem().isEmpty()) << qPrintable(ssh.GetProblem());
    const QString key =
        ssh.MakeKey(QStringLiteral("key"), {QStringLiteral("-t"), QStringLiteral("ed25519")}, {});
    ssh.Authorise(key);
    OpenNew();
    Choose(ServerProtocol::Sftp);
    Field("server").setText(QStringLiteral("127.0.0.1"));
    OnPage<QSpinBox>("port").setValue(ssh.GetPort());
    Field("userName").setText(ssh.GetDestination().userName);
    Field("identityFile").setText(key);
    const CModalAnswer answer([](QWidget& modal) { Click(modal, "agree"); });
    Press("next");
    WAIT_UNTIL(PageId() == 257);
    EXPECT_TRUE(answer.WasAsked());
    const FTPDestinationConnection stored = destinations.Enumerate().front().connection;
    EXPECT_EQ(stored.protocol, ServerProtocol::Sftp);
    EXPECT_EQ(stored.port, ssh.GetPort());
    EXPECT_EQ(stored.identityFile, key);
}

TEST_F(WizardConnection, TellsASilentServerFromAnInvalidName)
{
    server.On("GREETING", [](CServerSession& session, const std::string&) { session.Stall(); });
    server.Start();
    timeouts.greeting = std::chrono::milliseconds(100);
    OpenNew();
    FillIn();
    const CMessageAnswer message;
    Press("next");
    WAIT_UNTIL(!message.GetText().isEmpty());
    EXPECT_FALSE(message.GetText().contains(QStringLiteral("name is invalid")))
        << qPrintable(message.GetText());
}

TEST_F(WizardConnection, ProposesItsStoredDirectoryUnlessTheProjectHasOneThere)
{
    const CFTPDestination first = Save(false, QStringLiteral("First"), QStringLiteral("stored/first"));
    const CFTPDestination second = Save(false, QStringLiteral("Second"), QStringLiteral("stored/second"));
    CDeploySettings& settings = fixture.GetProject().GetDeploySettings();
    settings.destination_kind = 1;
    settings.ftp_destination = first.key;
    const auto proposed = [this](const QString& connection) {
        Open();
        auto& choice = OnPage<QComboBox>("connection");
        choice.setCurrentIndex(choice.findText(connection));
        Press("next");
        return OnPage<QLineEdit>("directory").text();
    };
    EXPECT_EQ(proposed(QStringLiteral("First")), QStringLiteral("stored/first"));
    settings.ftp_directory = QStringLiteral("own");
    EXPECT_EQ(proposed(QStringLiteral("First")), QStringLiteral("own"));
    EXPECT_EQ(proposed(QStringLiteral("Second")), QStringLiteral("stored/second"));
    // What was typed for it in this wizard stays.
    OnPage<QLineEdit>("directory").clear();
    Press("next");
    Press("back");
    EXPECT_EQ(OnPage<QLineEdit>("directory").text(), QString());
}
