#include "ftpengine/commands/FTPCommandSequence.h"

#include <algorithm>
#include <utility>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"

CFTPCommandSequence::CFTPCommandSequence(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                                         Transcript& transcript)
    : stream(stream), abortEvent(abortEvent), transcript(transcript)
{}

FTPReply CFTPCommandSequence::ExecuteCurrentSequence()
{
    const std::list<CFTPCommand*> running = std::exchange(commands, {});
    if (!std::all_of(running.begin(), running.end(),
                     [](const CFTPCommand* one) { return one->IsOneLine(); })) {
        ThrowTraced("ExecuteCurrentSequence throws: ", EngineStatus::InvalidName);
    }
    FTPReply reply;
    for (CFTPCommand* const command : running) {
        reply = ExecuteCommand(*command);
    }
    return reply;
}

FTPReply CFTPCommandSequence::Execute(CFTPCommand& command)
{
    Queue(command);
    return ExecuteCurrentSequence();
}

FTPReply CFTPCommandSequence::ExecuteCommand(CFTPCommand& command)
{
    transcript.push_back(Widen(command.GetShownText()));
    const FTPReply reply = command.Execute(stream, abortEvent, GetTimeouts().send, GetTimeouts().reply);
    transcript.push_back(reply.text);
    switch (reply.GetGroup()) {
    case 2:
    case 3:
        return reply;
    case 4:
    case 5:
        TraceNumber("ExecuteCurrentSequence throws: ", reply.code);
        throw reply;
    default:
        ThrowTracedLiterally("ExecuteCurrentSequence unknown group", EngineStatus::UnknownReply);
    }
}
