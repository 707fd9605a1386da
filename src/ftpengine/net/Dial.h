#pragma once

#include <cstdint>
#include <memory>

#include <QString>

#include "ftpengine/net/Event.h"
#include "ftpengine/net/Socket.h"

// Opens a connection to a server, a name or an address of IPv4 or IPv6: all its addresses are tried in the
// resolver's order, each for at most 20 s, until one takes the connection. The look-up, which nothing can
// break, runs on a thread of its own that is abandoned when nobody waits for it any longer.
//
// Throws an int: 995 as soon as abort is signalled, what the resolver says of the name, or the failure of
// the last address.
CSocket Dial(const QString& host, uint16_t port, const std::shared_ptr<CEvent>& abort);
