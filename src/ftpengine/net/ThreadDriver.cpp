#include "ftpengine/net/ThreadDriver.h"

#include <deque>
#include <system_error>
#include <thread>

#include "ftpengine/net/FTPTimeouts.h"

struct CThreadDriver::Worker {
    CEvent finished;
    std::thread thread; // used under the start lock only

    // Guarded by the queue's lock.
    bool stopSignalled = false;
    std::shared_ptr<CEvent> itemStop = std::make_shared<CEvent>();
};

struct CThreadDriver::Queue {
    mutable std::mutex lock;

    // Guarded by lock.
    std::deque<Work> items;
    std::shared_ptr<Worker> current;

    bool IsRunning() const { return current && !current->stopSignalled; }

    Work TakeItem()
    {
        const std::lock_guard guard(lock);
        if (items.empty()) {
            return {};
        }
        Work item = std::move(items.front());
        items.pop_front();
        return item;
    }

    // Whether the worker goes on; if it does, it has a fresh stop event.
    bool GoesOn(Worker& worker)
    {
        const std::lock_guard guard(lock);
        if (items.empty() || worker.stopSignalled) {
            worker.stopSignalled = true;
            return false;
        }
        try {
            worker.itemStop = std::make_shared<CEvent>();
        } catch (int) {
            worker.itemStop->Reset(); // no descriptor left: the next best
        }
        return true;
    }

    std::shared_ptr<CEvent> GetItemStop(const Worker& worker) const
    {
        const std::lock_guard guard(lock);
        return worker.itemStop;
    }

    static void Run(const std::shared_ptr<Queue>& queue, const std::shared_ptr<Worker>& worker)
    {
        do {
            // The item is destroyed before the end of the worker shows.
            if (const Work item = queue->TakeItem()) {
                item(queue->GetItemStop(*worker));
            }
        } while (queue->GoesOn(*worker));
        worker->finished.Set();
    }
};

CThreadDriver::CThreadDriver(std::chrono::milliseconds stopWait)
    : stopWait(stopWait), queue(std::make_shared<Queue>())
{}

CThreadDriver::~CThreadDriver()
{
    Stop();
}

CThreadDriver::StartResult CThreadDriver::Start(Work work, bool queueIfRunning)
{
    const std::lock_guard startGuard(startLock);
    JoinFinishedWorkers();
    {
        const std::lock_guard guard(queue->lock);
        if (queue->IsRunning()) {
            if (!queueIfRunning) {
                return StartResult::Refused;
            }
            queue->items.push_back(std::move(work));
            return StartResult::Queued;
        }
    }
    return StartWorker(std::move(work));
}

CThreadDriver::StartResult CThreadDriver::StartWorker(Work work)
{
    std::shared_ptr<Worker> worker;
    try {
        worker = std::make_shared<Worker>();
        const std::lock_guard guard(queue->lock);
        // Under the lock, so that the new worker finds its item, and an old one doesn't find it without a
        // new.
        worker->thread = std::thread([queue = queue, worker] { Queue::Run(queue, worker); });
        queue->items.push_back(std::move(work));
        queue->current = worker;
    } catch (int) {
        return StartResult::Failed;
    } catch (const std::system_error&) {
        return StartResult::Failed;
    }
    workers.push_back(worker);
    return StartResult::Started;
}

void CThreadDriver::SignalStop()
{
    const std::lock_guard guard(queue->lock);
    if (queue->IsRunning()) {
        queue->current->stopSignalled = true;
        queue->current->itemStop->Set();
    }
}

bool CThreadDriver::Stop()
{
    using Clock = std::chrono::steady_clock;
    const std::lock_guard startGuard(startLock);
    SignalStop();
    const Clock::time_point begin = Clock::now();
    bool abandoned = false;
    for (const std::shared_ptr<Worker>& worker : workers) {
        const auto used = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
        const auto left = stopWait == NoLimit ? NoLimit : std::max(stopWait - used, {});
        if (worker->finished.Wait(left)) {
            worker->thread.join();
        } else {
            worker->thread.detach();
            abandoned = true;
        }
    }
    workers.clear();
    return abandoned;
}

bool CThreadDriver::IsRunning() const
{
    const std::lock_guard guard(queue->lock);
    return queue->IsRunning();
}

void CThreadDriver::JoinFinishedWorkers()
{
    workers.remove_if([](const std::shared_ptr<Worker>& worker) {
        const bool finished = worker->finished.IsSet();
        if (finished) {
            worker->thread.join();
        }
        return finished;
    });
}
