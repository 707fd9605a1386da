#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <thread>

#include "common/ThreadSafety.h"
#include "ftpengine/net/Event.h"

// Runs work on a thread of its own, one item after the other, and ends that thread when there is none left.
// Owned by whoever gives the work; its operations may be called on any thread but its own worker's. What the
// work uses is owned by the work, because a worker that doesn't end in time outlives this object.
class CThreadDriver {
public:
    // stop: the item's own event, signalled when it is to end. The item may signal it itself, to break waits
    // of its own; that has no effect on later items. Throws nothing.
    using Work = std::function<void(const std::shared_ptr<CEvent>& stop)>;

    enum class StartResult {
        Started, // a new worker
        Queued,  // after the running item
        Refused, // a worker is running, and nothing was to be queued
        Failed,  // the system has no thread or descriptor left
    };

    // stopWait: how long Stop waits before it abandons a worker; may be NoLimit.
    explicit CThreadDriver(std::chrono::milliseconds stopWait);
    // Stops, and drops what is left in the queue.
    ~CThreadDriver();
    CThreadDriver(const CThreadDriver&) = delete;
    CThreadDriver& operator=(const CThreadDriver&) = delete;

    // After a stop signal a new worker starts at once, even if the old one is still at its last item; it
    // begins with what was left in the queue.
    StartResult Start(Work work, bool queueIfRunning);

    // Tells the worker to end after its item. Returns at once; what is queued stays so.
    void SignalStop();

    // Signals and waits. True if a worker had to be abandoned: its thread is never killed, it goes on alone,
    // and takes no further item.
    bool Stop();

    // False from the stop signal on.
    bool IsRunning() const;

private:
    struct Worker;
    class CQueue;
    struct WorkerThread {
        std::shared_ptr<Worker> worker;
        std::thread thread;
    };

    StartResult StartWorker(Work work) VISTORAMA_REQUIRES(startLock);
    void JoinFinishedWorkers() VISTORAMA_REQUIRES(startLock);
    static void Run(CQueue& queue, Worker& worker);

    const std::chrono::milliseconds stopWait;
    const std::shared_ptr<CQueue> queue; // shared with the workers; its mutex is taken after startLock

    CMutex startLock;
    std::list<WorkerThread> workers VISTORAMA_GUARDED_BY(startLock);
};
