#pragma once

#include <chrono>

#include "common/ThreadSafety.h"
#include "ftpengine/messages/FTPMessages.h"
#include "ftpengine/net/Event.h"

// Stands in as the target of a task for a caller who waits for its result. One for each wait, so that a
// result that comes late, when the caller has gone, is never taken for that of the next task.
class CWindowTaskWaiter final : public CFTPTarget {
public:
    void Post(FTPMessage message) override;

    // Dispatches the events of the calling thread's event loop, if it has one, while it waits; each starts
    // the time-out anew. When it has run out, the result has the status 10060.
    CTaskResult Wait(std::chrono::milliseconds timeout);

private:
    void Complete(CTaskResult taken);
    bool WaitDispatching(std::chrono::milliseconds timeout) const;

    CEvent completed;

    CMutex mutex;
    CTaskResult result VISTORAMA_GUARDED_BY(mutex);
};
