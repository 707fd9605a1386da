#include "common/BackgroundWorker.h"

#include "common/Trace.h"

CBackgroundWorker::~CBackgroundWorker()
{
    Quit();
}

void CBackgroundWorker::Start()
{
    exitEvent.Reset();
    try {
        thread = std::thread([this] { Run(); });
    } catch (...) {
        exitEvent.Set();
        throw;
    }
}

void CBackgroundWorker::Request()
{
    Cancel();
    if (ChangeState(Idle, Requested)) {
        wakeEvent.Set();
    }
}

void CBackgroundWorker::Cancel()
{
    ChangeState(Requested, Idle);
    // Also if the state was idle: the worker may be between its last test of the state and its end.
    restEvent.Wait();
}

void CBackgroundWorker::Quit()
{
    do {
        Cancel();
    } while (!ChangeState(Idle, Quitting) && state.load() != Quitting);
    wakeEvent.Set();
    exitEvent.Wait();
    if (thread.joinable()) {
        thread.join();
    }
}

bool CBackgroundWorker::ChangeState(State from, State to)
{
    int32_t expected = from;
    return state.compare_exchange_strong(expected, to);
}

void CBackgroundWorker::Run()
{
    Trace(QStringLiteral("The background worker begins"));
    while (state.load() != Quitting) {
        if (state.load() == Idle) {
            wakeEvent.Wait();
        } else {
            DoRequestedWork();
        }
    }
    exitEvent.Set();
}

void CBackgroundWorker::DoRequestedWork()
{
    // The rest ends before the state is looked at: a Cancel that still found it has made the state idle by
    // then. What is asked for from now on waits for the next rest, so that it is this request and no newer
    // one that is ended here.
    restEvent.Reset();
    if (IsRunning()) {
        DoWork();
        ChangeState(Requested, Idle);
    }
    restEvent.Set();
}
