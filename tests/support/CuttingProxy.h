#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

#include "ftpengine/net/Event.h"
#include "support/ScriptedServer.h"

// Stands between a client and a server on the loopback interface, one connection after the other, and breaks
// each when the server has sent so many bytes. On a thread of its own.
class CCuttingProxy {
public:
    explicit CCuttingProxy(uint16_t server);
    ~CCuttingProxy();
    CCuttingProxy(const CCuttingProxy&) = delete;
    CCuttingProxy& operator=(const CCuttingProxy&) = delete;

    uint16_t GetPort() const { return listener.GetPort(); }

    // Of the server's; for connections that are made from now on.
    std::atomic<int64_t> bytesToCut = INT64_MAX;
    // From here on the connection carries nothing but stays open.
    std::atomic<bool> isSilent = false;
    // What the last connection has carried from the server.
    std::atomic<int64_t> bytesCarried = 0;

private:
    void Serve(CSocket client);

    const uint16_t server;
    CListener listener;
    CEvent stop;
    std::thread thread;
};
