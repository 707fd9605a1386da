#pragma once

#include <memory>

#include "Program.h"
#include "support/FTPServer.h"
#include "support/SshServer.h"

// What the tests of deployments to real servers have in common.

// A project of several folders, with names that need care on a wire. Returns its path.
QString WriteTree(const CProgram& program);

// The files of a site in a folder, without what the program notes there for itself.
QStringList PublishedIn(const QString& folder);

// Byte for byte.
void ExpectSameTree(const QString& uploaded, const QString& written);

// A real server with a protected connection, whatever it speaks, and somebody who may log in.
class CProtectedServer {
public:
    enum class Kind { Vsftpd, ProFtpd, PureFtpd, Sshd };

    explicit CProtectedServer(Kind kind);

    // Why it can't run here; empty if it does.
    QString GetProblem() const { return ssh ? ssh->GetProblem() : ftp->GetProblem(); }
    // Of a directory, seen from the login's folder.
    QString GetAddress(const QString& directory) const;
    // What the program needs besides to log in.
    QStringList GetLoginOptions() const;
    QString GetPassword() const { return ftp ? ftp->GetPassword() : QString(); }
    // "sha256:...", as the program shows it.
    QString GetFingerprint() const;
    QString GetRoot() const { return ssh ? ssh->GetRoot() : ftp->GetRoot(); }
    // As the servers do.
    void Kill();
    bool Restart();
    // Everybody who has a name may log in there with any password.
    bool TakesAnyPassword() const { return kind == Kind::Vsftpd || kind == Kind::Sshd; }

private:
    const Kind kind;
    std::unique_ptr<CFTPServer> ftp;
    std::unique_ptr<CSshServer> ssh;
    QString keyFile;
};

const char* NameOf(CProtectedServer::Kind kind);
