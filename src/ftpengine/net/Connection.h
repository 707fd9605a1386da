#pragma once

#include <memory>
#include <vector>

#include <QString>

#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/Socket.h"
#include "ftpengine/net/SocketStream.h"

// Opens the control connection to the destination's server and port, by the first of the server's addresses
// that lets it in. Ends at once, with 995, when the abort event is signalled. Throws an int.
void OpenConnection(const FTPDestinationConnection& destination, const std::shared_ptr<CEvent>& abortEvent,
                    CSocketStream& stream);

// Looks the server's name up and connects to it, for whoever speaks another protocol. The same ends and
// failures.
CSocket ConnectToServer(const QString& server, uint16_t port, const FTPTimeouts& timeouts,
                        const CEvent& abortEvent);

// Tries one address after the other, each for that long; throws the failure of the last one.
CSocket ConnectToFirst(const std::vector<SocketAddress>& addresses, std::chrono::milliseconds timeout,
                       const CEvent& abortEvent);
