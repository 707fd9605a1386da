#include "ftpengine/tasks/FTPTaskRunner.h"

#include "ftpengine/EngineStatus.h"

void CFTPTaskRunner::Start(std::shared_ptr<CFTPTask> task)
{
    const auto run = [task](const std::shared_ptr<CEvent>& stop) {
        task->Execute(stop);
    };
    if (driver.Start(run, true) == CThreadDriver::StartResult::Failed) {
        task->Fail(EngineStatus::NoBufferSpace);
    }
}
