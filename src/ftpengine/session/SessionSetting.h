#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QString>

#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/FTPTimeouts.h"
#include "ftpengine/session/ServerIdentity.h"

// What a session is opened with. A value.
struct SessionSetting {
    FTPDestinationConnection destination;
    FTPTimeouts timeouts;
    std::shared_ptr<CEvent> abortEvent; // breaks every wait of the session; never null
    // Of the identities that a person has taken: "certificates" and "known_hosts" are files in it. Empty: no
    // server is known, only those that prove themselves are taken.
    QString trustFolder;
};

// What a session leaves behind, also one that could not be opened. Owned by whoever opens it; outlives it.
struct SessionLog {
    std::vector<QString> transcript;        // each command and each reply in order, without secrets
    std::optional<ServerIdentity> identity; // as soon as the server has shown one
};
