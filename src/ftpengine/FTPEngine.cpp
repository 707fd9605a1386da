#include "ftpengine/FTPEngine.h"

#include "ftpengine/tasks/FTPTask.h"
#include "ftpengine/tasks/FTPTasks.h"
#include "ftpengine/tasks/WindowTaskWaiter.h"

namespace {

template <class Queueing>
CTaskResult WaitFor(std::chrono::milliseconds timeout, const Queueing& queue)
{
    try {
        const auto waiter = std::make_shared<CWindowTaskWaiter>();
        queue(waiter);
        return waiter->Wait(timeout);
    } catch (int error) { // no descriptor left to wait with
        CTaskResult result;
        result.status = error;
        return result;
    }
}

} // namespace

CFTPEngine::CFTPEngine(const FTPTimeouts& timeouts, const QString& trustFolder)
    : timeouts(timeouts),
      trustFolder(trustFolder),
      runner(std::make_unique<CFTPTaskRunner>(timeouts.stopWorker))
{}

CFTPEngine::~CFTPEngine() = default;

void CFTPEngine::TestConnection(const FTPDestinationConnection& destination, const Target& target)
{
    Queue(std::make_shared<CFTPTaskTestConnection>(
        CFTPTask::Setting{destination, target, timeouts, trustFolder}));
}

void CFTPEngine::GetDirectoryContent(const FTPDestinationConnection& destination, const Target& target)
{
    Queue(std::make_shared<CFTPTaskGetDirectoryContent>(
        CFTPTask::Setting{destination, target, timeouts, trustFolder}));
}

void CFTPEngine::CreateDirectory(const FTPDestinationConnection& destination, const QString& name,
                                 const Target& target)
{
    Queue(std::make_shared<CFTPTaskCreateDirectory>(
        CFTPTask::Setting{destination, target, timeouts, trustFolder}, name));
}

void CFTPEngine::RenameDirectory(const FTPDestinationConnection& destination, const QString& oldName,
                                 const QString& newName, const Target& target)
{
    Queue(std::make_shared<CFTPTaskRenameDirectory>(
        CFTPTask::Setting{destination, target, timeouts, trustFolder}, oldName, newName));
}

void CFTPEngine::Upload(const FTPDestinationConnection& destination, const QString& title,
                        const FTPUploadMap& items, const Target& target)
{
    Queue(std::make_shared<CFTPTaskUpload>(CFTPTask::Setting{destination, target, timeouts, trustFolder},
                                           title, items));
}

CTaskResult CFTPEngine::CreateDirectory(const FTPDestinationConnection& destination, const QString& name,
                                        std::chrono::milliseconds timeout)
{
    return WaitFor(timeout, [&](const Target& target) { CreateDirectory(destination, name, target); });
}

CTaskResult CFTPEngine::RenameDirectory(const FTPDestinationConnection& destination, const QString& oldName,
                                        const QString& newName, std::chrono::milliseconds timeout)
{
    return WaitFor(timeout,
                   [&](const Target& target) { RenameDirectory(destination, oldName, newName, target); });
}

void CFTPEngine::Cancel()
{
    runner->Cancel();
}

void CFTPEngine::Queue(std::shared_ptr<CFTPTask> task)
{
    runner->Start(std::move(task));
}
