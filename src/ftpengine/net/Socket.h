#pragma once

#include <chrono>
#include <cstddef>
#include <netinet/in.h>

class CEvent;

// What a transfer that doesn't wait came to.
struct SocketResult {
    std::size_t bytes = 0;
    int error = 0; // EngineStatus.h; 0 if there was none
    bool wouldBlock = false;
};

// Owns one non-blocking IPv4 stream socket. Reports by results, so that its callers trace before they throw.
// May be received from and sent to by two threads at once; everything else needs one thread.
class CSocket {
public:
    CSocket() = default; // none
    explicit CSocket(int descriptor);
    CSocket(CSocket&& other) noexcept;
    CSocket& operator=(CSocket&& other) noexcept;
    ~CSocket();

    // 0, or the error's number.
    int Create();
    // Waits until the connection is there, or, with 995, until interrupt is signalled. NoLimit: as long as
    // the platform takes. 0, or the error's number.
    int Connect(const sockaddr_in& address, std::chrono::milliseconds timeout,
                const CEvent* interrupt = nullptr);
    void Close();

    // No bytes and no error: the peer has closed.
    SocketResult Receive(char* bytes, std::size_t size);
    // A broken connection is an error, never a signal.
    SocketResult Send(const char* bytes, std::size_t size);

    bool IsOpen() const { return descriptor >= 0; }
    int GetDescriptor() const { return descriptor; }

private:
    int descriptor = -1;
};
