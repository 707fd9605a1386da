#include "ftpengine/net/Event.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "ftpengine/messages/EngineStatus.h"

namespace {

using Clock = std::chrono::steady_clock;

// What poll is to wait for: -1 without limit, rounded up so that no wait ends early.
int RemainingUntil(Clock::time_point deadline)
{
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(remaining)>(remaining, 0, INT_MAX));
}

int CreateEventDescriptor()
{
    const int descriptor = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (descriptor < 0) {
        throw EngineStatus::FromErrno(errno);
    }
    return descriptor;
}

} // namespace

CEvent::CEvent() : descriptor(CreateEventDescriptor()) {}

CEvent::~CEvent()
{
    ::close(descriptor);
}

void CEvent::Set()
{
    timesSet.fetch_add(1, std::memory_order_release);
    const uint64_t one = 1;
    // Refused only when the counter is full; then the event is signalled already.
    [[maybe_unused]] const ssize_t written = ::write(descriptor, &one, sizeof one);
}

void CEvent::Reset()
{
    uint64_t count = 0;
    // Refused only when the event is down already.
    [[maybe_unused]] const ssize_t taken = ::read(descriptor, &count, sizeof count);
}

bool CEvent::IsSet() const
{
    return Wait(std::chrono::milliseconds(0));
}

bool CEvent::Wait(std::chrono::milliseconds timeout) const
{
    const bool isSet = WaitForFirst({UntilSet(*this)}, timeout) == WaitResult::First;
    static_cast<void>(timesSet.load(std::memory_order_acquire));
    return isSet;
}

WaitResult WaitForFirst(std::initializer_list<WaitedDescriptor> waited, std::chrono::milliseconds timeout)
{
    std::array<pollfd, 3> polled{};
    std::transform(waited.begin(), waited.end(), polled.begin(), [](const WaitedDescriptor& one) {
        return pollfd{.fd = one.descriptor,
                      .events = static_cast<short>(one.writable ? POLLOUT : POLLIN),
                      .revents = 0};
    });
    const bool limited = timeout != NoLimit;
    const Clock::time_point deadline = limited ? Clock::now() + timeout : Clock::time_point::max();
    for (;;) {
        const int ready = ::poll(polled.data(), waited.size(), limited ? RemainingUntil(deadline) : -1);
        if (ready < 0 && errno != EINTR) {
            throw EngineStatus::FromErrno(errno);
        }
        if (ready == 0 && Clock::now() >= deadline) {
            return WaitResult::TimedOut;
        }
        for (std::size_t i = 0; ready > 0 && i < waited.size(); ++i) {
            if (polled[i].revents != 0) {
                return static_cast<WaitResult>(i);
            }
        }
    }
}
