#include "ftpengine/commands/FTPCommandList.h"

#include "ftpengine/commands/TransferExchange.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

// A server that lists without end must not fill the memory.
constexpr std::size_t maximalListingSize = 64 * 1024 * 1024;

} // namespace

class CFTPCommandList::CReceiver final : public CDataReceiver {
public:
    explicit CReceiver(const DataEndpoint& endpoint) : CDataReceiver(endpoint, maximalListingSize) {}

protected:
    void TraceFailure(State in, int status) const override
    {
        if (status == EngineStatus::Aborted) {
            TraceLiterally("List, WSAWaitForMultipleEvents aborted");
        } else {
            TraceNumber(in == State::Connecting ? "List, WSAConnect throws: " : "List, WSARecv throws: ",
                        status);
        }
    }
};

CFTPCommandList::CFTPCommandList(std::string_view verb, const DataEndpoint& endpoint)
    : CFTPCommand(verb), receiver(std::make_unique<CReceiver>(endpoint))
{}

CFTPCommandList::~CFTPCommandList() = default;

FTPReply CFTPCommandList::Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                                  Milliseconds, Milliseconds)
{
    const FTPReply reply = CTransferExchange(stream, *receiver, Milliseconds(0)).Run(GetText());
    if (reply.GetGroup() != 2) {
        abortEvent->Set();
    }
    return reply;
}

std::string_view CFTPCommandList::GetListing() const
{
    const std::string_view bytes = receiver->GetBytes();
    return bytes.substr(0, bytes.find('\0'));
}
