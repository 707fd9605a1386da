#include <sys/socket.h>
#include <sys/un.h>
#include <thread>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include "ResourceGuard.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/Socket.h"
#include "ftpengine/ssh/KnownHosts.h"
#include "session/SftpServerFixture.h"

// Keys, the agent, and which servers are taken.

namespace {

using Doubt = ServerIdentity::Doubt;

class SftpServerLogin : public CSftpServerFixture {};

} // namespace

TEST_F(SftpServerLogin, TakesKeysOfAllUsualKindsAndTheirPassphrases)
{
    scratch.Write(QStringLiteral("trust/known_hosts"), server.GetKnownHostsLine());
    const struct {
        const char* kind;
        const char* passphrase;
    } rows[] = {
        {"-t ed25519", ""},
        {"-t ed25519", "s3cret phrase"},
        {"-t rsa -b 2048", ""},
        {"-t rsa -b 2048 -m PEM", "s3cret"},
        {"-t ecdsa -b 256", "\xc3\xbc\xe2\x82\xac\xc3\xa4"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.kind);
        const QString key = server.MakeKey(QStringLiteral("key%1").arg(&row - rows),
                                           QString::fromLatin1(row.kind).split(QLatin1Char(' ')),
                                           QString::fromUtf8(row.passphrase));
        setting.destination.identityFile = key;
        setting.destination.password = QString::fromUtf8(row.passphrase);
        EXPECT_TRUE(LoginResult().startsWith(QStringLiteral("530 "))); // the server doesn't know it yet
        server.Authorise(key);
        EXPECT_EQ(LoginResult(), QString());
        if (*row.passphrase != '\0') {
            for (const char* wrong : {"", "wrong one"}) {
                setting.destination.password = QString::fromLatin1(wrong);
                EXPECT_TRUE(LoginResult().contains(
                    QStringLiteral("the key file %1, whose passphrase is missing or wrong").arg(key)))
                    << qPrintable(LoginResult());
            }
        }
    }
}

TEST_F(SftpServerLogin, NamesTheKeyFileThatIsOfNoUse)
{
    Prepare();
    setting.destination.identityFile = scratch.Path(QStringLiteral("gone"));
    EXPECT_EQ(
        LoginResult(),
        QStringLiteral("530 The server refused the login of '%1'. Tried: the key file %2, which can't be "
                       "opened. It takes: publickey.\r\n")
            .arg(setting.destination.userName, setting.destination.identityFile));
    setting.destination.identityFile = scratch.Write(QStringLiteral("text"), "no key\n");
    EXPECT_TRUE(LoginResult().contains(QStringLiteral("which holds no key that can be used")));
}

TEST_F(SftpServerLogin, TakesTheUsersOwnKeys)
{
    Prepare();
    QDir().mkpath(scratch.Path(QStringLiteral("home/.ssh")));
    EXPECT_TRUE(
        QFile::copy(setting.destination.identityFile, scratch.Path(QStringLiteral("home/.ssh/id_ed25519"))));
    setting.destination.identityFile.clear();
    EXPECT_EQ(LoginResult(), QString());
}

TEST_F(SftpServerLogin, TakesTheKeysOfTheAgent)
{
    Prepare();
    const QString key = setting.destination.identityFile;
    setting.destination.identityFile.clear();
    EXPECT_TRUE(LoginResult().contains(QStringLiteral("neither a key nor a password")));
    const QString path = scratch.Path(QStringLiteral("agent"));
    QProcess agent;
    agent.start(QStringLiteral("ssh-agent"), {QStringLiteral("-D"), QStringLiteral("-a"), path});
    ASSERT_TRUE(agent.waitForStarted());
    QElapsedTimer patience;
    patience.start();
    // It tells nobody when it listens.
    while (!QFile::exists(path) && patience.elapsed() < 10'000) {
        agent.waitForFinished(20);
    }
    qputenv("SSH_AUTH_SOCK", path.toUtf8());
    const QString refused = LoginResult();
    EXPECT_TRUE(refused.contains(QStringLiteral("Tried: the keys of the agent."))) << qPrintable(refused);
    EXPECT_EQ(QProcess::execute(QStringLiteral("ssh-add"), {QStringLiteral("-q"), key}), 0);
    const CResourceGuard guard;
    EXPECT_EQ(LoginResult(), QString());
    // A key file that is named is the only one.
    setting.destination.identityFile = scratch.Path(QStringLiteral("gone"));
    EXPECT_TRUE(LoginResult().startsWith(QStringLiteral("530 ")));
    agent.kill();
    agent.waitForFinished();
}

TEST_F(SftpServerLogin, AnAgentThatNeverAnswersIsLeftByACancel)
{
    Prepare();
    setting.destination.identityFile.clear();
    const QString path = scratch.Path(QStringLiteral("agent"));
    const CSocket silent(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.toUtf8().constData(), sizeof address.sun_path);
    ASSERT_EQ(::bind(silent.GetDescriptor(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(silent.GetDescriptor(), 4), 0);
    qputenv("SSH_AUTH_SOCK", path.toUtf8());
    std::thread cancelling([&] {
        // The library has connected, and waits for an answer.
        WaitForFirst({{silent.GetDescriptor()}}, std::chrono::seconds(30));
        setting.abortEvent->Set();
    });
    EXPECT_EQ(LoginResult(), QString::number(EngineStatus::Aborted));
    cancelling.join();
    // Without a cancel the patience ends, and the login goes on without it.
    setting.abortEvent = std::make_shared<CEvent>();
    setting.timeouts.reply = std::chrono::seconds(2);
    const QString refused = LoginResult();
    EXPECT_TRUE(refused.contains(QStringLiteral("the keys of the agent"))) << qPrintable(refused);
}

TEST_F(SftpServerLogin, OnlyAKnownServerIsTaken)
{
    Prepare();
    const QByteArray right = server.GetKnownHostsLine();
    const QByteArray name = right.left(right.indexOf(' ') + 1);
    const QString otherKey =
        server.MakeKey(QStringLiteral("other"), {QStringLiteral("-t"), QStringLiteral("ed25519")}, {});
    QFile other(otherKey + QStringLiteral(".pub"));
    ASSERT_TRUE(other.open(QIODevice::ReadOnly));
    const QByteArray wrong = name + other.readAll();
    const QString untrusted = QString::number(EngineStatus::UntrustedServer);
    const struct {
        QByteArray own;   // the trust folder's
        QByteArray users; // ~/.ssh/known_hosts
        QString result;
        Doubt doubt;
    } rows[] = {
        {"", "", untrusted, Doubt::UnknownAuthority},
        {right, "", {}, Doubt::None},
        {"", right, {}, Doubt::None},
        {wrong, "", untrusted, Doubt::Changed},
        {"", wrong, untrusted, Doubt::Changed},
        {right, wrong, {}, Doubt::None}, // the person has said so here
        {wrong + right, "", {}, Doubt::None},
        {"", "@revoked " + right, untrusted, Doubt::Changed},
    };
    for (const auto& row : rows) {
        scratch.Write(QStringLiteral("trust/known_hosts"), row.own);
        scratch.Write(QStringLiteral("home/.ssh/known_hosts"), row.users);
        log = {};
        EXPECT_EQ(LoginResult(), row.result) << (&row - rows);
        ASSERT_TRUE(log.identity.has_value());
        EXPECT_EQ(log.identity->doubt, row.doubt) << (&row - rows);
        EXPECT_EQ(log.identity->subject, QStringLiteral("ssh-ed25519"));
        EXPECT_EQ(log.identity->hostKey, QByteArray::fromBase64(server.GetHostKey().split(' ').value(1)));
        EXPECT_EQ(log.identity->fingerprint,
                  QCryptographicHash::hash(log.identity->hostKey, QCryptographicHash::Sha256));
    }
    // What a person takes is known from then on, and the user's own file stays as it is.
    scratch.Write(QStringLiteral("trust/known_hosts"), {});
    scratch.Write(QStringLiteral("home/.ssh/known_hosts"), wrong);
    EXPECT_EQ(LoginResult(), untrusted);
    ASSERT_TRUE(RememberHostKey(setting.trustFolder, *log.identity));
    EXPECT_EQ(LoginResult(), QString());
    EXPECT_EQ(scratch.Read(QStringLiteral("home/.ssh/known_hosts")), wrong);
}

TEST_F(SftpServerLogin, AFingerprintThatIsGivenIsTheOnlyOneTaken)
{
    Prepare();
    setting.destination.fingerprint = GetFingerprint();
    scratch.Write(QStringLiteral("trust/known_hosts"), {});
    EXPECT_EQ(LoginResult(), QString());
    scratch.Write(QStringLiteral("trust/known_hosts"), server.GetKnownHostsLine());
    setting.destination.fingerprint = QByteArray(32, 'x');
    EXPECT_EQ(LoginResult(), QString::number(EngineStatus::UntrustedServer));
}
