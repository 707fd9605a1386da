#pragma once

#include <memory>

#include "ftpengine/net/ThreadDriver.h"
#include "ftpengine/tasks/FTPTask.h"

// The engine's worker: runs tasks one at a time from its queue. Owned by the engine and used on its thread.
// Its destruction cancels the running task and drops the queued ones.
class CFTPTaskRunner {
public:
    explicit CFTPTaskRunner(std::chrono::milliseconds stopWait) : driver(stopWait) {}

    void Start(std::shared_ptr<CFTPTask> task);
    void Cancel() { driver.SignalStop(); }

private:
    CThreadDriver driver;
};
