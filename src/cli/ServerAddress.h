#pragma once

#include <optional>

#include "ftpengine/destinations/FTPDestination.h"

// Whether an argument is meant as an FTP address and not as a folder.
bool IsFtpAddress(const QString& argument);

// The server that an FTP address names, with the password found for it. Nothing if the question for the
// password was interrupted. Throws CWrongUse.
std::optional<FTPDestinationConnection> FindConnection(const QString& address);
