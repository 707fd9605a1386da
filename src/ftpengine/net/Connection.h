#pragma once

#include <cstdint>
#include <memory>

#include <QString>

#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/SocketStream.h"

struct addrinfo;

// Opens the control connection to the destination's server and port. Takes as long as the platform takes and
// doesn't look at the abort event before the connection is there. Throws an int.
void OpenConnection(const FTPDestinationConnection& destination, const std::shared_ptr<CEvent>& abortEvent,
                    CSocketStream& stream);

// The host's IPv4 address in network order; of several, the first one only. Throws an int: 11001 for an
// unknown host.
uint32_t GetAddr(const QString& host);

// The address word of the first entry of the resolver's list.
uint32_t FirstAddress(const addrinfo& list);
