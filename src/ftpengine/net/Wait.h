#pragma once

#include <chrono>
#include <initializer_list>

#include "ftpengine/net/Event.h"
#include "ftpengine/net/FTPTimeouts.h"

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
