#pragma once

#include <QString>

#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/session/SessionSetting.h"

// Why a site couldn't be brought to a server. Thrown by value; a plain value.
struct SendFailure {
    enum class Kind {
        NotOpened, // no connection, no login: status or reply say why
        Network,   // the connection broke, and new ones didn't help: status
        Refused,   // the server doesn't want it, or what has arrived has another size: reply
        LocalFile, // the file of the site on this computer has changed or can't be read
    };

    Kind kind = Kind::Network;
    QString path;   // of the site, or of a directory; empty if it is about the server as a whole
    int status = 0; // EngineStatus.h
    FTPReply reply;
    SessionLog log; // of a session that couldn't be opened
};

// Thrown when the person has cancelled.
struct SendCancelled {};

// RFC 959, 5.4: the server closes the connection, or couldn't keep that of the data. Such a refusal is as
// good as a broken connection.
inline bool IsBreak(const FTPReply& reply)
{
    return reply.code == 421 || reply.code == 425 || reply.code == 426;
}
