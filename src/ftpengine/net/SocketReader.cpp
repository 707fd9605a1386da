#include "ftpengine/net/SocketReader.h"

#include <new>

#include "common/Trace.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/Event.h"

namespace {

// A server that speaks without end must not fill the memory.
constexpr std::size_t maximalChunkSize = 256 * 1024;
constexpr std::size_t maximalWaitingChunks = 64;

} // namespace

CSocketReader::CSocketReader(CSocket socket, std::chrono::milliseconds segmentSilence)
    : socket(std::move(socket)), segmentSilence(segmentSilence)
{
    roomEvent.Set();
}

void CSocketReader::Run()
{
    try {
        while (!peerClosed) {
            WaitForRoom();
            CSocketBuffer buffer;
            ReceiveCycle(buffer);
            Append(buffer);
        }
    } catch (int error) {
        Fail(error);
    } catch (const std::bad_alloc&) {
        Fail(EngineStatus::NoBufferSpace);
    }
}

void CSocketReader::ReceiveCycle(CSocketBuffer& buffer)
{
    constexpr std::size_t size = CSocketBuffer::ReceiveSize;
    CReplyLines lines;
    for (;;) {
        const std::size_t count = ReceiveOnce(buffer, lines);
        Trace(QStringLiteral("Bytes received: %1").arg(count));
        // The name of the text, not the text: so no trace shows what a server and a user say to each other.
        Trace(QStringLiteral("CA2CT(buf.bufstart)"));
        char* const bytes = buffer.GetReceivePosition();
        // Odd on purpose: a full receive also ends a chunk if the last byte but one is a carriage return,
        // whatever the last one is.
        if (count != size || bytes[size - 1] == '\n' || bytes[size - 2] == '\r') {
            bytes[count] = '\0';
            return;
        }
        if (buffer.GetCapacity() >= maximalChunkSize) {
            ThrowTraced("ReceiveCycle, WSARecv throws: ", EngineStatus::MessageTooLong);
        }
        buffer.Grow();
    }
}

// One receive is complete when the server has finished speaking, when its room is full, after a silence, or
// at the peer's close; so a reply that comes in several segments is one receive, and a short reply is never
// delayed. Returns the number of bytes.
std::size_t CSocketReader::ReceiveOnce(CSocketBuffer& buffer, CReplyLines& lines)
{
    std::size_t count = 0;
    while (count < CSocketBuffer::ReceiveSize) {
        const bool begun = count > 0;
        if (WaitForFirst({UntilSet(ending), {socket.GetDescriptor()}}, begun ? segmentSilence : NoLimit) ==
            WaitResult::TimedOut) {
            break;
        }
        if (ending.IsSet()) {
            throw EngineStatus::Aborted;
        }
        char* const position = buffer.GetReceivePosition() + count;
        const SocketResult result = socket.Receive(position, CSocketBuffer::ReceiveSize - count);
        if (result.error != 0) {
            ThrowTraced("ReceiveCycle, WSARecv throws: ", result.error);
        }
        if (result.wouldBlock) {
            continue;
        }
        count += result.bytes;
        lines.Feed({position, result.bytes});
        // With bytes before it, the close is left for the next chunk, which is then empty.
        peerClosed = count == 0 && buffer.GetCapacity() == CSocketBuffer::ReceiveSize;
        if (result.bytes == 0 || lines.IsAtEnd()) {
            break;
        }
    }
    return count;
}

void CSocketReader::Append(const CSocketBuffer& chunk)
{
    const CMutexLock lock(queueLock);
    chunks.push_back(chunk);
    ended = peerClosed;
    dataEvent.Set();
    if (chunks.size() >= maximalWaitingChunks) {
        roomEvent.Reset();
    }
}

void CSocketReader::Fail(int error)
{
    const CMutexLock lock(queueLock);
    status = error;
    dataEvent.Set();
}

void CSocketReader::WaitForRoom()
{
    if (WaitForFirst({UntilSet(ending), UntilSet(roomEvent)}, NoLimit) == WaitResult::First) {
        throw EngineStatus::Aborted;
    }
}

CSocketBuffer CSocketReader::TakeChunk()
{
    const CMutexLock lock(queueLock);
    if (status == 0 && chunks.empty()) {
        status = EngineStatus::ConnectionReset;
    }
    if (status != 0) {
        Trace(QStringLiteral("Receive throws m_iStatus: %1").arg(status)); // odd on purpose: without quotes
        throw status;
    }
    CSocketBuffer chunk = std::move(chunks.front());
    chunks.pop_front();
    roomEvent.Set();
    // After the close the event stays up: whoever waits again is told at once.
    if (chunks.empty() && !ended) {
        dataEvent.Reset();
    }
    return chunk;
}
