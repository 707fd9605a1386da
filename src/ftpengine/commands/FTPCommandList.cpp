#include "ftpengine/commands/FTPCommandList.h"

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/Socket.h"
#include "ftpengine/net/SocketBuffer.h"

// What the worker works on. The buffer may be read when the worker has ended.
class CListReceiver {
public:
    CListReceiver(const sockaddr_in& address, std::chrono::milliseconds connectTimeout)
        : address(address), connectTimeout(connectTimeout)
    {}

    // The worker's body. Signals the abort event if it fails; its failure's own number is not passed on.
    void Run(CEvent& abortEvent);

    std::string_view GetListing() const { return buffer.GetText(); }

private:
    void Connect(const CEvent& abortEvent);
    void ReceiveListing(const CEvent& abortEvent);
    std::size_t ReceiveOnce(const CEvent& abortEvent);

    const sockaddr_in address;
    const std::chrono::milliseconds connectTimeout;
    CSocket socket;
    CSocketBuffer buffer;
};

namespace {

// A server that lists without end must not fill the memory.
constexpr std::size_t maximalListingSize = 64 * 1024 * 1024;

} // namespace

void CListReceiver::Run(CEvent& abortEvent)
{
    try {
        Connect(abortEvent);
        ReceiveListing(abortEvent);
    } catch (int) {
        abortEvent.Set();
    } catch (const std::bad_alloc&) {
        abortEvent.Set();
    }
    socket.Close();
}

void CListReceiver::Connect(const CEvent& abortEvent)
{
    if (const int error = socket.Create()) {
        ThrowTraced("List, WSASocket throws: ", error);
    }
    if (const int error = socket.Connect(address, connectTimeout, &abortEvent)) {
        ThrowTraced("List, WSAConnect throws: ", error);
    }
}

void CListReceiver::ReceiveListing(const CEvent& abortEvent)
{
    while (const std::size_t count = ReceiveOnce(abortEvent)) {
        // Only a full receive moves the position, and a short one would be overwritten by the next;
        // ReceiveOnce comes short at the end only.
        if (count == CSocketBuffer::ReceiveSize) {
            if (buffer.GetCapacity() >= maximalListingSize) {
                ThrowTraced("List, WSARecv throws: ", EngineStatus::MessageTooLong);
            }
            buffer.Grow();
        }
    }
}

// Complete when its room is full or the peer has closed.
std::size_t CListReceiver::ReceiveOnce(const CEvent& abortEvent)
{
    std::size_t count = 0;
    while (count < CSocketBuffer::ReceiveSize) {
        if (WaitForFirst({UntilSet(abortEvent), {socket.GetDescriptor()}}, NoLimit) == WaitResult::First) {
            ThrowTracedLiterally("List, WSAWaitForMultipleEvents aborted", EngineStatus::Aborted);
        }
        const SocketResult result =
            socket.Receive(buffer.GetReceivePosition() + count, CSocketBuffer::ReceiveSize - count);
        if (result.error != 0) {
            ThrowTraced("List, WSARecv throws: ", result.error);
        }
        if (result.bytes == 0 && !result.wouldBlock) {
            break;
        }
        count += result.bytes;
    }
    return count;
}

CFTPCommandList::CFTPCommandList(std::string_view verb, const sockaddr_in& address,
                                 const FTPTimeouts& timeouts)
    : CFTPCommand(verb),
      receiver(std::make_shared<CListReceiver>(address, timeouts.dataStall)),
      driver(timeouts.stopWorker)
{}

CFTPCommandList::~CFTPCommandList()
{
    StopWorker();
}

FTPReply CFTPCommandList::Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                                  Milliseconds sendTimeout, Milliseconds receiveTimeout)
{
    workerAbort = abortEvent;
    const auto run = [receiver = receiver, abortEvent](const std::shared_ptr<CEvent>&) {
        receiver->Run(*abortEvent);
    };
    if (driver.Start(run, true) == CThreadDriver::StartResult::Failed) {
        throw EngineStatus::NoBufferSpace;
    }
    const FTPReply reply = CFTPCommand::Execute(stream, abortEvent, sendTimeout, receiveTimeout);
    if (reply.GetGroup() != 2) {
        abortEvent->Set();
    }
    return StopWorker() ? FTPReply{.code = EngineStatus::TimedOut, .text = {}} : reply;
}

// True if the worker had to be abandoned. Its task has failed then, so the abort event is used once more, to
// end it soon.
bool CFTPCommandList::StopWorker()
{
    const bool abandoned = driver.Stop();
    if (abandoned) {
        workerAbort->Set();
    }
    return abandoned;
}

std::string_view CFTPCommandList::GetListing() const
{
    return receiver->GetListing();
}
