#pragma once

#include <QProcess>
#include <QString>

#include "support/ScratchFolder.h"

// The FTP servers that ./test brings.
enum class FTPServerKind { Vsftpd, ProFtpd, PureFtpd };

// Clear: TLS is offered by none. TlsOnly: it is demanded for both connections, data connections have to
// resume the session of the control connection where the server knows how to ask for that, and the
// certificate is one that the server has signed itself.
enum class FTPServerSecurity { Clear, TlsOnly };

// A real FTP server on a free port of the loopback interface, with a configuration, a user and a root folder
// of its own. Runs as long as the object lives.
class CFTPServer {
public:
    explicit CFTPServer(FTPServerKind kind, FTPServerSecurity security = FTPServerSecurity::Clear);
    ~CFTPServer();
    CFTPServer(const CFTPServer&) = delete;
    CFTPServer& operator=(const CFTPServer&) = delete;

    // Why the server can't run here; empty if it does.
    const QString& GetProblem() const { return problem; }

    // Ends it as a power cut would, in the middle of whatever it does for its clients, and starts it again:
    // the same port, user and files. False, with a problem, if it doesn't start.
    void Kill();
    bool Restart();

    uint16_t GetPort() const { return port; }
    QString GetUser() const;
    // Holds what must not stand in an address as it is. Empty for a server that asks for none.
    QString GetPassword() const;
    // "ftp://USER@127.0.0.1:PORT".
    QString GetAddress() const;
    // Of the certificate, SHA-256; empty in clear.
    QByteArray GetFingerprint() const { return fingerprint; }
    // The login's folder on disk, with a trailing separator.
    QString GetRoot() const { return scratch.Path(QStringLiteral("root/")); }

private:
    void WriteConfiguration();
    void WriteCertificate();
    QString WriteVsftpdConfiguration() const;
    QString WriteProFtpdConfiguration() const;
    void WritePureFtpdUsers();
    void Start();
    bool WaitUntilItListens();
    QString RunHelper(const QString& program, const QStringList& arguments) const;

    const FTPServerKind kind;
    const bool hasTls;
    QByteArray fingerprint;
    const CScratchFolder scratch;
    uint16_t port = 0;
    QString problem;
    QProcess process;
};

// Names a kind in the names of tests.
const char* NameOf(FTPServerKind kind);
