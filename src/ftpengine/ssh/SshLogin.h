#pragma once

#include "ftpengine/ssh/SshConnection.h"

// Logs in with what the destination has: the user's agent, key files (the destination's own alone, if it
// names one), the password, and the server's questions as far as the password answers them. Throws an int,
// and a refusal with 530 that tells what was tried and what the server takes.
void LogIn(CSshConnection& connection, const SessionSetting& setting, SessionLog& log);
