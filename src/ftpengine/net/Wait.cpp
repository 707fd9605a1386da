#include "ftpengine/net/Wait.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <poll.h>

#include "ftpengine/EngineStatus.h"

namespace {

using Clock = std::chrono::steady_clock;

// What poll is to wait for: -1 without limit, rounded up so that no wait ends early.
int RemainingUntil(Clock::time_point deadline)
{
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(remaining)>(remaining, 0, INT_MAX));
}

} // namespace

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
