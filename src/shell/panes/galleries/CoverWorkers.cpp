#include "shell/panes/galleries/CoverWorkers.h"

#include <algorithm>

CCoverWorkers::~CCoverWorkers()
{
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
        waiting.clear();
    }
    changed.notify_all();
    for (std::thread& thread : threads) {
        thread.join();
    }
}

void CCoverWorkers::Post(std::function<void()> work)
{
    {
        const std::lock_guard lock(mutex);
        waiting.push_back(std::move(work));
    }
    const size_t count = std::max(1u, std::thread::hardware_concurrency());
    while (threads.size() < count) {
        threads.emplace_back([this] { Work(); });
    }
    changed.notify_one();
}

void CCoverWorkers::Work()
{
    for (;;) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return isEnding || !waiting.empty(); });
        if (isEnding) {
            return;
        }
        const std::function<void()> work = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        work();
    }
}
