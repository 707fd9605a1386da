#include "ftpengine/net/Socket.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <netinet/tcp.h>
#include <unistd.h>
#include <utility>

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/Event.h"

namespace {

// The platform may have no per-call flag against the signal; then the socket gets an option.
#ifdef MSG_NOSIGNAL
constexpr int sendFlags = MSG_NOSIGNAL;
#else
constexpr int sendFlags = 0;
#endif

void PrepareDescriptor(int descriptor)
{
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
#ifdef SO_NOSIGPIPE
    const int on = 1;
    ::setsockopt(descriptor, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
}

SocketResult ResultOf(ssize_t bytes)
{
    if (bytes >= 0) {
        return {.bytes = static_cast<std::size_t>(bytes)};
    }
    if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR) {
        return {.wouldBlock = true};
    }
    return {.error = EngineStatus::FromErrno(errno)};
}

// Where the port stands in an address of either family.
in_port_t* PortOf(sockaddr_storage& storage)
{
    return storage.ss_family == AF_INET6 ? &reinterpret_cast<sockaddr_in6&>(storage).sin6_port
                                         : &reinterpret_cast<sockaddr_in&>(storage).sin_port;
}

} // namespace

SocketAddress::SocketAddress(const sockaddr* address, socklen_t size)
    : size(std::min<socklen_t>(size, sizeof storage))
{
    std::memcpy(&storage, address, this->size);
}

SocketAddress::SocketAddress(const sockaddr_in& address)
    : SocketAddress(reinterpret_cast<const sockaddr*>(&address), sizeof address)
{}

uint16_t SocketAddress::GetPort() const
{
    sockaddr_storage copy = storage;
    return ntohs(*PortOf(copy));
}

void SocketAddress::SetPort(uint16_t port)
{
    *PortOf(storage) = htons(port);
}

CSocket::CSocket(int descriptor) : descriptor(descriptor)
{
    PrepareDescriptor(descriptor);
}

CSocket::CSocket(CSocket&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}

CSocket& CSocket::operator=(CSocket&& other) noexcept
{
    std::swap(descriptor, other.descriptor);
    return *this;
}

CSocket::~CSocket()
{
    Close();
}

int CSocket::Create(int family)
{
    Close();
    descriptor = ::socket(family, SOCK_STREAM, 0);
    if (descriptor < 0) {
        return EngineStatus::FromErrno(errno);
    }
    PrepareDescriptor(descriptor);
    return 0;
}

int CSocket::Connect(const SocketAddress& address, std::chrono::milliseconds timeout, const CEvent* interrupt)
{
    const SocketResult begun = BeginConnect(address);
    if (!begun.wouldBlock) {
        return begun.error;
    }
    const WaitedDescriptor connected = {descriptor, true};
    const WaitResult result = interrupt == nullptr ? WaitForFirst({connected}, timeout)
                                                   : WaitForFirst({connected, UntilSet(*interrupt)}, timeout);
    if (result != WaitResult::First) {
        return result == WaitResult::TimedOut ? EngineStatus::TimedOut : EngineStatus::Aborted;
    }
    return EndConnect();
}

SocketResult CSocket::BeginConnect(const SocketAddress& address)
{
    if (::connect(descriptor, address.Get(), address.size) == 0) {
        return {};
    }
    if (errno == EINPROGRESS || errno == EINTR) {
        return {.wouldBlock = true};
    }
    return {.error = EngineStatus::FromErrno(errno)};
}

int CSocket::EndConnect()
{
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) != 0) {
        error = errno;
    }
    return error == 0 ? 0 : EngineStatus::FromErrno(error);
}

void CSocket::KeepAlive()
{
    const int on = 1;
    ::setsockopt(descriptor, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
#ifdef TCP_KEEPIDLE
    const int idleSeconds = 60; // the two hours of the system are too long for the routers on the way
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPIDLE, &idleSeconds, sizeof idleSeconds);
#endif
}

void CSocket::Close()
{
    if (IsOpen()) {
        ::close(std::exchange(descriptor, -1));
    }
}

void CSocket::Reset()
{
    if (IsOpen()) {
        const linger atOnce = {.l_onoff = 1, .l_linger = 0};
        ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        Close();
    }
}

void CSocket::EndSending()
{
    ::shutdown(descriptor, SHUT_WR);
}

SocketResult CSocket::Receive(char* bytes, std::size_t size)
{
    return ReceiveFrom(descriptor, bytes, size);
}

SocketResult CSocket::Send(const char* bytes, std::size_t size)
{
    return SendTo(descriptor, bytes, size);
}

std::optional<SocketAddress> CSocket::GetPeer() const
{
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&storage), &size) != 0) {
        return std::nullopt;
    }
    return SocketAddress(reinterpret_cast<const sockaddr*>(&storage), size);
}

SocketResult ReceiveFrom(int descriptor, char* bytes, std::size_t size)
{
    return ResultOf(::recv(descriptor, bytes, size, 0));
}

SocketResult SendTo(int descriptor, const char* bytes, std::size_t size)
{
    return ResultOf(::send(descriptor, bytes, size, sendFlags));
}
