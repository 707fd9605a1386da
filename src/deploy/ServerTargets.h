#pragma once

#include "deploy/Deployment.h"
#include "ftpengine/session/SessionSetting.h"

// Opens a session, on any thread. Throws as OpenRemoteSession does, which it is outside of tests.
using RemoteSessionOpener =
    std::function<std::unique_ptr<CRemoteSession>(const SessionSetting& setting, SessionLog& log)>;

// How a deployment reaches a server.
struct ServerAccess {
    FTPTimeouts timeouts = {};
    QString trustFolder = {}; // SessionSetting.h
    size_t mostSessions = 4;
    RemoteSessionOpener open = {}; // empty: OpenRemoteSession
};

// The directory of the destination as the place of a site. Sessions are opened where the login leads, since
// the directory may still have to be made.
ServerTarget MakeServerTarget(const FTPDestinationConnection& destination, const ServerAccess& access);

// "sftp://ann@example.org:22": a server and who is logged in, without a password.
QString NameServer(const FTPDestinationConnection& destination);
