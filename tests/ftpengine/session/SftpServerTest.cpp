#include <chrono>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include "ResourceGuard.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/session/SftpSession.h"
#include "ftpengine/ssh/KnownHosts.h"
#include "support/CuttingProxy.h"
#include "support/SshServer.h"

// The session against OpenSSH's server.

namespace {

using Doubt = ServerIdentity::Doubt;

QByteArray Pattern(qsizetype size)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    }
    return bytes;
}

// Gives zeros for as long as anybody wants some, and tells when it is asked so often.
class CEndlessSource final : public QIODevice {
public:
    explicit CEndlessSource(CEvent& reached) : reached(reached) { open(QIODevice::ReadOnly); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* bytes, qint64 size) override
    {
        std::fill_n(bytes, size, '\0');
        given += size;
        if (given > 8 << 20) {
            reached.Set();
        }
        return size;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    CEvent& reached;
    qint64 given = 0;
};

class SftpServer : public testing::Test {
protected:
    CSshServer server;
    const CScratchFolder scratch;
    SessionSetting setting;
    SessionLog log;
    const QByteArray formerHome = qgetenv("HOME");
    const QByteArray formerAgent = qgetenv("SSH_AUTH_SOCK");

    SftpServer()
    {
        qputenv("HOME", scratch.Path(QStringLiteral("home")).toUtf8());
        qunsetenv("SSH_AUTH_SOCK");
        setting.destination = server.GetDestination();
        setting.abortEvent = std::make_shared<CEvent>();
        setting.trustFolder = scratch.Path(QStringLiteral("trust"));
    }
    ~SftpServer() override
    {
        qputenv("HOME", formerHome);
        if (!formerAgent.isNull()) {
            qputenv("SSH_AUTH_SOCK", formerAgent);
        } else {
            qunsetenv("SSH_AUTH_SOCK");
        }
    }

    void SetUp() override
    {
        if (!server.GetProblem().isEmpty()) {
            FAIL() << qPrintable(server.GetProblem());
        }
    }

    // The usual case: the server is known, and there is a key for it.
    void Prepare()
    {
        scratch.Write(QStringLiteral("trust/known_hosts"), server.GetKnownHostsLine());
        const QString key =
            server.MakeKey(QStringLiteral("key"), {QStringLiteral("-t"), QStringLiteral("ed25519")}, {});
        server.Authorise(key);
        setting.destination.identityFile = key;
    }

    std::unique_ptr<CRemoteSession> Open() { return OpenSftpSession(setting, log); }

    QString Thrown(const std::function<void()>& action)
    {
        try {
            action();
        } catch (int number) {
            return QString::number(number);
        } catch (const FTPReply& reply) {
            return reply.text;
        }
        return {};
    }

    QString LoginResult()
    {
        return Thrown([this] { Open()->Quit(); });
    }

    static void Send(CRemoteSession& session, const QString& path, const QByteArray& bytes)
    {
        QBuffer source;
        source.setData(bytes);
        source.open(QIODevice::ReadOnly);
        session.Send(source, path, {});
    }

    QByteArray OnDisk(const QString& path) const
    {
        QFile file(server.GetRoot() + path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
        return file.readAll();
    }

    unsigned ModeOnDisk(const QString& path) const
    {
        struct stat status {};
        EXPECT_EQ(::stat(QFile::encodeName(server.GetRoot() + path).constData(), &status), 0);
        return status.st_mode & 07777;
    }
};

} // namespace

TEST_F(SftpServer, DoesWhatASessionAsksFor)
{
    const CResourceGuard guard;
    Prepare();
    const auto session = Open();
    session->MakeDirectory(QStringLiteral("www"));
    session->MakeDirectory(QStringLiteral("www"));
    session->MakeDirectory(QStringLiteral("www/\u00fc b"));
    for (const qsizetype size : {0, 1, 32768, 5'000'000}) {
        const QByteArray bytes = Pattern(size);
        Send(*session, QStringLiteral("www/file"), bytes);
        EXPECT_TRUE(OnDisk(QStringLiteral("www/file")) == bytes) << size;
        EXPECT_EQ(session->GetSize(QStringLiteral("www/file")), size);
        EXPECT_TRUE(session->Read(QStringLiteral("www/file"), 5'000'000) == bytes);
    }
    EXPECT_EQ(ModeOnDisk(QStringLiteral("www")), 0755u);
    EXPECT_EQ(ModeOnDisk(QStringLiteral("www/file")), 0644u);
    Send(*session, QStringLiteral("www/other"), "new");
    session->Rename(QStringLiteral("www/other"), QStringLiteral("www/file"));
    EXPECT_EQ(OnDisk(QStringLiteral("www/file")), "new");
    const std::vector<RemoteEntry> entries = session->List(QStringLiteral("www"));
    ASSERT_EQ(entries.size(), 2u);
    for (const RemoteEntry& entry : entries) {
        EXPECT_EQ(entry.isDirectory, entry.name == QStringLiteral("\u00fc b"));
        EXPECT_EQ(entry.size.has_value(), !entry.isDirectory);
        EXPECT_GT(entry.modified.value_or(0), 1'700'000'000);
    }
    EXPECT_FALSE(session->Read(QStringLiteral("www/gone"), 100).has_value());
    EXPECT_EQ(Thrown([&] { session->RemoveDirectory(QStringLiteral("www")); }),
              QStringLiteral("550 www: Failure\r\n"));
    session->RemoveFile(QStringLiteral("www/file"));
    session->RemoveDirectory(QStringLiteral("www/\u00fc b"));
    session->RemoveDirectory(QStringLiteral("www"));
    session->KeepAlive();
    EXPECT_EQ(session->List({}).size(), 0u);
    session->Quit();
}

TEST_F(SftpServer, OpensTheDestinationsDirectory)
{
    Prepare();
    QDir(server.GetRoot()).mkpath(QStringLiteral("a/b"));
    server.GiveToUser(server.GetRoot() + QStringLiteral("a/b"));
    const QString absolute = server.GetRoot() + QStringLiteral("a/b");
    for (const QString& directory : {QStringLiteral("a/b"), QStringLiteral("~/a/b"), absolute}) {
        setting.destination.directory = directory;
        Send(*Open(), QStringLiteral("f"), directory.toUtf8());
        EXPECT_EQ(OnDisk(QStringLiteral("a/b/f")), directory.toUtf8());
    }
    setting.destination.directory = QStringLiteral("a/gone");
    EXPECT_EQ(LoginResult(), QStringLiteral("550 a/gone: No such file\r\n"));
}

TEST_F(SftpServer, TakesKeysOfAllUsualKindsAndTheirPassphrases)
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

TEST_F(SftpServer, NamesTheKeyFileThatIsOfNoUse)
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

TEST_F(SftpServer, TakesTheUsersOwnKeys)
{
    Prepare();
    QDir().mkpath(scratch.Path(QStringLiteral("home/.ssh")));
    EXPECT_TRUE(
        QFile::copy(setting.destination.identityFile, scratch.Path(QStringLiteral("home/.ssh/id_ed25519"))));
    setting.destination.identityFile.clear();
    EXPECT_EQ(LoginResult(), QString());
}

TEST_F(SftpServer, TakesTheKeysOfTheAgent)
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

TEST_F(SftpServer, AnAgentThatNeverAnswersIsLeftByACancel)
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

TEST_F(SftpServer, OnlyAKnownServerIsTaken)
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

TEST_F(SftpServer, AFingerprintThatIsGivenIsTheOnlyOneTaken)
{
    Prepare();
    const QByteArray blob = QByteArray::fromBase64(server.GetHostKey().split(' ').value(1));
    setting.destination.fingerprint = QCryptographicHash::hash(blob, QCryptographicHash::Sha256);
    scratch.Write(QStringLiteral("trust/known_hosts"), {});
    EXPECT_EQ(LoginResult(), QString());
    scratch.Write(QStringLiteral("trust/known_hosts"), server.GetKnownHostsLine());
    setting.destination.fingerprint = QByteArray(32, 'x');
    EXPECT_EQ(LoginResult(), QString::number(EngineStatus::UntrustedServer));
}

TEST_F(SftpServer, WhatIsNotAllowedIsARefusal)
{
    Prepare();
    QDir(server.GetRoot()).mkpath(QStringLiteral("closed"));
    const QString closed = server.GetRoot() + QStringLiteral("closed");
    server.GiveToUser(closed);
    ::chmod(QFile::encodeName(closed).constData(), 0500);
    const auto session = Open();
    const QString refused = QStringLiteral("550 closed/f: Permission denied\r\n");
    EXPECT_EQ(Thrown([&] { Send(*session, QStringLiteral("closed/f"), "x"); }), refused);
    EXPECT_EQ(Thrown([&] { session->MakeDirectory(QStringLiteral("closed/f")); }), refused);
    EXPECT_EQ(Thrown([&] { Send(*session, QStringLiteral("gone/f"), "x"); }),
              QStringLiteral("550 gone/f: No such file\r\n"));
    Send(*session, QStringLiteral("f"), "goes on");
    EXPECT_EQ(OnDisk(QStringLiteral("f")), "goes on");
    ::chmod(QFile::encodeName(closed).constData(), 0700);
}

TEST_F(SftpServer, AFullDiskIsNamed)
{
    Prepare();
    const QString full = server.GetRoot() + QStringLiteral("full");
    QDir().mkpath(full);
    if (::mount("none", QFile::encodeName(full).constData(), "tmpfs", 0, "size=1m,mode=0777") != 0) {
        GTEST_SKIP() << "Only the administrator can make a small disk; SftpSession has the case in memory.";
    }
    const auto session = Open();
    EXPECT_EQ(Thrown([&] { Send(*session, QStringLiteral("full/f"), Pattern(5'000'000)); }),
              QStringLiteral("552 full/f: the server's disk is full.\r\n"));
    session->RemoveFile(QStringLiteral("full/f"));
    Send(*session, QStringLiteral("full/f"), "fits");
    session->Quit();
    EXPECT_EQ(::umount2(QFile::encodeName(full).constData(), MNT_DETACH), 0);
}

TEST_F(SftpServer, StoresManyFilesAndListsManyMore)
{
    Prepare();
    const auto session = Open();
    for (int i = 0; i < 300; ++i) {
        Send(*session, QStringLiteral("%1.html").arg(i), QByteArray::number(i));
    }
    EXPECT_EQ(session->List({}).size(), 300u);
    EXPECT_EQ(OnDisk(QStringLiteral("299.html")), "299");
    QDir(server.GetRoot()).mkpath(QStringLiteral("many"));
    for (int i = 0; i < 2000; ++i) {
        QFile file(server.GetRoot() + QStringLiteral("many/%1").arg(i));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    EXPECT_EQ(session->List(QStringLiteral("many")).size(), 2000u);
}

TEST_F(SftpServer, ACancelEndsATransferAtOnce)
{
    const CResourceGuard guard;
    Prepare();
    CEvent reached;
    CEndlessSource source(reached);
    std::thread cancelling([&] {
        reached.Wait(std::chrono::seconds(60));
        setting.abortEvent->Set();
    });
    EXPECT_EQ(Thrown([&] { Open()->Send(source, QStringLiteral("f"), {}); }),
              QString::number(EngineStatus::Aborted));
    cancelling.join();
    EXPECT_EQ(LoginResult(), QString::number(EngineStatus::Aborted));
}

TEST_F(SftpServer, ASilentConnectionEndsEveryOperation)
{
    const CResourceGuard guard;
    Prepare();
    CCuttingProxy proxy(server.GetPort());
    setting.destination.port = proxy.GetPort();
    setting.destination.fingerprint = QCryptographicHash::hash(
        QByteArray::fromBase64(server.GetHostKey().split(' ').value(1)), QCryptographicHash::Sha256);
    setting.timeouts.reply = std::chrono::milliseconds(500);
    const auto session = Open();
    proxy.isSilent = true;
    EXPECT_EQ(Thrown([&] { session->KeepAlive(); }), QString::number(EngineStatus::TimedOut));
    EXPECT_EQ(LoginResult(), QString::number(EngineStatus::TimedOut));
}

// Cut after any number of the server's bytes, in the handshake, the login or whatever follows.
TEST_F(SftpServer, ABrokenConnectionIsAFailureOfTheNetworkWhereverItBreaks)
{
    const CResourceGuard guard;
    Prepare();
    CCuttingProxy proxy(server.GetPort());
    setting.destination.port = proxy.GetPort();
    setting.destination.fingerprint = QCryptographicHash::hash(
        QByteArray::fromBase64(server.GetHostKey().split(' ').value(1)), QCryptographicHash::Sha256);
    const auto doAll = [&] {
        const auto session = Open();
        session->MakeDirectory(QStringLiteral("d"));
        Send(*session, QStringLiteral("d/f"), Pattern(200'000));
        session->List(QStringLiteral("d"));
        session->Rename(QStringLiteral("d/f"), QStringLiteral("d/g"));
        session->Read(QStringLiteral("d/g"), 300'000);
        session->RemoveFile(QStringLiteral("d/g"));
    };
    EXPECT_EQ(Thrown(doAll), QString());
    const int64_t all = proxy.bytesCarried;
    EXPECT_GT(all, 200'000);
    constexpr int cuts = 60;
    for (int cut = 0; cut < cuts; ++cut) {
        // Close together at the start, where every byte is another step.
        proxy.bytesToCut =
            cut < cuts / 2 ? 1 + cut * 150 : 5000 + (all - 5000) * (cut - cuts / 2) / (cuts / 2);
        EXPECT_EQ(Thrown(doAll), QString::number(EngineStatus::ConnectionReset)) << proxy.bytesToCut;
    }
    proxy.bytesToCut = INT64_MAX;
    EXPECT_EQ(Thrown(doAll), QString());
}

TEST_F(SftpServer, AServerOfSomethingElseIsNoServerOfSftp)
{
    CScriptedServer ftp;
    ftp.Start();
    setting.destination.port = ftp.GetPort();
    setting.timeouts.reply = std::chrono::milliseconds(500);
    const QString result = LoginResult();
    EXPECT_TRUE(result == QString::number(EngineStatus::TimedOut) ||
                result == QString::number(EngineStatus::TlsFailed) ||
                result == QString::number(EngineStatus::ConnectionReset))
        << qPrintable(result);
    ftp.Stop();
}
