#pragma once

#include <atomic>
#include <chrono>
#include <initializer_list>

#include "ftpengine/net/FTPTimeouts.h"

// A manual-reset event that can be waited for together with sockets. Safe for use by several threads; shared
// by those who hold it. What a thread wrote before Set is seen by a thread that Wait, or IsSet, told of it.
class CEvent {
public:
    // Not signalled. Throws an int (EngineStatus.h) if the system has no descriptor left.
    CEvent();
    ~CEvent();
    CEvent(const CEvent&) = delete;
    CEvent& operator=(const CEvent&) = delete;

    void Set();
    void Reset();
    bool IsSet() const;

    // False if the time-out, which may be NoLimit, came first.
    bool Wait(std::chrono::milliseconds timeout) const;

    // Readable while the event is signalled.
    int GetDescriptor() const { return descriptor; }

private:
    const int descriptor;
    std::atomic<unsigned> timesSet = 0; // orders memory, which the system's event alone doesn't promise
};

// One thing to wait for: a descriptor that becomes readable or writable. Its owner keeps it open meanwhile.
struct WaitedDescriptor {
    int descriptor;
    bool writable = false;
};

inline WaitedDescriptor UntilSet(const CEvent& event)
{
    return {event.GetDescriptor()};
}

enum class WaitResult { First, Second, Third, TimedOut };

// Waits for up to three descriptors; when several are ready, the one that stands first has priority. A broken
// connection counts as ready. The time-out may be NoLimit. Throws an int (EngineStatus.h) if the wait itself
// fails.
WaitResult WaitForFirst(std::initializer_list<WaitedDescriptor> waited, std::chrono::milliseconds timeout);
