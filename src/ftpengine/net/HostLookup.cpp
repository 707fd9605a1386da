#include "ftpengine/net/HostLookup.h"

#include <memory>
#include <netdb.h>
#include <system_error>
#include <thread>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/Event.h"

namespace {

struct Found {
    int error = 0; // EngineStatus.h
    std::vector<SocketAddress> addresses;
};

// Shared by the one who waits and the thread that asks, which may outlive the other.
struct Question {
    std::string host;
    Found found; // may be read when it is answered
    CEvent answered;
};

Found Ask(const std::string& host, int flags)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = flags;
    addrinfo* list = nullptr;
    if (const int result = ::getaddrinfo(host.c_str(), nullptr, &hints, &list)) {
        return {.error = EngineStatus::FromResolver(result), .addresses = {}};
    }
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(list, &::freeaddrinfo);
    Found found;
    for (const addrinfo* each = list; each != nullptr; each = each->ai_next) {
        if (each->ai_family == AF_INET || each->ai_family == AF_INET6) {
            found.addresses.emplace_back(each->ai_addr, each->ai_addrlen);
        }
    }
    return found;
}

Found AskAside(const std::string& host, std::chrono::milliseconds timeout, const CEvent& abortEvent)
{
    const auto question = std::make_shared<Question>();
    question->host = host;
    try {
        std::thread([question] {
            question->found = Ask(question->host, 0);
            question->answered.Set();
        }).detach();
    } catch (const std::system_error&) {
        return {.error = EngineStatus::NoBufferSpace, .addresses = {}};
    }
    switch (WaitForFirst({UntilSet(abortEvent), UntilSet(question->answered)}, timeout)) {
    case WaitResult::First:
        return {.error = EngineStatus::Aborted, .addresses = {}};
    case WaitResult::TimedOut:
        return {.error = EngineStatus::TryAgain, .addresses = {}};
    case WaitResult::Second:
    case WaitResult::Third:
        break;
    }
    static_cast<void>(question->answered.IsSet()); // what the thread wrote is seen from here on
    return question->found;
}

} // namespace

std::vector<SocketAddress> LookUpHost(const QString& host, uint16_t port, std::chrono::milliseconds timeout,
                                      const CEvent& abortEvent)
{
    const std::string name = Narrow(host);
    Found found = Ask(name, AI_NUMERICHOST); // an address in figures needs no thread
    if (found.addresses.empty()) {
        found = AskAside(name, timeout, abortEvent);
    }
    if (found.error != 0 || found.addresses.empty()) {
        ThrowTraced("GetAddr, getaddrinfo throws: ",
                    found.error != 0 ? found.error : EngineStatus::HostNotFound);
    }
    for (SocketAddress& address : found.addresses) {
        address.SetPort(port);
    }
    return std::move(found.addresses);
}
