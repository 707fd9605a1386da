#pragma once

#include <optional>

#include "common/Exceptions.h"
#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/session/ServerIdentity.h"

// The server's identity is in question, or its protection: a person has to decide about it.
bool IsServerDoubt(int status);

// What is in doubt, why, and what to give at the command line to go on. status: one of those. identity: what
// the server has shown.
CGenericException DescribeServerDoubt(const FTPDestinationConnection& connection, int status,
                                      const std::optional<ServerIdentity>& identity);

// Tells on standard error of a connection in clear that leaves this machine.
void WarnUnlessProtected(const FTPDestinationConnection& connection);
