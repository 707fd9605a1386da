#pragma once

#include <functional>
#include <memory>

#include <QString>
#include <QStringList>

#include "ftpengine/commands/FTPCommandSequence.h"
#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/messages/FTPMessages.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/FTPTimeouts.h"
#include "ftpengine/net/ThreadDriver.h"
#include "ftpengine/session/RemoteSession.h"
#include "ftpengine/session/SessionSetting.h"

// One job: connects, logs in, does its work, logs out, and reports by messages. Made on the caller's thread,
// executed and destroyed on the engine's worker; owned by the worker's queue and then by the worker alone.
class CFTPTask {
public:
    struct Setting {
        FTPDestinationConnection destination;
        std::weak_ptr<CFTPTarget> target;
        FTPTimeouts timeouts;
        QString trustFolder = {}; // SessionSetting.h
    };

    explicit CFTPTask(Setting setting) : setting(std::move(setting)) {}
    virtual ~CFTPTask() = default;
    CFTPTask(const CFTPTask&) = delete;
    CFTPTask& operator=(const CFTPTask&) = delete;

    // Posts the started message at its begin and the finished one at its end. Throws nothing: every failure
    // becomes the result. The task is broken off, with the status 995, when abortEvent is signalled.
    void Execute(const std::shared_ptr<CEvent>& abortEvent);

    // The messages of a task that ends before it has begun.
    void Fail(int status);

protected:
    virtual FTPMessage MakeStartedMessage() const = 0;
    virtual FTPMessage MakeFinishedMessage(CTaskResult result) = 0;
    // The names that will be sent, beside those of the destination.
    virtual QStringList GetNames() const { return {}; }
    // Changes to the destination's directory, which isn't empty.
    virtual void EnterDirectory(FTPConversation& conversation);
    virtual void DoWork(FTPConversation& conversation) = 0;
    // The same at a server that isn't spoken to by FTP.
    virtual void DoSessionWork(CRemoteSession& session) = 0;
    // The directory that such a session is opened in.
    virtual QString GetSessionDirectory() const { return setting.destination.directory; }

    void Post(FTPMessage message) const;
    FTPDestinationConnection& GetDestination() { return setting.destination; }
    const std::weak_ptr<CFTPTarget>& GetTarget() const { return setting.target; }

private:
    void CheckNames() const;
    SessionSetting MakeSessionSetting(const std::shared_ptr<CEvent>& abortEvent) const;
    CTaskResult Converse(const std::shared_ptr<CEvent>& abortEvent);
    CTaskResult WorkOverSession(const std::shared_ptr<CEvent>& abortEvent);
    void Try(const std::function<void()>& work, CTaskResult& result) const;

    Setting setting;
};

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
