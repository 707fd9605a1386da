#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

#include "common/ThreadEvent.h"

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
    // Ends what is being worked at and has the work done anew. Waits like Cancel. Nothing happens behind
    // Quit.
    void Request();
    // Returns when no work is being done, which is as soon as DoWork has seen it. What was asked for and not
    // begun is dropped.
    void Cancel();
    // Cancels, and ends the thread for good.
    void Quit();

    // False once the work in progress is to end. DoWork asks this often; any thread may.
    bool IsRunning() const { return state.load() == Requested; }

protected:
    // On the worker's thread. Throws nothing.
    virtual void DoWork() = 0;

private:
    enum State : int32_t { Idle = 0, Requested = 1, Quitting = 2 };

    bool ChangeState(State from, State to);
    void Run();
    void DoRequestedWork();

    // Changed by compare-and-exchange only.
    std::atomic<int32_t> state = Idle;
    CThreadEvent exitEvent{CThreadEvent::ResetMode::Manual, true}; // no thread is running
    CThreadEvent wakeEvent{CThreadEvent::ResetMode::Auto, false};  // the state has changed
    // No work is in progress. An event of its own: the worker itself waits for the other one, and could take
    // from a caller of Cancel what that one waits for.
    CThreadEvent restEvent{CThreadEvent::ResetMode::Manual, true};
    std::thread thread;
};
