#include "ftpengine/net/Dial.h"

#include <cerrno>
#include <netdb.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

constexpr std::chrono::milliseconds lookUpTime{60000}; // resolvers give up earlier, unless one hangs
constexpr std::chrono::milliseconds addressTime{20000};

// Shared with the thread that asks, which may outlive those who wait for it.
struct LookUp {
    std::string host;
    std::string port;
    CEvent finished;
    int error = 0; // EngineStatus.h
    std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> addresses{nullptr, &::freeaddrinfo};
};

void Ask(LookUp& lookUp)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    const int result = ::getaddrinfo(lookUp.host.c_str(), lookUp.port.c_str(), &hints, &list);
    lookUp.error = result == 0 ? 0 : EngineStatus::FromResolver(result);
    lookUp.addresses.reset(list);
    lookUp.finished.Set();
}

std::shared_ptr<LookUp> LookUpHost(const QString& host, uint16_t port, const CEvent& abort)
{
    const auto lookUp = std::make_shared<LookUp>();
    lookUp->host = Narrow(host);
    lookUp->port = std::to_string(port);
    try {
        std::thread([lookUp] { Ask(*lookUp); }).detach();
    } catch (const std::system_error&) {
        throw EngineStatus::NoBufferSpace;
    }
    switch (WaitForFirst({UntilSet(abort), UntilSet(lookUp->finished)}, lookUpTime)) {
    case WaitResult::First:
        ThrowTracedLiterally("Dial, look-up aborted", EngineStatus::Aborted);
    case WaitResult::TimedOut:
        ThrowTracedLiterally("Dial, look-up timed out", EngineStatus::TimedOut);
    case WaitResult::Second:
    case WaitResult::Third:
        break;
    }
    // Its wait makes visible what the other thread wrote.
    static_cast<void>(lookUp->finished.IsSet());
    if (lookUp->error != 0) {
        ThrowTraced("Dial, getaddrinfo throws: ", lookUp->error);
    }
    return lookUp;
}

// 0, or the error's number.
int AwaitConnection(const CSocket& socket, const CEvent& abort)
{
    switch (WaitForFirst({UntilSet(abort), {socket.GetDescriptor(), true}}, addressTime)) {
    case WaitResult::First:
        ThrowTracedLiterally("Dial, connect aborted", EngineStatus::Aborted);
    case WaitResult::TimedOut:
        return EngineStatus::TimedOut;
    case WaitResult::Second:
    case WaitResult::Third:
        break;
    }
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(socket.GetDescriptor(), SOL_SOCKET, SO_ERROR, &error, &size) != 0) {
        error = errno;
    }
    return error == 0 ? 0 : EngineStatus::FromErrno(error);
}

// 0, or the error's number.
int ConnectTo(const addrinfo& address, const CEvent& abort, CSocket& socket)
{
    const int descriptor = ::socket(address.ai_family, SOCK_STREAM, 0);
    if (descriptor < 0) {
        return EngineStatus::FromErrno(errno);
    }
    socket = CSocket(descriptor);
    if (::connect(descriptor, address.ai_addr, address.ai_addrlen) == 0) {
        return 0;
    }
    return errno == EINPROGRESS || errno == EINTR ? AwaitConnection(socket, abort)
                                                  : EngineStatus::FromErrno(errno);
}

void SetOptions(const CSocket& socket)
{
    const int on = 1;
    // Requests are small and wait for answers: none may wait for company.
    ::setsockopt(socket.GetDescriptor(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    ::setsockopt(socket.GetDescriptor(), SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
}

} // namespace

CSocket Dial(const QString& host, uint16_t port, const std::shared_ptr<CEvent>& abort)
{
    const auto lookUp = LookUpHost(host, port, *abort);
    int error = 0;
    for (const addrinfo* address = lookUp->addresses.get(); address != nullptr; address = address->ai_next) {
        CSocket socket;
        error = ConnectTo(*address, *abort, socket);
        if (error == 0) {
            SetOptions(socket);
            return socket;
        }
    }
    ThrowTraced("Dial, connect throws: ", error);
}
