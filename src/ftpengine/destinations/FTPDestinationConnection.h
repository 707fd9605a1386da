#pragma once

#include <cstdint>

#include <QString>

// Where to connect and as whom. A plain record; tasks work on a copy of their own.
struct FTPDestinationConnection {
    QString displayName;
    QString userName;
    QString password; // in clear
    QString server;   // a host name or a dotted address
    QString
        directory; // on the server, with "/" between its names as the server wants; empty: the login's own
    uint16_t port = 21;
};
