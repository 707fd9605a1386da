#include "ftpengine/ssh/SshLogin.h"

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/session/SftpSession.h"
#include "ftpengine/ssh/KnownHosts.h"
#include "support/ScratchFolder.h"
#include "support/SshLoginServer.h"

// Logins by password and by the server's questions, against a server that asks as it is told.

namespace {

using Rules = CSshLoginServer::Rules;

class SshLogin : public testing::Test {
protected:
    const CScratchFolder scratch;
    SessionLog log;

    SshLogin()
    {
        // No keys and no agent but those of a test.
        qputenv("HOME", scratch.Path(QStringLiteral("home")).toUtf8());
        qunsetenv("SSH_AUTH_SOCK");
    }
    ~SshLogin() override { qputenv("HOME", home); }

    QString Trust() const { return scratch.Path(QStringLiteral("trust")); }

    void Trust(const CSshLoginServer& server) const
    {
        ServerIdentity identity;
        identity.server = QStringLiteral("127.0.0.1");
        identity.port = server.GetDestination({}).port;
        identity.hostKey = server.GetHostKey();
        EXPECT_TRUE(RememberHostKey(Trust(), identity));
    }

    // "in", or the refusal's text, or the number.
    QString Login(const CSshLoginServer& server, const char* password)
    {
        SessionSetting setting;
        setting.destination = server.GetDestination(QString::fromUtf8(password));
        setting.abortEvent = std::make_shared<CEvent>();
        setting.trustFolder = Trust();
        try {
            const auto session = OpenSftpSession(setting, log);
            session->MakeDirectory(QStringLiteral("d"));
            EXPECT_EQ(session->List({}).size(), 1u);
            session->Quit();
            return QStringLiteral("in");
        } catch (const FTPReply& refusal) {
            return refusal.text;
        } catch (int number) {
            return QString::number(number);
        }
    }

private:
    const QByteArray home = qgetenv("HOME");
};

QString Refused(const char* tried, const char* taken)
{
    return QStringLiteral("530 The server refused the login of 'anna'. Tried: %1. It takes: %2.\r\n")
        .arg(QString::fromLatin1(tried), QString::fromLatin1(taken));
}

const char* const byAnswer = "the password as the answer to the server's question";

} // namespace

TEST_F(SshLogin, ThePasswordIsGivenAsTheServerAsksForIt)
{
    const std::vector<CSshLoginServer::Question> password = {{"Password: ", false, "s3cret"}};
    const struct {
        Rules rules;
        const char* password;
        QString expected;
        std::vector<std::string> seen;
    } rows[] = {
        {{.takesNothing = true}, "", QStringLiteral("in"), {}},
        {{.takesNothing = true}, "s3cret", QStringLiteral("in"), {}},
        {{.password = "s3cret"}, "s3cret", QStringLiteral("in"), {"password:s3cret"}},
        {{.password = "s3cret"}, "wrong", Refused("the password", "password"), {"password:wrong"}},
        {{.password = "s3cret"},
         "",
         Refused("nothing, since there is neither a key nor a password", "password"),
         {}},
        {{.user = "berta", .password = "s3cret"},
         "s3cret",
         Refused("the password", "password"),
         {"password:s3cret"}},
        {{.password = "\xc3\xbc\xe2\x82\xac"},
         "\xc3\xbc\xe2\x82\xac",
         QStringLiteral("in"),
         {"password:\xc3\xbc\xe2\x82\xac"}},
        {{.questions = {password}}, "s3cret", QStringLiteral("in"), {"answer:s3cret"}},
        {{.questions = {password}}, "wrong", Refused(byAnswer, "keyboard-interactive"), {"answer:wrong"}},
        {{.questions = {{}, password, {}}}, "s3cret", QStringLiteral("in"), {"answer:s3cret"}},
        {{.questions = {password}},
         "",
         Refused("nothing for the server's question 'Password:', which can't be answered here",
                 "keyboard-interactive"),
         {}},
        // A second factor is nothing that a stored password could be.
        {{.questions = {password, {{"Verification code: ", false, "123456"}}}},
         "s3cret",
         Refused("nothing for the server's question 'Verification code:', which can't be answered here",
                 "keyboard-interactive"),
         {"answer:s3cret"}},
        {{.questions = {{{"Your name: ", true, "anna"}}}},
         "s3cret",
         Refused("nothing for the server's question 'Your name:', which can't be answered here",
                 "keyboard-interactive"),
         {}},
        // Both ways lead to the same password: it isn't tried twice.
        {{.password = "s3cret", .questions = {password}},
         "wrong",
         Refused("the password", "password, keyboard-interactive"),
         {"password:wrong"}},
        // After the password the same question may want something else.
        {{.password = "s3cret", .questions = {password}, .wantsBoth = true},
         "s3cret",
         Refused("nothing for the server's question 'Password:', which can't be answered here",
                 "keyboard-interactive"),
         {"password:s3cret"}},
        {{.password = "s3cret", .disconnectsRefused = true},
         "s3cret",
         QStringLiteral("in"),
         {"password:s3cret"}},
    };
    for (const auto& row : rows) {
        CSshLoginServer server(row.rules);
        Trust(server);
        EXPECT_EQ(Login(server, row.password), row.expected) << (&row - rows);
        EXPECT_EQ(server.GetSecretsSeen(), row.seen) << (&row - rows);
    }
}

TEST_F(SshLogin, AServerThatHangsUpAfterARefusalHasRefused)
{
    CSshLoginServer server({.password = "s3cret", .disconnectsRefused = true});
    Trust(server);
    const QString found = Login(server, "wrong");
    EXPECT_TRUE(found.startsWith(QStringLiteral("530 ")) || found == QStringLiteral("10054"))
        << qPrintable(found);
}

TEST_F(SshLogin, NothingIsSentToAnUnknownServer)
{
    CSshLoginServer server({.password = "s3cret"});
    EXPECT_EQ(Login(server, "s3cret"), QString::number(EngineStatus::UntrustedServer));
    ASSERT_TRUE(log.identity.has_value());
    EXPECT_EQ(log.identity->doubt, ServerIdentity::Doubt::UnknownAuthority);
    EXPECT_EQ(log.identity->hostKey, server.GetHostKey());
    EXPECT_TRUE(server.GetSecretsSeen().empty());
    // As it would be after the person's yes.
    ASSERT_TRUE(RememberHostKey(Trust(), *log.identity));
    EXPECT_EQ(Login(server, "s3cret"), QStringLiteral("in"));
}

TEST_F(SshLogin, AServerWithoutSftpSaysSo)
{
    CSshLoginServer server({.password = "s3cret", .hasSftp = false});
    Trust(server);
    EXPECT_EQ(Login(server, "s3cret"), QStringLiteral("502 The server lets you in, but has no SFTP.\r\n"));
}

TEST_F(SshLogin, TheTranscriptHoldsNoPassword)
{
    for (const char* password : {"s3cret", "wr0ng"}) {
        CSshLoginServer server({.password = "s3cret"});
        Trust(server);
        Login(server, password);
    }
    ASSERT_GT(log.transcript.size(), 4u);
    for (const QString& line : log.transcript) {
        EXPECT_FALSE(line.contains(QStringLiteral("s3cret")) || line.contains(QStringLiteral("wr0ng")))
            << qPrintable(line);
    }
}
