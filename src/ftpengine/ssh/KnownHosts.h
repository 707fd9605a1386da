#pragma once

#include <vector>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "ftpengine/session/ServerIdentity.h"

// The keys of servers that are known: the user's own and the system's, which other programs keep and this one
// only reads, and those that a person has taken in this program. All are files in the form that sshd(8)
// describes under "SSH_KNOWN_HOSTS FILE FORMAT". Thread-safe.

struct KnownHostKey {
    QByteArray blob;        // RFC 4253, 6.6
    bool isRevoked = false; // never to be taken again
};

// The keys of a server in the bytes of such a file: by name or hashed name, with patterns, for another port
// than 22 as "[host]:port". Lines for authorities that sign keys are passed over.
std::vector<KnownHostKey> FindKnownHostKeys(const QByteArray& file, const QString& server, uint16_t port);

// "~/.ssh/known_hosts", "/etc/ssh/ssh_known_hosts" and the trust folder's own, as far as they are there.
std::vector<KnownHostKey> FindKnownHostKeys(const QString& trustFolder, const QString& server, uint16_t port);

// None: the key is one of them. Changed: others are known for that server, or this one is revoked.
// UnknownAuthority: none is known.
ServerIdentity::Doubt JudgeHostKey(const std::vector<KnownHostKey>& known, const QByteArray& blob);

// "ssh-ed25519": the kind that stands at the head of a key's blob. Empty if there is none.
QByteArray KindOfHostKey(const QByteArray& blob);

// Keeps the identity's host key as the only one that the trust folder has for that server. False if the file
// can't be written.
bool RememberHostKey(const QString& trustFolder, const ServerIdentity& identity);
