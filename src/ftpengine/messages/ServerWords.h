#pragma once

#include <QString>

#include "ftpengine/messages/FTPReply.h"

// What a server says, made fit for a person's screen or terminal: without control characters, which a
// terminal would obey, and without characters that turn the direction of writing, which make a text look like
// another one. Line ends become "\n", none stands at the end; a tab becomes a blank. For everything that a
// server has chosen: replies, names in listings, the names in its certificate.
QString CleanServerWords(const QString& words);

// The server takes no login or no transfer without TLS: it says so, or its number does (RFC 2228, RFC 4217).
bool DemandsTls(const FTPReply& refusal);
