#include "ftpengine/net/SocketStream.h"

#include <algorithm>
#include <utility>

#include "common/Trace.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// A server that speaks without end must not fill the memory.
constexpr std::size_t maximalReplySize = 1024 * 1024;
// RFC 959, 4.2.1: the service closes the control connection. May come unasked.
constexpr int32_t serviceNotAvailable = 421;

milliseconds LeftOf(milliseconds timeout, Clock::time_point begin)
{
    if (timeout == NoLimit) {
        return NoLimit;
    }
    return std::max(timeout - std::chrono::duration_cast<milliseconds>(Clock::now() - begin), {});
}

std::string UpToZero(std::string reply)
{
    reply.resize(std::min(reply.find('\0'), reply.size()));
    return reply;
}

} // namespace

CSocketStream::~CSocketStream()
{
    if (channel.GetTls() != nullptr) {
        channel.EndSending(); // RFC 8446, 6.1: each side says when it has no more to say; nobody waits for it
    }
}

void CSocketStream::Open(CSocket connected, const std::shared_ptr<CEvent>& abort)
{
    abortEvent = abort;
    channel = CChannel(std::move(connected));
}

void CSocketStream::Protect(std::unique_ptr<CTlsClient> client)
{
    incoming = {};
    tls = std::move(client);
    channel.Protect(*tls, CTlsConnection::Role::Control);
    const Clock::time_point begin = Clock::now();
    for (SocketResult result = channel.Handshake(); result.wouldBlock || result.error != 0;
         result = channel.Handshake()) {
        if (result.error != 0) {
            ThrowTraced("Protect throws: ", result.error);
        }
        switch (WaitForFirst({UntilSet(*abortEvent), channel.GetWanted()}, LeftOf(timeouts.reply, begin))) {
        case WaitResult::First:
            ThrowTraced("Protect throws: ", EngineStatus::Aborted);
        case WaitResult::TimedOut:
            ThrowTraced("Protect throws: ", EngineStatus::TimedOut);
        case WaitResult::Second:
        case WaitResult::Third:
            break;
        }
    }
}

void CSocketStream::Send(milliseconds timeout, std::string_view bytes)
{
    if (bytes.empty()) {
        return;
    }
    PassOverOldReplies();
    // The name of the text, not the text: a trace must never show a password.
    Trace(QStringLiteral("CA2CT(buf.buf)"));
    const Clock::time_point begin = Clock::now();
    for (;;) {
        const SocketResult result = channel.Send(bytes.data(), bytes.size());
        if (result.error != 0 && farewell.empty()) {
            ThrowTraced("Send, WSASend throws: ", result.error);
        }
        bytes.remove_prefix(result.bytes);
        if (bytes.empty() || result.error != 0) {
            return; // also when the server has said why it doesn't listen any more: that is its reply
        }
        switch (WaitForFirst({channel.GetWanted(), UntilSet(*abortEvent)}, LeftOf(timeout, begin))) {
        case WaitResult::Second:
            ThrowTracedLiterally("Send, WSAWaitForMultipleEvents aborted", EngineStatus::Aborted);
        case WaitResult::TimedOut:
            ThrowTracedLiterally("Send, WSAWaitForMultipleEvents timed out", EngineStatus::TimedOut);
        case WaitResult::First:
        case WaitResult::Third:
            break;
        }
    }
}

std::string CSocketStream::Receive(milliseconds timeout)
{
    Clock::time_point lastByte = Clock::now();
    std::size_t before = received;
    for (;;) {
        if (auto reply = TryReceive()) {
            return *std::move(reply);
        }
        if (received != before) {
            before = received;
            lastByte = Clock::now();
        }
        WaitResult result = WaitResult::TimedOut;
        try {
            result = WaitForFirst({UntilSet(*abortEvent), GetWanted()}, LeftOf(timeout, lastByte));
        } catch (int error) {
            ThrowTraced("Receive, WaitForSingleObject throws: ", error);
        }
        if (result == WaitResult::First) {
            ThrowTracedLiterally("Receive, WaitForMultipleObjects aborted", EngineStatus::Aborted);
        }
        if (result == WaitResult::TimedOut) {
            if (auto line = TakeLineWithoutEnd()) {
                return *std::move(line);
            }
            ThrowTracedLiterally("Receive, WaitForMultipleObjects timed out", EngineStatus::TimedOut);
        }
    }
}

std::optional<std::string> CSocketStream::TryReceive()
{
    for (;;) {
        if (auto reply = incoming.Take()) {
            return UpToZero(*std::move(reply));
        }
        if (end != End::None) {
            return UpToZero(TakeEnd());
        }
        if (incoming.GetSize() >= maximalReplySize) {
            ThrowTraced("ReceiveCycle, WSARecv throws: ", EngineStatus::MessageTooLong);
        }
        if (!ReadSome()) {
            return std::nullopt;
        }
    }
}

std::optional<std::string> CSocketStream::TakeLineWithoutEnd()
{
    if (!incoming.HasLineWithoutEnd()) {
        return std::nullopt;
    }
    return UpToZero(incoming.TakeRest());
}

SocketAddress CSocketStream::GetPeer() const
{
    const auto peer = channel.GetSocket().GetPeer();
    if (!peer) {
        ThrowTraced("GetPeer throws: ", EngineStatus::ConnectionReset);
    }
    return *peer;
}

// False if it would have to wait.
bool CSocketStream::ReadSome()
{
    char bytes[4096];
    const SocketResult result = channel.Receive(bytes, sizeof bytes);
    if (result.wouldBlock) {
        return false;
    }
    if (result.error != 0) {
        TraceNumber("ReceiveCycle, WSARecv throws: ", result.error);
        failure = result.error;
        end = End::Broken;
        return true;
    }
    Trace(QStringLiteral("Bytes received: %1").arg(result.bytes));
    // The name of the text, not the text: so no trace shows what a server and a user say to each other.
    Trace(QStringLiteral("CA2CT(buf.bufstart)"));
    if (result.bytes == 0) {
        end = End::Closed;
    }
    received += result.bytes;
    incoming.Append({bytes, result.bytes});
    return true;
}

// What there is to say when no more will come.
std::string CSocketStream::TakeEnd()
{
    if (incoming.GetSize() > 0) {
        return incoming.TakeRest();
    }
    if (!farewell.empty()) {
        return std::exchange(farewell, {});
    }
    if (end == End::Closed) {
        end = End::ClosedAndTold;
        return {};
    }
    const int status = end == End::Broken ? failure : EngineStatus::ConnectionReset;
    Trace(QStringLiteral("Receive throws m_iStatus: %1").arg(status)); // odd on purpose: without quotes
    throw status;
}

void CSocketStream::PassOverOldReplies()
{
    const std::size_t before = received;
    bool goesOn = true;
    while (goesOn) {
        while (const auto reply = incoming.Take()) {
            if (ReadReply(*reply).code == serviceNotAvailable) {
                farewell = *reply;
            }
        }
        if (received - before >= maximalReplySize) {
            ThrowTraced("ReceiveCycle, WSARecv throws: ", EngineStatus::MessageTooLong);
        }
        goesOn = end == End::None && ReadSome();
    }
    incoming.PassOverBegun();
}
