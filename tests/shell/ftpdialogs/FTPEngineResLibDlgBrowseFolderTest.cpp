#include "shell/ftpdialogs/FTPEngineResLibDlgBrowseFolder.h"

#include <sys/socket.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>

#include "shell/ftpdialogs/FTPEngineResLibDlgTaskResult.h"
#include "shell/look/Icons.h"
#include "shell_support/DialogTools.h"
#include "shell_support/FTPTestTools.h"
#include "support/ScratchFolder.h"
#include "support/ScriptedServer.h"

namespace {

constexpr qint64 HangLimit = 30000; // ms; what would be waited for takes a minute and more

const std::string Listing = "total 3\r\n"
                            "drwxr-xr-x 2 a a 4096 Jan  1 10:00 .\r\n"
                            "drwxr-xr-x 2 a a 4096 Jan  1 10:00 ..\r\n"
                            "drwxr-xr-x 2 a a 4096 Jan  1 10:00 photos\r\n"
                            "-rw-r--r-- 1 a a   12 Jan  1 10:00 index.html\r\n"
                            "drwxr-xr-x 2 a a 4096 Jan  1 10:00 archive\r\n";

class BrowseFolder : public testing::Test {
protected:
    BrowseFolder() { server.listing = Listing; }

    void Show(const QString& directory = {}, bool troubleshooting = true)
    {
        destination.connection = server.GetDestination(directory);
        dialog =
            std::make_unique<CFTPEngineResLibDlgBrowseFolder>(destination, troubleshooting, nullptr, access);
        dialog->show();
    }

    void Open(const QString& directory = {}, bool troubleshooting = true)
    {
        Show(directory, troubleshooting);
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }

    // Opens it on a server that does what it should, and waits for the first listing.
    void OpenListed(const QString& directory = {})
    {
        server.Start();
        Open(directory);
        WAIT_UNTIL(Ok().isEnabled());
    }

    QTreeWidget& List() const { return Find<QTreeWidget>(*dialog, "folders"); }
    QPushButton& Ok() const { return Find<QPushButton>(*dialog, "ok"); }
    QString Url() const { return Find<QLineEdit>(*dialog, "url").text(); }
    QString Directory() const { return destination.connection.directory; }

    QStringList Rows() const
    {
        QStringList rows;
        for (int i = 0; i < List().topLevelItemCount(); ++i) {
            rows += List().topLevelItem(i)->text(0);
        }
        return rows;
    }

    // Types a name over the one in the label that is edited, and ends with that key.
    void EditLabel(const QString& name, Qt::Key end)
    {
        auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        ASSERT_NE(editor, nullptr);
        ASSERT_EQ(editor->objectName(), QStringLiteral("label"));
        editor->selectAll();
        if (name.isEmpty()) {
            editor->clear();
        } else {
            QTest::keyClicks(editor, name);
        }
        QTest::keyClick(editor, end);
    }

    void Rename(const QString& from, const QString& to)
    {
        // After a message nobody brings it back but the person.
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
        List().setCurrentItem(List().findItems(from, Qt::MatchExactly).first());
        QTest::keyClick(&List(), Qt::Key_F2);
        EditLabel(to, Qt::Key_Return);
    }

    bool HasCommand(const std::string& command)
    {
        const auto commands = server.GetCommands();
        return std::find(commands.begin(), commands.end(), command) != commands.end();
    }

    CScriptedServer server;
    CFTPDestination destination;
    CScratchFolder scratch;
    const CFTPEngineResLibDlgBrowseFolder::Access access{
        .timeouts = {}, .trustFolder = scratch.Path(QStringLiteral("trusted"))};
    std::unique_ptr<CFTPEngineResLibDlgBrowseFolder> dialog;
};

} // namespace

TEST_F(BrowseFolder, ShowsTheFoldersInTheOrderOfTheListing)
{
    OpenListed();
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Browse Folder"));
    EXPECT_EQ(List().headerItem()->text(0), QStringLiteral("Folders"));
    EXPECT_EQ(List().header()->sectionSize(0), 300);
    EXPECT_EQ(Rows(), QStringList({QStringLiteral("photos"), QStringLiteral("archive")}));
    EXPECT_EQ(List().currentItem(), List().topLevelItem(0));
    EXPECT_EQ(Url(), QStringLiteral("ftp://127.0.0.1:")); // the odd form for a port of its own
    EXPECT_TRUE(Find<QPushButton>(*dialog, "newFolder").isEnabled());
    EXPECT_TRUE(List().hasFocus());
}

TEST_F(BrowseFolder, GoesIntoAFolderAndUpAgain)
{
    OpenListed(QStringLiteral("www"));
    EXPECT_EQ(Rows().first(), QStringLiteral(".."));
    List().setCurrentItem(List().topLevelItem(1));
    QTest::keyClick(&List(), Qt::Key_Return);
    EXPECT_EQ(Directory(), QStringLiteral("www/photos"));
    WAIT_UNTIL(HasCommand("CWD www/photos") && Ok().isEnabled());
    EXPECT_EQ(Directory(), QStringLiteral("www/photos"));
    List().setCurrentItem(List().topLevelItem(0));
    QTest::keyClick(&List(), Qt::Key_Return);
    WAIT_UNTIL(HasCommand("CWD www/photos/..") && Ok().isEnabled());
    EXPECT_EQ(Directory(), QStringLiteral("www"));
    Q_EMIT List().itemActivated(List().topLevelItem(0), 0); // as a double click does
    WAIT_UNTIL(Directory().isEmpty() && Ok().isEnabled());
    EXPECT_EQ(Rows().first(), QStringLiteral("photos"));
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(BrowseFolder, ShowsTheDeepestFolderThatIsThere)
{
    server.On("CWD", [](CServerSession& session, const std::string& path) {
        session.Send(path == "a" ? "250 ok\r\n" : "550 none\r\n");
    });
    OpenListed(QStringLiteral("a/b/c"));
    EXPECT_EQ(Directory(), QStringLiteral("a"));
}

TEST_F(BrowseFolder, CountsDotsWhileAListingRuns)
{
    server.On("LIST", [](CServerSession& session, const std::string&) { session.Stall(); });
    server.Start();
    Open();
    WAIT_UNTIL(!Rows().isEmpty());
    EXPECT_TRUE(Rows().first().startsWith(QStringLiteral("Getting folders")));
    EXPECT_FALSE(Ok().isEnabled());
    EXPECT_FALSE(Find<QPushButton>(*dialog, "newFolder").isEnabled());
    // No row can be entered meanwhile.
    QTest::keyClick(&List(), Qt::Key_Return);
    EXPECT_EQ(Directory(), QString());
    auto* dots = dialog->findChild<QTimer*>(QStringLiteral("dots"));
    ASSERT_EQ(dialog->findChildren<QTimer*>(QStringLiteral("dots")).size(), 1);
    EXPECT_EQ(dots->interval(), 1000);
    dots->setInterval(1);
    WAIT_UNTIL(Rows().first() == QStringLiteral("Getting folders") + QString(30, QLatin1Char('.')));
    WAIT_UNTIL(Rows().first() == QStringLiteral("Getting folders"));
}

TEST_F(BrowseFolder, ShowsWhatItCanNotRead)
{
    server.listing = "01-01-24  10:00AM  <DIR>  photos\r\n";
    OpenListed(QStringLiteral("www"));
    EXPECT_EQ(Rows(), QStringList(QStringLiteral("..")));
    QString shown;
    const CModalAnswer answer([&](QWidget& modal) {
        shown = Find<QPlainTextEdit>(modal, "text").toPlainText();
        Click(modal, "ok");
    });
    Click(*dialog, "troubleshoot");
    EXPECT_EQ(shown, QStringLiteral("01-01-24  10:00AM  <DIR>  photos\n"));
}

TEST_F(BrowseFolder, HasNothingToShowAtTheRootOfSuchAServer)
{
    server.listing = "01-01-24  10:00AM  <DIR>  photos\r\n";
    OpenListed();
    EXPECT_TRUE(Rows().isEmpty());
}

TEST_F(BrowseFolder, OffersTroubleshootingOnlyWhereItIsAskedFor)
{
    server.Start();
    Open({}, false);
    EXPECT_TRUE(Find<QPushButton>(*dialog, "troubleshoot").isHidden());
    WAIT_UNTIL(Ok().isEnabled());
}

TEST_F(BrowseFolder, TellsOfARefusalAndRestoresThePath)
{
    OpenListed();
    // The server leaves no way into the folder, nor back.
    server.Stop();
    QString conversation;
    const CModalAnswer answer([&](QWidget& modal) {
        ASSERT_NE(qobject_cast<CFTPEngineResLibDlgTaskResult*>(&modal), nullptr);
        conversation = Find<QPlainTextEdit>(modal, "text").toPlainText();
        Click(modal, "ok");
    });
    QTest::keyClick(&List(), Qt::Key_Return);
    EXPECT_EQ(Directory(), QStringLiteral("photos"));
    WAIT_UNTIL(answer.WasAsked() && Rows().isEmpty());
    EXPECT_TRUE(conversation.startsWith(QStringLiteral("Connection failed. See below")));
    EXPECT_EQ(Directory(), QString());
    EXPECT_FALSE(Ok().isEnabled());
    Click(*dialog, "cancel");
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}

TEST_F(BrowseFolder, RenamesAFolder)
{
    OpenListed();
    Rename(QStringLiteral("archive"), QStringLiteral("old/er"));
    // Until the server has agreed the label stays.
    EXPECT_EQ(Rows().last(), QStringLiteral("archive"));
    WAIT_UNTIL(Rows().last() == QStringLiteral("old/er"));
    EXPECT_TRUE(HasCommand("RNFR archive"));
    EXPECT_TRUE(HasCommand("RNTO old/er")); // a "/" is the server's matter
    EXPECT_TRUE(Ok().isEnabled());
}

TEST_F(BrowseFolder, KeepsTheNameThatTheServerDoesNotChange)
{
    server.Reply("RNTO", "553 not that\r\n");
    OpenListed();
    QString conversation;
    const CModalAnswer answer([&](QWidget& modal) {
        conversation = Find<QPlainTextEdit>(modal, "text").toPlainText();
        Click(modal, "ok");
    });
    Rename(QStringLiteral("archive"), QStringLiteral("older"));
    WAIT_UNTIL(answer.WasAsked() && List().isEnabled());
    EXPECT_TRUE(conversation.contains(QStringLiteral("RNTO older\n553 not that\n")));
    EXPECT_EQ(Rows().last(), QStringLiteral("archive"));
}

TEST_F(BrowseFolder, AsksNothingForANameThatStays)
{
    OpenListed();
    Rename(QStringLiteral("archive"), QStringLiteral("archive"));
    QCoreApplication::processEvents();
    EXPECT_TRUE(List().isEnabled());
    List().setCurrentItem(List().topLevelItem(0));
    QTest::keyClick(&List(), Qt::Key_F2);
    EditLabel(QString(), Qt::Key_Return); // nor for an empty one
    QCoreApplication::processEvents();
    EXPECT_EQ(Rows().first(), QStringLiteral("photos"));
    EXPECT_FALSE(HasCommand("RNFR archive"));
    EXPECT_FALSE(HasCommand("RNFR photos"));
}

TEST_F(BrowseFolder, DoesNotEditTheWayUp)
{
    OpenListed(QStringLiteral("www"));
    QTest::keyClick(&List(), Qt::Key_F2);
    EXPECT_EQ(QApplication::focusWidget(), &List());
}

TEST_F(BrowseFolder, MakesAFolder)
{
    OpenListed(QStringLiteral("www"));
    QTest::keyClick(dialog.get(), Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(Rows().last(), QStringLiteral("New"));
    EditLabel(QStringLiteral("2024"), Qt::Key_Return);
    WAIT_UNTIL(Rows().last() == QStringLiteral("2024"));
    EXPECT_TRUE(HasCommand("MKD 2024"));
    // It is a folder like the others now.
    Rename(QStringLiteral("2024"), QStringLiteral("2025"));
    WAIT_UNTIL(Rows().last() == QStringLiteral("2025"));
    EXPECT_TRUE(HasCommand("RNFR 2024"));
}

TEST_F(BrowseFolder, ForgetsAFolderWhoseNamingIsCancelled)
{
    OpenListed();
    Click(*dialog, "newFolder");
    EditLabel(QStringLiteral("x"), Qt::Key_Escape);
    WAIT_UNTIL(Rows().size() == 2);
    Click(*dialog, "newFolder");
    EditLabel(QString(), Qt::Key_Return);
    WAIT_UNTIL(Rows().size() == 2);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(HasCommand("MKD x"));
}

TEST_F(BrowseFolder, KeepsTheRowOfAFolderThatCouldNotBeMade)
{
    server.Once("MKD", [](CServerSession& session, const std::string&) { session.Send("550 no\r\n"); });
    // That it exists already is no reason for the refusal either.
    server.Once("CWD", [](CServerSession& session, const std::string&) { session.Send("550 no\r\n"); });
    OpenListed();
    const CModalAnswer answer([&](QWidget& modal) { Click(modal, "ok"); });
    Click(*dialog, "newFolder");
    EditLabel(QStringLiteral("x"), Qt::Key_Return);
    WAIT_UNTIL(answer.WasAsked() && List().isEnabled());
    EXPECT_EQ(Rows().last(), QStringLiteral("New"));
    // It is still to be named, so the next name makes it.
    Rename(QStringLiteral("New"), QStringLiteral("y"));
    WAIT_UNTIL(Rows().last() == QStringLiteral("y"));
    EXPECT_TRUE(HasCommand("MKD y"));
}

TEST_F(BrowseFolder, RefusesANameWithALineBreakBeforeTheServerSeesIt)
{
    OpenListed();
    const CModalAnswer answer([&](QWidget& modal) { Click(modal, "ok"); });
    Click(*dialog, "newFolder");
    auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    editor->setText(QStringLiteral("a\r\nDELE index.html"));
    QTest::keyClick(editor, Qt::Key_Return);
    WAIT_UNTIL(answer.WasAsked() && List().isEnabled());
    EXPECT_FALSE(HasCommand("DELE index.html"));
}

TEST_F(BrowseFolder, AcceptsByItsButtonAlone)
{
    OpenListed();
    Find<QLineEdit>(*dialog, "url").setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    Ok().setFocus();
    QTest::keyClick(&Ok(), Qt::Key_Return);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

TEST_F(BrowseFolder, ClosesWithoutWaitingWhileTheServerIsSilent)
{
    const char* const verbs[] = {"GREETING", "USER", "LIST"};
    for (const char* verb : verbs) {
        CScriptedServer silent;
        silent.On(verb, [](CServerSession& session, const std::string&) { session.Stall(); });
        silent.Start();
        destination.connection = silent.GetDestination();
        dialog = std::make_unique<CFTPEngineResLibDlgBrowseFolder>(destination, true, nullptr, access);
        dialog->show();
        WAIT_UNTIL(!Rows().isEmpty());
        QElapsedTimer timer;
        timer.start();
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
        EXPECT_EQ(dialog->result(), QDialog::Rejected);
        dialog.reset();
        EXPECT_LT(timer.elapsed(), HangLimit) << verb;
    }
}

TEST_F(BrowseFolder, ClosesWithoutWaitingWhileAConnectionIsMade)
{
    // The queue of a listener that nobody serves fills up, and then it answers no more.
    CListener deaf(0);
    CSocket first;
    ASSERT_EQ(first.Create(), 0);
    ASSERT_EQ(first.Connect(LoopbackAddress(deaf.GetPort()), NoLimit), 0);
    destination.connection = server.GetDestination();
    destination.connection.port = deaf.GetPort();
    dialog = std::make_unique<CFTPEngineResLibDlgBrowseFolder>(destination, true, nullptr);
    dialog->show();
    WAIT_UNTIL(!Rows().isEmpty());
    QElapsedTimer timer;
    timer.start();
    dialog.reset();
    EXPECT_LT(timer.elapsed(), HangLimit);
}

TEST_F(BrowseFolder, IsUsable)
{
    OpenListed(QStringLiteral("www"));
    ExpectUsable(*dialog, QStringLiteral("browse"));
}

TEST_F(BrowseFolder, WaitsAMinuteForAChangeAndNoLonger)
{
    server.On("MKD", [](CServerSession& session, const std::string&) { session.Stall(); });
    OpenListed();
    QString conversation;
    const CModalAnswer answer([&](QWidget& modal) {
        conversation = Find<QPlainTextEdit>(modal, "text").toPlainText();
        Click(modal, "ok");
    });
    Click(*dialog, "newFolder");
    EditLabel(QStringLiteral("x"), Qt::Key_Return);
    WAIT_UNTIL(HasCommand("MKD x"));
    EXPECT_FALSE(List().isEnabled());
    QTimer* limit = nullptr;
    for (QTimer* timer : dialog->findChildren<QTimer*>()) {
        if (timer->isSingleShot() && timer->isActive()) {
            limit = timer;
        }
    }
    ASSERT_NE(limit, nullptr);
    EXPECT_EQ(limit->interval(), 60000);
    // Whatever the person does begins the minute anew.
    limit->start(1'000'000);
    QTest::mouseMove(dialog.get(), QPoint(3, 3));
    EXPECT_EQ(limit->interval(), 60000);
    limit->start(1'000'000);
    QTest::keyClick(dialog.get(), Qt::Key_Tab);
    EXPECT_EQ(limit->interval(), 60000);
    limit->start(1);
    WAIT_UNTIL(answer.WasAsked() && List().isEnabled());
    EXPECT_TRUE(conversation.contains(QStringLiteral("0x0000274c Connection timed out")));
    EXPECT_EQ(Rows().last(), QStringLiteral("New"));
}

TEST_F(BrowseFolder, EachKindOfRowHasItsIcon)
{
    const auto hasIcon = [&](int row, const char* name) {
        const QSize size(16, 16);
        return List().topLevelItem(row)->icon(0).pixmap(size).toImage() ==
               LoadIcon(QString::fromLatin1(name)).pixmap(size).toImage();
    };
    OpenListed(QStringLiteral("www"));
    EXPECT_TRUE(hasIcon(0, "folder-up"));
    EXPECT_TRUE(hasIcon(1, "folder"));
    Click(*dialog, "newFolder");
    EXPECT_TRUE(hasIcon(List().topLevelItemCount() - 1, "folder"));
    EditLabel(QString(), Qt::Key_Escape);
    dialog.reset();

    CScriptedServer silent;
    silent.On("LIST", [](CServerSession& session, const std::string&) { session.Stall(); });
    silent.Start();
    destination.connection = silent.GetDestination();
    dialog = std::make_unique<CFTPEngineResLibDlgBrowseFolder>(destination, true, nullptr, access);
    dialog->show();
    WAIT_UNTIL(!Rows().isEmpty());
    EXPECT_TRUE(hasIcon(0, "waiting"));
    dialog.reset();
}

TEST_F(BrowseFolder, ShowsAnEmptyListAndTheAddressWhenTheFirstListingFails)
{
    server.Reply("PASS", "530 no\r\n");
    server.Start();
    // Before the dialog: the message may come as soon as it is shown.
    const CModalAnswer answer([&](QWidget& modal) { Click(modal, "ok"); });
    Show(QStringLiteral("www"));
    WAIT_UNTIL(answer.WasAsked() && Rows().isEmpty());
    EXPECT_EQ(Url(), QStringLiteral("ftp://127.0.0.1:"));
    EXPECT_FALSE(Ok().isEnabled());
    EXPECT_FALSE(Find<QPushButton>(*dialog, "newFolder").isEnabled());
    EXPECT_TRUE(Find<QPushButton>(*dialog, "troubleshoot").isEnabled());
    EXPECT_TRUE(Find<QPushButton>(*dialog, "cancel").isEnabled());
}

TEST_F(BrowseFolder, AsksAboutAServerThatNobodyVouchesForAndGoesOn)
{
    const CTestCertificate certificate;
    server.UseTls(std::make_shared<CTlsServer>(certificate));
    server.Start();
    destination.connection = server.GetDestination(QStringLiteral("www"));
    destination.connection.protocol = ServerProtocol::FtpTls;
    const CModalAnswer answer([](QWidget& modal) { Click(modal, "agree"); });
    dialog = std::make_unique<CFTPEngineResLibDlgBrowseFolder>(destination, true, nullptr, access);
    dialog->show();
    WAIT_UNTIL(Ok().isEnabled());
    EXPECT_TRUE(answer.WasAsked());
    EXPECT_EQ(Directory(), QStringLiteral("www"));
    EXPECT_EQ(Rows().last(), QStringLiteral("archive"));
    EXPECT_EQ(Url(), QStringLiteral("ftpes://127.0.0.1:%1/www").arg(server.GetPort()));
}

TEST_F(BrowseFolder, ShowsNothingOfAServerThatIsNotTrusted)
{
    const CTestCertificate certificate;
    server.UseTls(std::make_shared<CTlsServer>(certificate));
    server.Start();
    destination.connection = server.GetDestination();
    destination.connection.protocol = ServerProtocol::FtpTls;
    const CModalAnswer answer([](QWidget& modal) { Click(modal, "cancel"); });
    dialog = std::make_unique<CFTPEngineResLibDlgBrowseFolder>(destination, true, nullptr, access);
    dialog->show();
    WAIT_UNTIL(answer.WasAsked() && Rows().isEmpty());
    EXPECT_FALSE(Ok().isEnabled());
    EXPECT_FALSE(HasCommand("PASS s3cret"));
}

TEST_F(BrowseFolder, ShowsAConversationWithoutThePassword)
{
    server.Reply("PASS", "530 no\r\n");
    server.Start();
    QString text;
    const CModalAnswer answer([&](QWidget& modal) {
        text = Find<QPlainTextEdit>(modal, "text").toPlainText();
        Click(modal, "ok");
    });
    Show();
    WAIT_UNTIL(answer.WasAsked() && Rows().isEmpty());
    EXPECT_TRUE(HasCommand("PASS s3cret"));
    EXPECT_TRUE(text.contains(QStringLiteral("PASS ****"))) << qPrintable(text);
    EXPECT_FALSE(text.contains(QStringLiteral("s3cret"))) << qPrintable(text);
}
