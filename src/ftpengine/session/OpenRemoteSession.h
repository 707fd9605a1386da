#pragma once

#include <memory>

#include "ftpengine/session/RemoteSession.h"
#include "ftpengine/session/SessionSetting.h"

// A session by the destination's protocol, with somebody logged in and the destination's directory, which has
// to be there, as the one that paths are seen from. log outlives the session; what is in it when this throws
// tells why. Throws an FTPReply for a refusal and an int: 12045 for a server that isn't trusted, 12046,
// 12047, 123, or a failure of the network.
std::unique_ptr<CRemoteSession> OpenRemoteSession(const SessionSetting& setting, SessionLog& log);
