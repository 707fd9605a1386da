#include "common/WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <system_error>

size_t CWorkerPool::GetUsualSize()
{
    return std::max(1u, std::thread::hardware_concurrency());
}

CWorkerPool::CWorkerPool(CStopSignal* stop, size_t size) : stop(stop ? *stop : ownStop), size(size) {}

CWorkerPool::~CWorkerPool()
{
    {
        std::deque<Work> dropped; // goes without the lock
        const CMutexLock lock(mutex);
        dropped.swap(waiting);
    }
    End();
}

void CWorkerPool::Post(Work work)
{
    {
        const CMutexLock lock(mutex);
        waiting.push_back(std::move(work));
    }
    if (threads.size() < size) {
        StartThread();
    }
    changed.NotifyOne();
}

void CWorkerPool::Finish(const Work& own)
{
    if (own) {
        Do(own);
    }
    End();
    if (const std::exception_ptr first = GetFailure()) {
        std::rethrow_exception(first);
    }
}

std::exception_ptr CWorkerPool::GetFailure() const
{
    const CMutexLock lock(mutex);
    return failure;
}

void CWorkerPool::StartThread()
{
    try {
        threads.emplace_back([this] { Run(); });
    } catch (const std::system_error&) {
        // The next Post tries again.
    }
}

void CWorkerPool::Run()
{
    CMutexLock lock(mutex);
    for (;;) {
        while (waiting.empty() && !isEnding) {
            changed.Wait(mutex);
        }
        if (waiting.empty()) {
            return;
        }
        Work work = std::move(waiting.front());
        waiting.pop_front();
        lock.Unlock();
        if (!stop.IsSet()) {
            Do(work);
        }
        work = {}; // what it holds goes without the lock
        lock.Lock();
    }
}

void CWorkerPool::Do(const Work& work)
{
    try {
        work();
    } catch (...) {
        const CMutexLock lock(mutex);
        failure = failure ? failure : std::current_exception();
        // Only now: who sees the signal and asks for the failure finds it.
        stop.Set();
    }
}

void CWorkerPool::End()
{
    {
        const CMutexLock lock(mutex);
        isEnding = true;
    }
    changed.NotifyAll();
    if (threads.empty()) {
        Run();
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    threads.clear();
    const CMutexLock lock(mutex);
    isEnding = false;
}

void OnAllCores(size_t count, const std::function<void(size_t)>& work)
{
    CStopSignal stop;
    std::atomic<size_t> next = 0;
    const auto doNumbers = [&] {
        for (size_t at = next++; at < count && !stop.IsSet(); at = next++) {
            work(at);
        }
    };
    const size_t workers = std::min(count, CWorkerPool::GetUsualSize());
    CWorkerPool pool(&stop, workers);
    for (size_t i = 1; i < workers; ++i) {
        pool.Post(doNumbers);
    }
    pool.Finish(doNumbers);
}
