#pragma once

#include <cstdint>

#include <QByteArray>
#include <QString>

#include "ftpengine/secrets/SecretText.h"

// How a server is spoken to.
enum class ServerProtocol {
    Ftp,            // in clear (RFC 959)
    FtpTls,         // TLS by AUTH TLS (RFC 4217)
    FtpImplicitTls, // TLS from the first byte on, as old servers want it on port 990
    Sftp,           // over SSH, version 3 of the protocol
};

// The port that servers listen on unless told otherwise: 21, 990, 22.
constexpr uint16_t DefaultPortOf(ServerProtocol protocol)
{
    switch (protocol) {
    case ServerProtocol::Ftp:
    case ServerProtocol::FtpTls:
        return 21;
    case ServerProtocol::FtpImplicitTls:
        return 990;
    case ServerProtocol::Sftp:
        return 22;
    }
    return 0;
}

// Where to connect and as whom. A plain record; tasks work on a copy of their own.
struct FTPDestinationConnection {
    QString displayName;
    QString userName;
    CSecretText password;
    QString server;    // a host name or a dotted address
    QString directory; // on the server, "/" between its names as the server wants; empty: the login's own
    uint16_t port = 21;
    ServerProtocol protocol = ServerProtocol::Ftp;
    QString identityFile = {};   // SFTP: a key file to log in with; empty: the agent's and the user's own
    QByteArray fingerprint = {}; // the only identity to be taken, SHA-256; empty: a known or trusted one
};

// A stored destination: the record and its place in the store. A plain value; changing it changes nothing in
// the store until it is saved.
struct CFTPDestination {
    FTPDestinationConnection connection;

    QString parentKeyPath; // "Corvane/FTPDestinations"
    QString keyName;       // key in decimal
    int32_t key = 0;       // 0 and -1 are no keys: -1 stands for no destination
    bool allUsers = false;
    bool loaded = false; // the store has a display name for it
};
