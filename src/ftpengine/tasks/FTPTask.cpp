#include "ftpengine/tasks/FTPTask.h"

#include <algorithm>

#include "ftpengine/commands/FTPCommandSequences.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/session/FTPLogin.h"
#include "ftpengine/session/OpenRemoteSession.h"

namespace {

// The goodbye is a courtesy: nobody sees it, and its failure fails nothing.
void Quit(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent)
{
    CFTPCommandSequence::Transcript unseen;
    try {
        CFTPCommandSequenceQuit(stream, abortEvent, unseen).Run();
    } catch (int error) {
        TraceNumber("Quit throws: ", error);
    } catch (const FTPReply& refusal) {
        TraceNumber("Quit throws: ", refusal.code);
    }
}

} // namespace

void CFTPTask::Execute(const std::shared_ptr<CEvent>& abortEvent)
{
    Post(MakeStartedMessage());
    const bool isSftp = setting.destination.protocol == ServerProtocol::Sftp;
    Post(MakeFinishedMessage(isSftp ? WorkOverSession(abortEvent) : Converse(abortEvent)));
}

SessionSetting CFTPTask::MakeSessionSetting(const std::shared_ptr<CEvent>& abortEvent) const
{
    return {.destination = setting.destination,
            .timeouts = setting.timeouts,
            .abortEvent = abortEvent,
            .trustFolder = setting.trustFolder};
}

CTaskResult CFTPTask::Converse(const std::shared_ptr<CEvent>& abortEvent)
{
    CTaskResult result;
    CSocketStream stream(setting.timeouts);
    SessionLog log;
    FTPConversation conversation{stream, abortEvent, log.transcript, result.reply};
    const auto work = [&] {
        result.reply = ConnectAndLogIn(MakeSessionSetting(abortEvent), stream, log);
        if (!setting.destination.directory.isEmpty()) {
            EnterDirectory(conversation);
        }
        DoWork(conversation);
    };
    Try(work, result);
    result.transcript = std::move(log.transcript);
    result.identity = std::move(log.identity);
    // After a refusal, too; not after a failure of the network or a cancel.
    if (result.status == 0) {
        Quit(stream, abortEvent);
    }
    return result;
}

CTaskResult CFTPTask::WorkOverSession(const std::shared_ptr<CEvent>& abortEvent)
{
    CTaskResult result;
    SessionSetting sessionSetting = MakeSessionSetting(abortEvent);
    sessionSetting.destination.directory = GetSessionDirectory();
    SessionLog log;
    const auto work = [&] {
        const auto session = OpenRemoteSession(sessionSetting, log);
        DoSessionWork(*session);
        session->Quit();
    };
    Try(work, result);
    result.transcript = std::move(log.transcript);
    result.identity = std::move(log.identity);
    return result;
}

void CFTPTask::Try(const std::function<void()>& work, CTaskResult& result) const
{
    try {
        CheckNames();
        work();
    } catch (int error) {
        result.status = error;
    } catch (const FTPReply& refusal) {
        result.reply = refusal;
    } catch (const std::bad_alloc&) {
        result.status = EngineStatus::NoBufferSpace;
    }
}

void CFTPTask::Fail(int status)
{
    Post(MakeStartedMessage());
    CTaskResult result;
    result.status = status;
    Post(MakeFinishedMessage(std::move(result)));
}

void CFTPTask::EnterDirectory(FTPConversation& conversation)
{
    conversation.Run<CFTPCommandSequenceChangeDir>(setting.destination.directory);
}

void CFTPTask::Post(FTPMessage message) const
{
    PostTo(setting.target, std::move(message));
}

// Before anything is sent: a task with such a name would fail in its middle otherwise.
void CFTPTask::CheckNames() const
{
    const FTPDestinationConnection& destination = setting.destination;
    const QStringList names = GetNames() << destination.userName << destination.directory;
    const bool isAnyBroken =
        std::any_of(names.begin(), names.end(), [](const QString& name) { return BreaksLine(name); });
    if (isAnyBroken || BreaksLine(destination.password.GetView())) {
        ThrowTraced("CheckNames throws: ", EngineStatus::InvalidName);
    }
}

void CFTPTaskRunner::Start(std::shared_ptr<CFTPTask> task)
{
    const auto run = [task](const std::shared_ptr<CEvent>& stop) {
        task->Execute(stop);
    };
    if (driver.Start(run, true) == CThreadDriver::StartResult::Failed) {
        task->Fail(EngineStatus::NoBufferSpace);
    }
}
