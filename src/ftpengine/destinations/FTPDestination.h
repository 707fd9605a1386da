#pragma once

#include <cstdint>

#include <QString>

// Where to connect and as whom. A plain record; tasks work on a copy of their own.
struct FTPDestinationConnection {
    QString displayName;
    QString userName;
    QString password;  // in clear
    QString server;    // a host name or a dotted address
    QString directory; // on the server, "/" between its names as the server wants; empty: the login's own
    uint16_t port = 21;
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
