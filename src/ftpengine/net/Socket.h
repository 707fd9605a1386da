#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>

class CEvent;

// Where a server listens: an address of IPv4 or IPv6, and a port. A value.
struct SocketAddress {
    SocketAddress() = default;
    SocketAddress(const sockaddr* address, socklen_t size);
    SocketAddress(
        const sockaddr_in& address); // NOLINT(google-explicit-constructor): the same in another form

    int GetFamily() const { return storage.ss_family; }
    uint16_t GetPort() const;
    void SetPort(uint16_t port);
    const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&storage); }

    sockaddr_storage storage{};
    socklen_t size = 0;
};

// What a transfer that doesn't wait came to.
struct SocketResult {
    std::size_t bytes = 0;
    int error = 0; // EngineStatus.h; 0 if there was none
    bool wouldBlock = false;
};

// Owns one non-blocking stream socket. Reports by results, so that its callers trace before they throw. May
// be received from and sent to by two threads at once; everything else needs one thread.
class CSocket {
public:
    CSocket() = default; // none
    explicit CSocket(int descriptor);
    CSocket(CSocket&& other) noexcept;
    CSocket& operator=(CSocket&& other) noexcept;
    ~CSocket();

    // 0, or the error's number.
    int Create(int family = AF_INET);
    // Waits until the connection is there, or, with 995, until interrupt is signalled. NoLimit: as long as
    // the platform takes. 0, or the error's number.
    int Connect(const SocketAddress& address, std::chrono::milliseconds timeout,
                const CEvent* interrupt = nullptr);
    // Connects without waiting: would block while the connection is on its way. Then EndConnect tells, when
    // the socket has become writable, what has come of it: 0, or the error's number.
    SocketResult BeginConnect(const SocketAddress& address);
    int EndConnect();
    // Finds out by itself that a peer has gone while nothing is said.
    void KeepAlive();

    void Close();
    // Closes in such a way that the peer sees the connection break, not end.
    void Reset();
    // Tells the peer that nothing more will come from here.
    void EndSending();

    // No bytes and no error: the peer has closed.
    SocketResult Receive(char* bytes, std::size_t size);
    // A broken connection is an error, never a signal.
    SocketResult Send(const char* bytes, std::size_t size);

    bool IsOpen() const { return descriptor >= 0; }
    int GetDescriptor() const { return descriptor; }
    // None if there is no connection any more.
    std::optional<SocketAddress> GetPeer() const;

private:
    int descriptor = -1;
};

// The same for a descriptor that somebody else owns.
SocketResult ReceiveFrom(int descriptor, char* bytes, std::size_t size);
SocketResult SendTo(int descriptor, const char* bytes, std::size_t size);
