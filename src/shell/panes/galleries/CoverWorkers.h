#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

// Threads that make the files of covers, one per processor core. Work begins in the order in which it was
// posted. Owned by the screen's thread.
class CCoverWorkers final {
public:
    CCoverWorkers() = default;
    // Drops what has not begun and waits for what has.
    ~CCoverWorkers();
    CCoverWorkers(const CCoverWorkers&) = delete;
    CCoverWorkers& operator=(const CCoverWorkers&) = delete;

    // work: throws nothing. The threads start with the first of it.
    void Post(std::function<void()> work);

private:
    void Work();

    // Screen's thread only.
    std::vector<std::thread> threads;

    // Guarded by mutex.
    std::deque<std::function<void()>> waiting;
    bool isEnding = false;

    std::mutex mutex;
    std::condition_variable changed;
};
