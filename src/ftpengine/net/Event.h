#pragma once

#include <atomic>
#include <chrono>

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

    // False if the time-out came first.
    bool Wait(std::chrono::milliseconds timeout) const;

    // Readable while the event is signalled.
    int GetDescriptor() const { return descriptor; }

private:
    const int descriptor;
    std::atomic<unsigned> timesSet = 0; // orders memory, which the system's event alone doesn't promise
};
