#pragma once

#include <chrono>

// A manual-reset event that can be waited for together with sockets. Safe for use by several threads; shared
// by those who hold it.
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
};
