#include "support/FTPServer.h"

#include <cerrno>
#include <cstring>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QDir>
#include <gtest/gtest.h>

#include "common/Text.h"
#include "support/ProcessTree.h"
#include "support/ScriptedServer.h"
#include "support/TlsServer.h"

namespace {

const QString ServersFolder = QStringLiteral(FTP_SERVERS_FOLDER "/");
const QString Password = QStringLiteral("ge#heim 1");
// Of the password, as crypt(3) makes it with SHA-512.
const char* const PasswordHash =
    "$6$vistorama$p0uZC4EBDojYaiG3B/xBhsVdxKsjA7yUyq89RgQojdQ0krkO25W4.2mqUczO56tcMqsArDW/37OP4fHZPCEdc1";

// A user who owns what Pure-FTPd stores: it refuses to serve the administrator.
constexpr unsigned nobody = 65534;

QString OwnUserName()
{
    const passwd* const user = ::getpwuid(::geteuid());
    return user ? QString::fromLocal8Bit(user->pw_name) : QString();
}

QString OwnGroupName()
{
    const group* const own = ::getgrgid(::getegid());
    return own ? QString::fromLocal8Bit(own->gr_name) : QString();
}

void SetMode(const QString& path, mode_t mode)
{
    EXPECT_EQ(::chmod(Narrow(path).c_str(), mode), 0) << qPrintable(path) << ": " << std::strerror(errno);
}

// The user's group has the same number.
void SetOwner(const QString& path, unsigned user)
{
    EXPECT_EQ(::chown(Narrow(path).c_str(), user, user), 0)
        << qPrintable(path) << ": " << std::strerror(errno);
}

bool CanConnect(uint16_t port)
{
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = LoopbackAddress(port);
    const bool connected =
        ::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(descriptor);
    return connected;
}

} // namespace

const char* NameOf(FTPServerKind kind)
{
    switch (kind) {
    case FTPServerKind::Vsftpd:
        return "vsftpd";
    case FTPServerKind::ProFtpd:
        return "ProFTPD";
    case FTPServerKind::PureFtpd:
        return "PureFTPd";
    }
    return "";
}

CFTPServer::CFTPServer(FTPServerKind kind, FTPServerSecurity security)
    : kind(kind), hasTls(security == FTPServerSecurity::TlsOnly)
{
    if (kind == FTPServerKind::PureFtpd && ::geteuid() != 0) {
        problem = QStringLiteral("Pure-FTPd runs for the administrator only.");
        return;
    }
    QDir().mkpath(GetRoot());
    if (hasTls) {
        WriteCertificate();
    }
    // Another program may take the port between its choice and the server's start.
    for (int attempt = 0; attempt < 5; ++attempt) {
        port = CListener().GetPort();
        WriteConfiguration();
        Start();
        if (WaitUntilItListens()) {
            problem.clear();
            return;
        }
        problem = QStringLiteral("%1 did not start: %2")
                      .arg(QLatin1String(NameOf(kind)), Widen(process.readAll().toStdString()));
    }
}

void CFTPServer::Kill()
{
    KillTree(process);
}

bool CFTPServer::Restart()
{
    Start();
    if (!WaitUntilItListens()) {
        problem = Widen(process.readAll().toStdString());
    }
    return problem.isEmpty();
}

CFTPServer::~CFTPServer()
{
    process.terminate();
    if (!process.waitForFinished(5'000)) {
        process.kill();
        process.waitForFinished(5'000);
    }
}

QString CFTPServer::GetUser() const
{
    return kind == FTPServerKind::Vsftpd ? QStringLiteral("anonymous") : QStringLiteral("photo");
}

QString CFTPServer::GetPassword() const
{
    return kind == FTPServerKind::Vsftpd ? QString() : Password;
}

QString CFTPServer::GetAddress() const
{
    return QStringLiteral("ftp://%1@127.0.0.1:%2").arg(GetUser()).arg(port);
}

void CFTPServer::WriteCertificate()
{
    const CTestCertificate certificate;
    fingerprint = certificate.GetFingerprint();
    SetMode(scratch.Write(QStringLiteral("server.pem"), certificate.GetPem()), S_IRUSR | S_IWUSR);
}

void CFTPServer::WriteConfiguration()
{
    switch (kind) {
    case FTPServerKind::Vsftpd:
        scratch.Write(QStringLiteral("server.conf"), Narrow(WriteVsftpdConfiguration()).c_str());
        break;
    case FTPServerKind::ProFtpd: {
        const QString user = QStringLiteral("photo:%1:%2:%3::%4:/bin/sh\n")
                                 .arg(QLatin1String(PasswordHash))
                                 .arg(::geteuid())
                                 .arg(::getegid())
                                 .arg(GetRoot());
        const QString users = scratch.Write(QStringLiteral("users"), Narrow(user).c_str());
        SetMode(users, S_IRUSR | S_IWUSR);
        scratch.Write(QStringLiteral("server.conf"), Narrow(WriteProFtpdConfiguration()).c_str());
        break;
    }
    case FTPServerKind::PureFtpd:
        WritePureFtpdUsers();
        break;
    }
}

QString CFTPServer::WriteVsftpdConfiguration() const
{
    const QString tls = QStringLiteral("ssl_enable=YES\nallow_anon_ssl=YES\nforce_anon_logins_ssl=YES\n"
                                       "force_anon_data_ssl=YES\nrequire_ssl_reuse=YES\n"
                                       "strict_ssl_read_eof=YES\nrsa_cert_file=%1\n")
                            .arg(scratch.Path(QStringLiteral("server.pem")));
    return QStringLiteral("listen=YES\nlisten_address=127.0.0.1\nlisten_port=%1\nbackground=NO\n"
                          "anonymous_enable=YES\nlocal_enable=NO\nwrite_enable=YES\n"
                          "anon_upload_enable=YES\nanon_mkdir_write_enable=YES\nanon_other_write_enable=YES\n"
                          "anon_umask=022\nanon_root=%2\nrun_as_launching_user=YES\nftp_username=%3\n"
                          "secure_chroot_dir=%2\nxferlog_enable=NO\nseccomp_sandbox=NO\n")
               .arg(port)
               .arg(GetRoot(), OwnUserName()) +
           (hasTls ? tls : QString());
}

QString CFTPServer::WriteProFtpdConfiguration() const
{
    // That the session has to be resumed is the server's own rule.
    const QString tls = QStringLiteral("LoadModule mod_tls.c\nTLSEngine on\nTLSRequired on\n"
                                       "TLSRSACertificateFile %1\nTLSRSACertificateKeyFile %1\n"
                                       "TLSVerifyClient off\n")
                            .arg(scratch.Path(QStringLiteral("server.pem")));
    return QStringLiteral("ServerType standalone\nDefaultAddress 127.0.0.1\nSocketBindTight on\nPort %1\n"
                          "UseIPv6 off\nUser %2\nGroup %3\nModulePath %4proftpd-core/usr/lib/proftpd\n"
                          // Transfers and listings: part of the program, or modules from Debian 13 on.
                          "<IfModule !mod_xfer.c>\nLoadModule mod_xfer.c\n</IfModule>\n"
                          "<IfModule !mod_ls.c>\nLoadModule mod_ls.c\n</IfModule>\n"
                          "AuthOrder mod_auth_file.c\nAuthUserFile %5users\nRequireValidShell off\n"
                          "RootLogin on\nUseFtpUsers off\nWtmpLog off\nPidFile %5pid\nScoreboardFile none\n"
                          "<IfModule mod_delay.c>\nDelayEngine off\n</IfModule>\n"
                          "<IfModule mod_ctrls.c>\nControlsEngine off\n</IfModule>\n"
                          "UseReverseDNS off\nSystemLog %5log\nTransferLog none\n"
                          "<Global>\nAllowOverwrite on\n</Global>\n")
               .arg(port)
               .arg(OwnUserName(), OwnGroupName(), ServersFolder, scratch.Path(QString())) +
           (hasTls ? tls : QString());
}

void CFTPServer::WritePureFtpdUsers()
{
    SetMode(scratch.Path(QString()), S_IRWXU | S_IXGRP | S_IXOTH);
    SetOwner(GetRoot(), nobody);
    const QString user = QStringLiteral("photo:%1:%2:%2::%3./::::::::::::\n")
                             .arg(QLatin1String(PasswordHash))
                             .arg(nobody)
                             .arg(GetRoot());
    scratch.Write(QStringLiteral("users"), Narrow(user).c_str());
    RunHelper(QStringLiteral("pure-ftpd/usr/bin/pure-pw"),
              {QStringLiteral("mkdb"), scratch.Path(QStringLiteral("users.pdb")), QStringLiteral("-f"),
               scratch.Path(QStringLiteral("users"))});
}

void CFTPServer::Start()
{
    process.setProcessChannelMode(QProcess::MergedChannels);
    const QString configuration = scratch.Path(QStringLiteral("server.conf"));
    switch (kind) {
    case FTPServerKind::Vsftpd:
        process.start(ServersFolder + QStringLiteral("vsftpd/usr/sbin/vsftpd"), {configuration});
        break;
    case FTPServerKind::ProFtpd:
        process.start(ServersFolder + QStringLiteral("proftpd-core/usr/sbin/proftpd"),
                      {QStringLiteral("-n"), QStringLiteral("-c"), configuration});
        break;
    case FTPServerKind::PureFtpd:
        process.start(ServersFolder + QStringLiteral("pure-ftpd/usr/sbin/pure-ftpd"),
                      QStringList{QStringLiteral("-l"),
                                  QStringLiteral("puredb:") + scratch.Path(QStringLiteral("users.pdb")),
                                  QStringLiteral("-S"), QStringLiteral("127.0.0.1,%1").arg(port),
                                  QStringLiteral("-u"), QStringLiteral("1"), QStringLiteral("-H"),
                                  QStringLiteral("-g"), scratch.Path(QStringLiteral("pid"))} +
                          (hasTls ? QStringList{QStringLiteral("--tls=3"),
                                                QStringLiteral("--certfile=") +
                                                    scratch.Path(QStringLiteral("server.pem"))}
                                  : QStringList()));
        break;
    }
}

// A server tells nobody when it listens, so it is asked again and again until it answers or has ended.
bool CFTPServer::WaitUntilItListens()
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

QString CFTPServer::RunHelper(const QString& program, const QStringList& arguments) const
{
    QProcess helper;
    helper.setProcessChannelMode(QProcess::MergedChannels);
    helper.start(ServersFolder + program, arguments);
    helper.waitForFinished();
    return Widen(helper.readAll().toStdString());
}
