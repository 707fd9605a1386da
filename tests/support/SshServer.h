#pragma once

#include <QProcess>
#include <QString>

#include "ftpengine/destinations/FTPDestination.h"
#include "support/ScratchFolder.h"

// A real server of SSH with SFTP, the one of OpenSSH that ./test brings, on a free port of the loopback
// interface, with a host key and a root folder of its own; it knows no passwords. Started by the
// administrator, it runs as the user "nobody", so that rights of files count. Runs as long as the object
// lives.
class CSshServer {
public:
    // more: lines of its configuration, each with its end.
    explicit CSshServer(const QString& more = {});
    ~CSshServer();
    CSshServer(const CSshServer&) = delete;
    CSshServer& operator=(const CSshServer&) = delete;

    // Why the server can't run here; empty if it does.
    const QString& GetProblem() const { return problem; }

    // Ends it as a power cut would, in the middle of whatever it does for its clients, and starts it again:
    // the same port, user and files. False, with a problem, if it doesn't start.
    void Kill();
    bool Restart();

    uint16_t GetPort() const { return port; }
    // The login's folder on disk, with a trailing separator.
    QString GetRoot() const { return scratch.Path(QStringLiteral("root/")); }
    // Without a password and a key.
    FTPDestinationConnection GetDestination() const;
    // "ssh-ed25519 AAAA...", as known_hosts has it after the name.
    QByteArray GetHostKey() const;
    // The line of a known_hosts file about this server.
    QByteArray GetKnownHostsLine() const;

    // Makes a key file by ssh-keygen ("-t rsa -b 2048"), with a passphrase unless it is empty. Returns its
    // path.
    QString MakeKey(const QString& name, const QStringList& kind, const QString& passphrase) const;
    // Lets everybody in who has the key.
    void Authorise(const QString& keyFile) const;
    // Makes what a test has put below the root the user's who is logged in.
    void GiveToUser(const QString& path) const;

private:
    void WriteConfiguration() const;
    void CopyProgram(const QString& name) const;
    void Start();
    bool WaitUntilItListens();

    const CScratchFolder scratch;
    const QString more;
    uint16_t port = 0;
    QString problem;
    QProcess process;
};
