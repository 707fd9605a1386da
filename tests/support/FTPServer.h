#pragma once

#include <QProcess>
#include <QString>

#include "support/ScratchFolder.h"

// The FTP servers that ./test brings.
enum class FTPServerKind { Vsftpd, ProFtpd, PureFtpd };

// A real FTP server on a free port of the loopback interface, with a configuration, a user and a root folder
// of its own. Runs as long as the object lives.
class CFTPServer {
public:
    explicit CFTPServer(FTPServerKind kind);
    ~CFTPServer();
    CFTPServer(const CFTPServer&) = delete;
    CFTPServer& operator=(const CFTPServer&) = delete;

    // Why the server can't run here; empty if it does.
    const QString& GetProblem() const { return problem; }

    uint16_t GetPort() const { return port; }
    QString GetUser() const;
    // Holds what must not stand in an address as it is. Empty for a server that asks for none.
    QString GetPassword() const;
    // "ftp://USER@127.0.0.1:PORT".
    QString GetAddress() const;
    // The login's folder on disk, with a trailing separator.
    QString GetRoot() const { return scratch.Path(QStringLiteral("root/")); }

private:
    void WriteConfiguration();
    QString WriteVsftpdConfiguration() const;
    QString WriteProFtpdConfiguration() const;
    void WritePureFtpdUsers();
    void Start();
    bool WaitUntilItListens();
    QString RunHelper(const QString& program, const QStringList& arguments) const;

    const FTPServerKind kind;
    const CScratchFolder scratch;
    uint16_t port = 0;
    QString problem;
    QProcess process;
};

// Names a kind in the names of tests.
const char* NameOf(FTPServerKind kind);
