#include "ServerSites.h"

#include <QCryptographicHash>
#include <QFile>
#include <gtest/gtest.h>

#include "Site.h"

namespace {

FTPServerKind KindOfFTPServer(CProtectedServer::Kind kind)
{
    switch (kind) {
    case CProtectedServer::Kind::Vsftpd:
        return FTPServerKind::Vsftpd;
    case CProtectedServer::Kind::ProFtpd:
        return FTPServerKind::ProFtpd;
    case CProtectedServer::Kind::PureFtpd:
    case CProtectedServer::Kind::Sshd:
        break;
    }
    return FTPServerKind::PureFtpd;
}

} // namespace

QString WriteTree(const CProgram& program)
{
    const QByteArray picture =
        program.scratch.Read(QStringLiteral("photos/") +
                             program.WritePicture(QStringLiteral("a.jpg")).section(QLatin1Char('/'), -1));
    for (const QString& name :
         {QStringLiteral("two words.jpg"), QStringLiteral("Gr\u00fc\u00dfe aus K\u00f6ln.jpg"),
          QStringLiteral("sea/it's #1.jpg"), QStringLiteral("sea/deep/100%.jpg"),
          QStringLiteral("hills/\u96ea.jpg")}) {
        program.scratch.Write(QStringLiteral("photos/") + name, picture);
    }
    QString project = program.Path(QStringLiteral("trip.gallery"));
    const ProgramResult made = program.Run(
        {QStringLiteral("new"), project, QStringLiteral("--tree"), program.Path(QStringLiteral("photos"))});
    EXPECT_EQ(made.exitCode, 0) << qPrintable(made.errors);
    return project;
}

QStringList PublishedIn(const QString& folder)
{
    QStringList files = CSite(folder).GetFiles();
    files.removeIf([](const QString& file) { return file.startsWith(QStringLiteral(".vistorama/")); });
    return files;
}

void ExpectSameTree(const QString& uploaded, const QString& written)
{
    const QStringList files = CSite(written).GetFiles();
    EXPECT_GT(files.size(), 10);
    EXPECT_EQ(PublishedIn(uploaded), files);
    for (const QString& file : files) {
        QFile one(uploaded + QLatin1Char('/') + file);
        QFile other(written + QLatin1Char('/') + file);
        ASSERT_TRUE(one.open(QIODevice::ReadOnly)) << qPrintable(file);
        ASSERT_TRUE(other.open(QIODevice::ReadOnly)) << qPrintable(file);
        EXPECT_EQ(one.readAll(), other.readAll()) << qPrintable(file);
    }
}

CProtectedServer::CProtectedServer(Kind kind) : kind(kind)
{
    if (kind != Kind::Sshd) {
        ftp = std::make_unique<CFTPServer>(KindOfFTPServer(kind), FTPServerSecurity::TlsOnly);
        return;
    }
    ssh = std::make_unique<CSshServer>();
    if (ssh->GetProblem().isEmpty()) {
        keyFile = ssh->MakeKey(QStringLiteral("key"), {QStringLiteral("-t"), QStringLiteral("ed25519")}, {});
        ssh->Authorise(keyFile);
    }
}

QString CProtectedServer::GetAddress(const QString& directory) const
{
    const QString user = ssh ? ssh->GetDestination().userName : ftp->GetUser();
    // The login's folder of sshd is that of the user who runs the tests.
    const QString from = ssh ? ssh->GetRoot() : QString();
    return QStringLiteral("%1://%2@127.0.0.1:%3/%4%5")
        .arg(ssh ? QStringLiteral("sftp") : QStringLiteral("ftpes"), user)
        .arg(ssh ? ssh->GetPort() : ftp->GetPort())
        .arg(from, directory);
}

QStringList CProtectedServer::GetLoginOptions() const
{
    return ssh ? QStringList{QStringLiteral("--identity"), keyFile} : QStringList();
}

QString CProtectedServer::GetFingerprint() const
{
    QByteArray hash;
    if (ssh) {
        const QByteArray blob = QByteArray::fromBase64(ssh->GetHostKey().split(' ').value(1));
        hash = QCryptographicHash::hash(blob, QCryptographicHash::Sha256);
    } else {
        hash = ftp->GetFingerprint();
    }
    return QStringLiteral("sha256:") + QString::fromLatin1(hash.toHex());
}

void CProtectedServer::Kill()
{
    if (ssh) {
        ssh->Kill();
    } else {
        ftp->Kill();
    }
}

bool CProtectedServer::Restart()
{
    return ssh ? ssh->Restart() : ftp->Restart();
}

const char* NameOf(CProtectedServer::Kind kind)
{
    return kind == CProtectedServer::Kind::Sshd ? "sshd" : NameOf(KindOfFTPServer(kind));
}
