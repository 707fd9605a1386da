#pragma once

#include <optional>

#include "ftpengine/destinations/FTPDestination.h"

struct FTPUrl;

// The password for an address: its own; else that of the variable VISTORAMA_FTP_PASSWORD, even if empty;
// else, if the address names a user and standard input is a terminal, what a person types there without echo;
// else "". Nothing if the prompt was interrupted. Throws CWrongUse for a password with a line break.
std::optional<QString> FindPassword(const FTPUrl& url);

// The server that an FTP address names, with the password found for it. Nothing if the question for the
// password was interrupted. Throws CWrongUse.
std::optional<FTPDestinationConnection> FindConnection(const QString& address);
