#include "ftpengine/net/SocketStream.h"

#include "common/Trace.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/SocketReader.h"

CSocketStream::CSocketStream(const FTPTimeouts& timeouts) : timeouts(timeouts), driver(timeouts.stopWorker) {}

CSocketStream::~CSocketStream()
{
    // First, so that the reader doesn't stay in its receive, which has no time-out.
    if (reader) {
        reader->RequestEnd();
    }
    driver.Stop();
}

void CSocketStream::Open(CSocket connected, const std::shared_ptr<CEvent>& abort)
{
    abortEvent = abort;
    reader = std::make_shared<CSocketReader>(std::move(connected), timeouts.segmentSilence);
    const auto run = [reader = reader](const std::shared_ptr<CEvent>&) {
        reader->Run();
    };
    if (driver.Start(run, false) != CThreadDriver::StartResult::Started) {
        throw EngineStatus::NoBufferSpace;
    }
}

void CSocketStream::Send(std::chrono::milliseconds timeout, std::string_view bytes)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    // The name of the text, not the text: a trace must never show a password.
    Trace(QStringLiteral("CA2CT(buf.buf)"));
    CSocket& socket = reader->GetSocket();
    for (;;) {
        const SocketResult result = socket.Send(bytes.data(), bytes.size());
        if (result.error != 0) {
            ThrowTraced("Send, WSASend throws: ", result.error);
        }
        bytes.remove_prefix(result.bytes);
        if (bytes.empty()) {
            return;
        }
        const auto used = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
        const auto left = timeout == NoLimit ? NoLimit : std::max(timeout - used, {});
        switch (WaitForFirst({{socket.GetDescriptor(), true}, UntilSet(*abortEvent)}, left)) {
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

void CSocketStream::Receive(std::chrono::milliseconds timeout, CSocketBuffer& chunk)
{
    WaitResult result = WaitResult::TimedOut;
    try {
        result = WaitForFirst({UntilSet(reader->GetDataEvent()), UntilSet(*abortEvent)}, timeout);
    } catch (int error) {
        ThrowTraced("Receive, WaitForSingleObject throws: ", error);
    }
    if (result == WaitResult::TimedOut) {
        ThrowTracedLiterally("Receive, WaitForMultipleObjects timed out", EngineStatus::TimedOut);
    }
    if (result == WaitResult::Second) {
        ThrowTracedLiterally("Receive, WaitForMultipleObjects aborted", EngineStatus::Aborted);
    }
    chunk = reader->TakeChunk();
}
