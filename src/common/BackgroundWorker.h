#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

#include "common/ThreadSafety.h"

// A thread of its own that does one kind of work when it is asked to, as often as it is asked to. Base of the
// class that has the work, which owns it. Start, Request, Cancel and Quit are called on the owner's thread,
// never inside DoWork.
class CBackgroundWorker {
public:
    CBackgroundWorker() = default;
    // Quits. A derived class has to quit in its own destructor, while its DoWork can still be called.
    virtual ~CBackgroundWorker();
    CBackgroundWorker(const CBackgroundWorker&) = delete;
    CBackgroundWorker& operator=(const CBackgroundWorker&) = delete;

    // To be called once, before the first Request. Throws std::system_error if the system has no thread left.
    void Start();
    // Ends what is being worked at and has the work done anew. Waits like Cancel. Nothing happens after Quit.
    void Request();
    // Returns when no work is being done, which is as soon as DoWork has seen it. What was asked for and not
    // begun is dropped.
    void Cancel();
    // Cancels, and ends the thread for good.
    void Quit();

    // False once the work in progress is to end. DoWork asks this often; any thread may.
    bool IsRunning() const { return state == State::Requested; }

protected:
    // On the worker's thread. Throws nothing.
    virtual void DoWork() = 0;

private:
    enum class State : int32_t { Idle, Requested, Quitting };

    void CancelAndRest() VISTORAMA_REQUIRES(mutex);
    void Run();

    std::thread thread; // of the owner's thread only

    CMutex mutex;
    CCondition changed;
    std::atomic<State> state = State::Idle; // changed with the mutex held only
    bool isWorking VISTORAMA_GUARDED_BY(mutex) = false;
};
