#include "ftpengine/net/Socket.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
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

} // namespace

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

int CSocket::Create()
{
    Close();
    descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
    if (descriptor < 0) {
        return EngineStatus::FromErrno(errno);
    }
    PrepareDescriptor(descriptor);
    return 0;
}

int CSocket::Connect(const sockaddr_in& address, std::chrono::milliseconds timeout, const CEvent* interrupt)
{
    if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        return 0;
    }
    if (errno != EINPROGRESS && errno != EINTR) {
        return EngineStatus::FromErrno(errno);
    }
    const WaitedDescriptor connected = {descriptor, true};
    const WaitResult result = interrupt == nullptr ? WaitForFirst({connected}, timeout)
                                                   : WaitForFirst({connected, UntilSet(*interrupt)}, timeout);
    if (result != WaitResult::First) {
        return result == WaitResult::TimedOut ? EngineStatus::TimedOut : EngineStatus::Aborted;
    }
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) != 0) {
        error = errno;
    }
    return error == 0 ? 0 : EngineStatus::FromErrno(error);
}

void CSocket::Close()
{
    if (IsOpen()) {
        ::close(std::exchange(descriptor, -1));
    }
}

SocketResult CSocket::Receive(char* bytes, std::size_t size)
{
    return ResultOf(::recv(descriptor, bytes, size, 0));
}

SocketResult CSocket::Send(const char* bytes, std::size_t size)
{
    return ResultOf(::send(descriptor, bytes, size, sendFlags));
}
