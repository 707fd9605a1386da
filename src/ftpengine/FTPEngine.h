#pragma once

#include <chrono>
#include <memory>

#include <QString>

#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/messages/FTPMessages.h"
#include "ftpengine/net/FTPTimeouts.h"

class CFTPTask;
class CFTPTaskRunner;

// The front door of the FTP client. Runs one task after the other on a worker of its own; each connects anew,
// and a failed one has no effect on the next. Owned by the window or program that uses it, and to be called
// on that one's thread. Its destruction cancels the running task, waits for it, and drops queued ones.
class CFTPEngine {
public:
    using Target = std::weak_ptr<CFTPTarget>;

    // trustFolder: of the servers that a person trusts (SessionSetting.h); empty for none.
    explicit CFTPEngine(const FTPTimeouts& timeouts = {}, const QString& trustFolder = {});
    ~CFTPEngine();
    CFTPEngine(const CFTPEngine&) = delete;
    CFTPEngine& operator=(const CFTPEngine&) = delete;

    // These queue a task and return at once; the target gets the task's started and finished messages,
    // whatever happens, but is not kept alive.
    void TestConnection(const FTPDestinationConnection& destination, const Target& target);
    // Lists the destination's directory or, if that isn't there, the deepest one on its path that is.
    void GetDirectoryContent(const FTPDestinationConnection& destination, const Target& target);
    void CreateDirectory(const FTPDestinationConnection& destination, const QString& name,
                         const Target& target);
    void RenameDirectory(const FTPDestinationConnection& destination, const QString& oldName,
                         const QString& newName, const Target& target);
    // items is copied. title comes back in the messages.
    void Upload(const FTPDestinationConnection& destination, const QString& title, const FTPUploadMap& items,
                const Target& target);

    // These wait for the result. A thread with an event loop goes on dispatching its events meanwhile, and
    // the time-out starts anew after each: it limits a time of quiet, not the whole call. When it has run
    // out, the result has the status 10060, and the task goes on.
    CTaskResult CreateDirectory(const FTPDestinationConnection& destination, const QString& name,
                                std::chrono::milliseconds timeout);
    CTaskResult RenameDirectory(const FTPDestinationConnection& destination, const QString& oldName,
                                const QString& newName, std::chrono::milliseconds timeout);

    // Tells the running task to end and returns at once; its finished message comes as usual, with the status
    // 995. A file that is being sent is broken off, in such a way that the server sees it break. Queued tasks
    // stay queued until the next call that queues one.
    void Cancel();

private:
    void Queue(std::shared_ptr<CFTPTask> task);

    const FTPTimeouts timeouts;
    const QString trustFolder;
    const std::unique_ptr<CFTPTaskRunner> runner;
};
