#include "support/SshServer.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

#include "common/Text.h"
#include "support/ProcessTree.h"
#include "support/ScriptedServer.h"

namespace {

const QString Programs = QStringLiteral(FTP_SERVERS_FOLDER "/openssh-server/usr/");

// The user who is logged in, if the administrator runs the tests.
constexpr unsigned nobody = 65534;

bool IsAdministrator()
{
    return ::geteuid() == 0;
}

QString UserName()
{
    const passwd* const user = ::getpwuid(IsAdministrator() ? nobody : ::geteuid());
    return user ? QString::fromLocal8Bit(user->pw_name) : QString();
}

void SetMode(const QString& path, mode_t mode)
{
    EXPECT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0) << qPrintable(path);
}

bool CanConnect(uint16_t port)
{
    CSocket socket;
    return socket.Create() == 0 && socket.Connect(LoopbackAddress(port), std::chrono::seconds(1)) == 0;
}

} // namespace

CSshServer::CSshServer(const QString& more) : more(more)
{
    if (!QFile::exists(Programs + QStringLiteral("sbin/sshd"))) {
        problem = QStringLiteral("There is no sshd below %1").arg(Programs);
        return;
    }
    SetMode(scratch.Path(), S_IRWXU | S_IXGRP | S_IXOTH);
    QDir().mkpath(GetRoot());
    GiveToUser(GetRoot());
    GiveToUser(MakeKey(QStringLiteral("hostkey"), {QStringLiteral("-t"), QStringLiteral("ed25519")}, {}));
    SetMode(scratch.Write(QStringLiteral("authorized_keys"), {}), 0644);
    // Its folder may be closed to that user.
    CopyProgram(QStringLiteral("sbin/sshd"));
    CopyProgram(QStringLiteral("lib/openssh/sshd-session"));
    CopyProgram(QStringLiteral("lib/openssh/sshd-auth"));
    // Another program may take the port between its choice and the server's start.
    for (int attempt = 0; attempt < 5; ++attempt) {
        port = CListener().GetPort();
        WriteConfiguration();
        Start();
        if (WaitUntilItListens()) {
            problem.clear();
            return;
        }
        problem = QStringLiteral("sshd did not start: ") + Widen(process.readAll().toStdString());
    }
}

void CSshServer::Kill()
{
    KillTree(process);
}

bool CSshServer::Restart()
{
    Start();
    if (!WaitUntilItListens()) {
        problem = Widen(process.readAll().toStdString());
    }
    return problem.isEmpty();
}

CSshServer::~CSshServer()
{
    process.terminate();
    if (!process.waitForFinished(5'000)) {
        process.kill();
        process.waitForFinished(5'000);
    }
}

FTPDestinationConnection CSshServer::GetDestination() const
{
    FTPDestinationConnection destination;
    destination.userName = UserName();
    destination.server = QStringLiteral("127.0.0.1");
    destination.port = port;
    destination.protocol = ServerProtocol::Sftp;
    return destination;
}

QByteArray CSshServer::GetHostKey() const
{
    const QByteArrayList fields = scratch.Read(QStringLiteral("hostkey.pub")).split(' ');
    return fields.value(0) + ' ' + fields.value(1);
}

QByteArray CSshServer::GetKnownHostsLine() const
{
    return "[127.0.0.1]:" + QByteArray::number(port) + ' ' + GetHostKey() + '\n';
}

QString CSshServer::MakeKey(const QString& name, const QStringList& kind, const QString& passphrase) const
{
    const QString path = scratch.Path(name);
    const QStringList arguments{QStringLiteral("-q"), QStringLiteral("-N"), passphrase, QStringLiteral("-f"),
                                path};
    EXPECT_EQ(QProcess::execute(QStringLiteral("ssh-keygen"), arguments + kind), 0);
    return path;
}

void CSshServer::Authorise(const QString& keyFile) const
{
    QFile key(keyFile + QStringLiteral(".pub"));
    EXPECT_TRUE(key.open(QIODevice::ReadOnly));
    QFile keys(scratch.Path(QStringLiteral("authorized_keys")));
    EXPECT_TRUE(keys.open(QIODevice::Append));
    keys.write(key.readAll());
}

void CSshServer::GiveToUser(const QString& path) const
{
    if (IsAdministrator()) {
        EXPECT_EQ(::chown(QFile::encodeName(path).constData(), nobody, nobody), 0) << qPrintable(path);
    }
}

void CSshServer::CopyProgram(const QString& name) const
{
    const QString copy = scratch.Path(QFileInfo(name).fileName());
    if (QFile::copy(Programs + name, copy)) {
        SetMode(copy, 0755);
    }
}

void CSshServer::WriteConfiguration() const
{
    const QString own = scratch.Path();
    // Without PAM the server takes a user whom no password lets in for locked, and refuses his keys, too.
    QString lines =
        QStringLiteral("Port %1\nListenAddress 127.0.0.1\nPidFile none\nStrictModes no\nUsePAM yes\n"
                       "UseDNS no\nPasswordAuthentication no\nKbdInteractiveAuthentication no\n"
                       "HostKey %2hostkey\nAuthorizedKeysFile %2authorized_keys\n"
                       "Subsystem sftp internal-sftp -u 022 -d %2root\n")
            .arg(QString::number(port), own);
    // From version 9.8 on; the option of another version would be refused.
    if (QFile::exists(own + QStringLiteral("sshd-session"))) {
        lines += QStringLiteral("SshdSessionPath %1sshd-session\nPerSourcePenalties no\n").arg(own);
    }
    if (QFile::exists(own + QStringLiteral("sshd-auth"))) {
        lines += QStringLiteral("SshdAuthPath %1sshd-auth\n").arg(own);
    }
    SetMode(scratch.Write(QStringLiteral("server.conf"), (lines + more).toUtf8()), 0644);
}

void CSshServer::Start()
{
    if (IsAdministrator()) {
        process.setChildProcessModifier([] {
            if (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0) {
                ::_exit(1);
            }
        });
    }
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(scratch.Path(QStringLiteral("sshd")),
                  {QStringLiteral("-D"), QStringLiteral("-e"), QStringLiteral("-f"),
                   scratch.Path(QStringLiteral("server.conf"))});
}

// A server tells nobody when it listens, so it is asked again and again until it answers or has ended.
bool CSshServer::WaitUntilItListens()
{
    if (!process.waitForStarted()) {
        return false;
    }
    const QDeadlineTimer patience(20'000);
    while (!patience.hasExpired()) {
        if (CanConnect(port)) {
            return true;
        }
        if (process.waitForFinished(20)) {
            return false;
        }
    }
    process.kill();
    process.waitForFinished();
    return false;
}
