#pragma once

#include <cstdint>

#include <QByteArray>
#include <QString>

// How a server shows who it is: by its certificate, or by its host key. A plain value.
struct ServerIdentity {
    // Why the identity alone doesn't prove that this is the server that is meant.
    enum class Doubt {
        None,
        UnknownAuthority, // a certificate that nobody whom the system trusts has signed, or an unknown host
                          // key
        OtherName,        // a certificate for another server
        Expired,          // or not valid yet
        Changed,          // the server has shown another identity before
    };

    QString server;
    uint16_t port = 0;
    QByteArray fingerprint; // SHA-256 of the certificate, or of the host key's blob (RFC 4253, 6.6); 32 bytes
    QString subject;        // the certificate's names, or the kind of the host key; cleaned for people
    QString issuer;         // empty for a host key
    Doubt doubt = Doubt::None;
    QByteArray hostKey; // the host key's blob, which is what gets remembered; empty for a certificate

    // "sha256:0123abcd...", the form that the programs print and read.
    QString FormatFingerprint() const
    {
        return QStringLiteral("sha256:") + QString::fromLatin1(fingerprint.toHex());
    }
};
