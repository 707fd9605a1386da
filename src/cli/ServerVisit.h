#pragma once

#include <functional>

#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/session/RemoteSession.h"
#include "ftpengine/session/SessionSetting.h"

// What has come of a visit.
struct ServerVisit {
    enum class End {
        Done,
        Interrupted,    // by the person
        NetworkFailure, // status
        Refused,        // reply
    };

    End end = End::Done;
    int status = 0; // EngineStatus.h
    FTPReply reply;
    SessionLog log;
};

// Opens a session and does the work in it, on a thread of its own, while the event loop of this one, the
// program's first, waits for interrupts: the first ends the visit, the second the program. What else the work
// throws goes on to the caller.
ServerVisit VisitServer(const FTPDestinationConnection& connection,
                        const std::function<void(CRemoteSession& session)>& work);
