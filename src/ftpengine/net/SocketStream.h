#pragma once

#include <chrono>
#include <memory>
#include <string_view>

#include "ftpengine/net/Event.h"
#include "ftpengine/net/FTPTimeouts.h"
#include "ftpengine/net/Socket.h"
#include "ftpengine/net/SocketBuffer.h"
#include "ftpengine/net/ThreadDriver.h"

class CSocketReader;

// A control connection: blocking operations with time-outs, broken by an abort event. Serves one task, which
// owns it and uses it on one thread; a reader thread of its own reads ahead. The destructor closes the
// connection.
class CSocketStream {
public:
    explicit CSocketStream(const FTPTimeouts& timeouts = {});
    ~CSocketStream();
    CSocketStream(const CSocketStream&) = delete;
    CSocketStream& operator=(const CSocketStream&) = delete;

    // Takes a connected socket and starts the reader. To be called once. Throws an int if there is no thread
    // left.
    void Open(CSocket connected, const std::shared_ptr<CEvent>& abortEvent);

    // Returns when the platform has taken all bytes. Throws an int: 10060 after the time-out, 995 if aborted
    // while it waits, or the connection's failure.
    void Send(std::chrono::milliseconds timeout, std::string_view bytes);

    // The oldest chunk; an empty one once when the peer has closed. Throws as Send does; a chunk that is
    // there goes before an abort, and a failure before all chunks.
    void Receive(std::chrono::milliseconds timeout, CSocketBuffer& chunk);

    // For those who speak on this stream.
    const FTPTimeouts& GetTimeouts() const { return timeouts; }

private:
    const FTPTimeouts timeouts;
    CThreadDriver driver;
    std::shared_ptr<CSocketReader> reader; // none before Open
    std::shared_ptr<CEvent> abortEvent;    // the task's
};
