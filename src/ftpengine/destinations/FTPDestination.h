#pragma once

#include <cstdint>

#include <QString>

#include "ftpengine/destinations/FTPDestinationConnection.h"

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
