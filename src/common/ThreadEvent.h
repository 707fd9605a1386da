#pragma once

#include <condition_variable>
#include <mutex>

// An event that threads of one program wait for. Safe for use by several threads; shared by those who hold
// it. What a thread wrote before Set is seen by a thread whose Wait it ended.
class CThreadEvent final {
public:
    // Manual: stays signalled until Reset. Auto: the Wait that it ends takes the signal with it.
    enum class ResetMode { Manual, Auto };

    CThreadEvent(ResetMode mode, bool isSignalled);

    void Set();
    void Reset();
    void Wait();

private:
    const ResetMode mode;
    std::mutex mutex;
    std::condition_variable changed;
    bool isSignalled; // guarded by mutex
};
