#include "common/ThreadEvent.h"

CThreadEvent::CThreadEvent(ResetMode mode, bool isSignalled) : mode(mode), isSignalled(isSignalled) {}

void CThreadEvent::Set()
{
    // Notified with the lock held: who waits may take the event apart as soon as it is seen.
    const std::lock_guard lock(mutex);
    isSignalled = true;
    changed.notify_all();
}

void CThreadEvent::Reset()
{
    const std::lock_guard lock(mutex);
    isSignalled = false;
}

void CThreadEvent::Wait()
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return isSignalled; });
    if (mode == ResetMode::Auto) {
        isSignalled = false;
    }
}
