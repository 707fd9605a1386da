#include "ftpengine/net/ThreadDriver.h"

#include <deque>
#include <system_error>

struct CThreadDriver::Worker {
    CEvent finished;

    // Of its thread alone once that runs.
    Work item;
    std::shared_ptr<CEvent> itemStop = std::make_shared<CEvent>();
};

// What is to be done, and who does it: the current worker is the one that takes the next item. One that is
// told to stop, or finds nothing, is not current any more.
class CThreadDriver::CQueue {
public:
    bool IsRunning() const
    {
        const CMutexLock lock(mutex);
        return current != nullptr;
    }

    // False, and nothing queued, if no worker is running. Takes the item only then.
    bool Append(Work& item)
    {
        const CMutexLock lock(mutex);
        if (current) {
            items.push_back(std::move(item));
        }
        return current != nullptr;
    }

    // Makes the worker the current one, with the oldest item. start: starts its thread; what it throws leaves
    // the queue as it was.
    template <class Starting>
    void Begin(const std::shared_ptr<Worker>& worker, Work item, const Starting& start)
    {
        // Held meanwhile, so that a stop signal finds the new worker or comes before it.
        const CMutexLock lock(mutex);
        items.push_back(std::move(item));
        worker->item = std::move(items.front());
        try {
            start();
        } catch (...) {
            items.front() = std::move(worker->item);
            items.pop_back();
            throw;
        }
        items.pop_front();
        current = worker;
        currentStop = worker->itemStop;
    }

    // Gives the worker its next item, with a fresh stop event. False if it is to end.
    bool GoOn(Worker& worker)
    {
        const CMutexLock lock(mutex);
        if (current.get() != &worker) {
            return false;
        }
        if (items.empty()) {
            current = nullptr;
            return false;
        }
        worker.item = std::move(items.front());
        items.pop_front();
        try {
            worker.itemStop = std::make_shared<CEvent>();
        } catch (int) {
            worker.itemStop->Reset(); // no descriptor left: the next best
        }
        currentStop = worker.itemStop;
        return true;
    }

    void SignalStop()
    {
        const CMutexLock lock(mutex);
        if (current) {
            current = nullptr;
            currentStop->Set();
        }
    }

private:
    mutable CMutex mutex;
    std::deque<Work> items VISTORAMA_GUARDED_BY(mutex);
    std::shared_ptr<Worker> current VISTORAMA_GUARDED_BY(mutex);
    std::shared_ptr<CEvent> currentStop VISTORAMA_GUARDED_BY(mutex); // of the current worker's item
};

CThreadDriver::CThreadDriver(std::chrono::milliseconds stopWait)
    : stopWait(stopWait), queue(std::make_shared<CQueue>())
{}

CThreadDriver::~CThreadDriver()
{
    Stop();
}

CThreadDriver::StartResult CThreadDriver::Start(Work work, bool queueIfRunning)
{
    const CMutexLock lock(startLock);
    JoinFinishedWorkers();
    if (!queueIfRunning && queue->IsRunning()) {
        return StartResult::Refused;
    }
    return queue->Append(work) ? StartResult::Queued : StartWorker(std::move(work));
}

CThreadDriver::StartResult CThreadDriver::StartWorker(Work work)
{
    try {
        const auto worker = std::make_shared<Worker>();
        workers.push_back({worker, {}});
        try {
            queue->Begin(worker, std::move(work), [&thread = workers.back().thread, queue = queue, worker] {
                thread = std::thread([queue, worker] { Run(*queue, *worker); });
            });
        } catch (const std::system_error&) {
            workers.pop_back();
            return StartResult::Failed;
        }
    } catch (int) { // no descriptor for the worker's events
        return StartResult::Failed;
    }
    return StartResult::Started;
}

void CThreadDriver::Run(CQueue& queue, Worker& worker)
{
    do {
        worker.item(worker.itemStop);
        // Destroyed before the end of the worker shows.
        worker.item = {};
    } while (queue.GoOn(worker));
    worker.finished.Set();
}

void CThreadDriver::SignalStop()
{
    queue->SignalStop();
}

bool CThreadDriver::Stop()
{
    using Clock = std::chrono::steady_clock;
    const CMutexLock lock(startLock);
    SignalStop();
    const Clock::time_point begin = Clock::now();
    bool abandoned = false;
    for (WorkerThread& each : workers) {
        const auto used = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
        const auto left = stopWait == NoLimit ? NoLimit : std::max(stopWait - used, {});
        if (each.worker->finished.Wait(left)) {
            each.thread.join();
        } else {
            each.thread.detach();
            abandoned = true;
        }
    }
    workers.clear();
    return abandoned;
}

bool CThreadDriver::IsRunning() const
{
    return queue->IsRunning();
}

void CThreadDriver::JoinFinishedWorkers()
{
    workers.remove_if([](WorkerThread& each) {
        const bool finished = each.worker->finished.IsSet();
        if (finished) {
            each.thread.join();
        }
        return finished;
    });
}
