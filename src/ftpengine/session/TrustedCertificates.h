#pragma once

#include <optional>

#include <QByteArray>
#include <QString>

#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/session/ServerIdentity.h"

// The certificates that a person has taken although nobody whom the system trusts vouches for them: one
// fingerprint for each server and port, in the file "certificates" of a folder. Read anew at each question,
// so that several programs may use it.
class CTrustedCertificates {
public:
    // folder: may be empty, for none, and need not be there.
    explicit CTrustedCertificates(const QString& folder) : folder(folder) {}

    // SHA-256, 32 bytes. Host names are without regard to case.
    std::optional<QByteArray> Find(const QString& server, uint16_t port) const;
    // In place of another one of that server and port. Throws CWin32Exception.
    void Remember(const ServerIdentity& identity) const;

private:
    QString GetPath() const;

    const QString folder;
};

// What remains to be doubted of a server that has shown this identity: nothing if its fingerprint is the one
// that the destination wants, which alone counts then, or was taken before.
ServerIdentity::Doubt RemainingDoubt(const ServerIdentity& identity,
                                     const FTPDestinationConnection& destination,
                                     const CTrustedCertificates& trusted);
