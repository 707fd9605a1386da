#include "ftpengine/net/Event.h"

#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

#include "ftpengine/EngineStatus.h"
#include "ftpengine/net/Wait.h"

namespace {

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
