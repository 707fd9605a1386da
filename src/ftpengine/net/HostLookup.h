#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include <QString>

#include "ftpengine/net/Socket.h"

class CEvent;

// All addresses of a host, the resolver's best first, with the port; never none. The name is looked up on a
// thread of its own, since the resolver can't be interrupted: when the abort event is signalled (995) or the
// time-out is over (11002) that thread is abandoned, and ends when the resolver does. Throws an int: 11001
// for an unknown host.
std::vector<SocketAddress> LookUpHost(const QString& host, uint16_t port, std::chrono::milliseconds timeout,
                                      const CEvent& abortEvent);
