#include <sys/fsuid.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "WizardFixture.h"

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

    QLineEdit& Field(const char* name) const { return OnPage<QLineEdit>(name); }

    void FillIn()
    {
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
    DeployWizardServices services;
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
    for (const bool accepted : {false, true}) {
        CModalAnswer answer([&](QWidget& modal) {
            EXPECT_EQ(modal.windowTitle(), QStringLiteral("Browse Folder"));
            EXPECT_FALSE(Find<QPushButton>(modal, "troubleshoot").isHidden());
            ASSERT_TRUE(QTest::qWaitFor([&] { return Find<QPushButton>(modal, "ok").isEnabled(); }, 60000));
            Click(modal, accepted ? "ok" : "cancel");
        });
        Click(*wizard->currentPage(), "browse");
        EXPECT_TRUE(answer.WasAsked());
        EXPECT_EQ(OnPage<QLineEdit>("directory").text(), accepted ? QStringLiteral("www") : QString());
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
