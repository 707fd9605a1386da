#include "common/BackgroundWorker.h"

#include "common/Trace.h"

CBackgroundWorker::~CBackgroundWorker()
{
    Quit();
}

void CBackgroundWorker::Start()
{
    thread = std::thread([this] { Run(); });
}

void CBackgroundWorker::Request()
{
    const CMutexLock lock(mutex);
    CancelAndRest();
    if (state == State::Idle) {
        state = State::Requested;
        changed.NotifyAll();
    }
}

void CBackgroundWorker::Cancel()
{
    const CMutexLock lock(mutex);
    CancelAndRest();
}

void CBackgroundWorker::Quit()
{
    {
        const CMutexLock lock(mutex);
        CancelAndRest();
        state = State::Quitting;
        changed.NotifyAll();
    }
    if (thread.joinable()) {
        thread.join();
    }
}

void CBackgroundWorker::CancelAndRest()
{
    if (state == State::Requested) {
        state = State::Idle;
    }
    // Also if it was idle already: the work may be between its last look at the state and its end.
    while (isWorking) {
        changed.Wait(mutex);
    }
}

void CBackgroundWorker::Run()
{
    Trace(QStringLiteral("The background worker begins"));
    CMutexLock lock(mutex);
    while (state != State::Quitting) {
        if (state == State::Idle) {
            changed.Wait(mutex);
            continue;
        }
        isWorking = true;
        lock.Unlock();
        DoWork();
        lock.Lock();
        isWorking = false;
        // No newer request can be there: who makes one waits for the rest first.
        if (state == State::Requested) {
            state = State::Idle;
        }
        changed.NotifyAll();
    }
}
