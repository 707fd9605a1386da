#include "ftpengine/commands/TransferExchange.h"

#include <algorithm>

#include "ftpengine/commands/FTPCommand.h"
#include "ftpengine/messages/EngineStatus.h"

FTPReply CTransferExchange::Run(std::string_view command)
{
    transfer.Begin();
    stream.Send(stream.GetTimeouts().send, command);
    lastHeard = Clock::now();
    FTPReply reply = AwaitReply();
    if (reply.GetGroup() == 2) {
        AwaitEnd();
    } else {
        transfer.GiveUp(EngineStatus::Aborted);
    }
    return reply;
}

FTPReply CTransferExchange::AwaitReply()
{
    CPreliminaryReplies preliminary(NoLimit); // the transfer may take its time
    std::size_t received = stream.GetReceived();
    for (;;) {
        const bool isReady = transfer.Advance();
        if (const auto bytes = stream.TryReceive()) {
            lastHeard = Clock::now();
            if (!preliminary.Includes(*bytes)) {
                return ReadReply(*bytes);
            }
            continue;
        }
        if (stream.GetReceived() != received) {
            received = stream.GetReceived();
            lastHeard = Clock::now();
        }
        if (!WaitUntil(GetDeadline(), true, isReady)) {
            if (auto reply = HandleTimeout()) {
                return *std::move(reply);
            }
        }
    }
}

void CTransferExchange::AwaitEnd()
{
    while (!transfer.IsOver()) {
        const bool isReady = transfer.Advance();
        if (!transfer.IsOver() && !WaitUntil(GetDeadline(), false, isReady)) {
            transfer.GiveUp(EngineStatus::TimedOut);
        }
    }
    if (transfer.GetFailure() != 0 && lastWords) {
        throw transfer.GetFailure();
    }
}

CTransferExchange::Clock::time_point CTransferExchange::GetDeadline() const
{
    const FTPTimeouts& timeouts = stream.GetTimeouts();
    if (!transfer.IsOver()) {
        return transfer.GetLastProgress() + timeouts.dataStall;
    }
    const bool hasFailed = transfer.GetFailure() != 0;
    if (hasFailed && lastWords) {
        return transfer.GetLastProgress() + *lastWords;
    }
    return std::max(lastHeard, transfer.GetLastProgress()) +
           (transfer.IsSending() && !hasFailed ? timeouts.afterData : timeouts.reply);
}

// False when the deadline has passed. listens: also to the control connection. isReady: there is more to be
// done at once.
bool CTransferExchange::WaitUntil(Clock::time_point deadline, bool listens, bool isReady)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    const auto timeout = isReady ? std::chrono::milliseconds(0) : std::max(left, {});
    const WaitedDescriptor abort = UntilSet(stream.GetAbortEvent());
    // Where there is one thing to wait for, it is named twice.
    const WaitedDescriptor other = listens ? stream.GetWanted() : transfer.GetWanted();
    const WaitedDescriptor data = transfer.IsOver() ? other : transfer.GetWanted();
    const WaitResult result = WaitForFirst({abort, other, data}, timeout);
    if (result == WaitResult::First) {
        transfer.GiveUp(EngineStatus::Aborted);
        ThrowTracedLiterally("Receive, WaitForMultipleObjects aborted", EngineStatus::Aborted);
    }
    return isReady || result != WaitResult::TimedOut;
}

std::optional<FTPReply> CTransferExchange::HandleTimeout()
{
    if (!transfer.IsOver()) {
        transfer.GiveUp(EngineStatus::TimedOut);
        return std::nullopt;
    }
    if (const auto line = stream.TakeLineWithoutEnd()) {
        return ReadReply(*line);
    }
    if (transfer.GetFailure() != 0 && lastWords) {
        throw transfer.GetFailure();
    }
    ThrowTracedLiterally("Receive, WaitForMultipleObjects timed out", EngineStatus::TimedOut);
}
