#pragma once

#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/net/SocketStream.h"
#include "ftpengine/session/SessionSetting.h"

// Everything from the look-up of the server's name to the login, by FTP in clear or with TLS: connects the
// stream, which isn't open yet, protects it, makes sure that the server is the one that is meant, and only
// then sends name and password. The result is the reply to the password, or the last one.
//
// Throws an FTPReply for a refusal and an int: 12045 for a server that isn't trusted (the log has its
// identity), 12046 for one that doesn't offer TLS, 12047 for one that takes nothing else, 123 for a name or
// password that would break the line, 10043 for a protocol that isn't FTP.
FTPReply ConnectAndLogIn(const SessionSetting& setting, CSocketStream& stream, SessionLog& log);
