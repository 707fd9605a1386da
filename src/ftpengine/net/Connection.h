#pragma once

#include <memory>
#include <vector>

#include <QString>

#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/FTPTimeouts.h"
#include "ftpengine/net/Socket.h"
#include "ftpengine/net/SocketStream.h"

// Connects to the destination's server and port, by the first of the server's addresses that lets it in. Ends
// at once, with 995, when the abort event is signalled. Throws an int: what the resolver says of the name, or
// the failure of the last address.
CSocket ConnectToServer(const FTPDestinationConnection& destination, const FTPTimeouts& timeouts,
                        const CEvent& abortEvent);

// Opens the control connection in that way.
void OpenConnection(const FTPDestinationConnection& destination, const std::shared_ptr<CEvent>& abortEvent,
                    CSocketStream& stream);

// Tries one address after the other, each for that long; throws the failure of the last one.
CSocket ConnectToFirst(const std::vector<SocketAddress>& addresses, std::chrono::milliseconds timeout,
                       const CEvent& abortEvent);
