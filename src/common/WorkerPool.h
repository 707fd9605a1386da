#pragma once

#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <thread>
#include <vector>

#include "common/StopSignal.h"
#include "common/ThreadSafety.h"

// Threads that do what is posted to them, beginning in the order of posting. A system that has fewer threads
// left than are wanted gives as many as it has. Owned by the thread that posts, which makes all calls but
// GetFailure.
class CWorkerPool final {
public:
    using Work = std::function<void()>;

    // One per processor core.
    static size_t GetUsualSize();

    // stop: from its signal on nothing is begun any more, and what waits is dropped; the first failure sets
    // it. Borrowed; null for one of its own. size: the most threads.
    explicit CWorkerPool(CStopSignal* stop = nullptr, size_t size = GetUsualSize());
    // Drops what has not begun and waits for what has.
    ~CWorkerPool();
    CWorkerPool(const CWorkerPool&) = delete;
    CWorkerPool& operator=(const CWorkerPool&) = delete;

    // Returns at once. Each call starts another thread until there are enough. Where there is none at all,
    // the work waits for the next call that finds one, or for Finish.
    void Post(Work work);

    // Waits until all is done or dropped, and rethrows the first failure. own: is done meanwhile on the
    // caller's thread, as if it had been posted; so is all the rest if the pool has got no thread.
    void Finish(const Work& own = {});

    // What a piece of work threw first; null if none did. Any thread may ask.
    std::exception_ptr GetFailure() const;

private:
    void StartThread();
    void Run();
    void Do(const Work& work);
    void End();

    CStopSignal ownStop;
    CStopSignal& stop;
    const size_t size;
    std::vector<std::thread> threads; // of the owner's thread only

    mutable CMutex mutex;
    CCondition changed;
    std::deque<Work> waiting VISTORAMA_GUARDED_BY(mutex);
    bool isEnding VISTORAMA_GUARDED_BY(mutex) = false; // nothing more will be posted
    std::exception_ptr failure VISTORAMA_GUARDED_BY(mutex);
};

// Does the work for each number below count, on all cores, and returns when all is done; a single one is done
// on the caller's thread. The first failure ends it at the next number of each thread and is rethrown.
void OnAllCores(size_t count, const std::function<void(size_t)>& work);
