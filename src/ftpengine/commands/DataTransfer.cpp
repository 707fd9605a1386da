#include "ftpengine/commands/DataTransfer.h"

#include "ftpengine/messages/EngineStatus.h"

namespace {

// As many moves as are made before the control connection gets a look.
constexpr int movesAtOnce = 16;
constexpr std::size_t receiveSize = 64 * 1024;

void ThrowIfFailed(const SocketResult& result)
{
    if (result.error != 0) {
        throw result.error;
    }
}

} // namespace

CDataTransfer::~CDataTransfer()
{
    if (!IsOver()) {
        channel.Reset();
    }
}

void CDataTransfer::Begin()
{
    lastProgress = Clock::now();
    state = State::Connecting;
    CSocket socket;
    int error = socket.Create(endpoint.address.GetFamily());
    if (error == 0) {
        error = socket.BeginConnect(endpoint.address).error;
    }
    channel = CChannel(std::move(socket));
    if (error != 0) {
        GiveUp(error);
    }
}

bool CDataTransfer::Advance()
{
    try {
        for (int i = 0; i < movesAtOnce && !IsOver(); ++i) {
            if (Step() == Moved::MustWait) {
                return false;
            }
            lastProgress = Clock::now();
        }
    } catch (int error) {
        GiveUp(error);
    } catch (const std::bad_alloc&) {
        GiveUp(EngineStatus::NoBufferSpace);
    }
    return !IsOver();
}

WaitedDescriptor CDataTransfer::GetWanted() const
{
    return state == State::Connecting ? WaitedDescriptor{channel.GetSocket().GetDescriptor(), true}
                                      : channel.GetWanted();
}

void CDataTransfer::GiveUp(int status)
{
    if (IsOver()) {
        return;
    }
    TraceFailure(state, status);
    failure = status;
    lastProgress = Clock::now();
    channel.Reset();
}

void CDataTransfer::TraceFailure(State in, int status) const
{
    TraceNumber(in == State::Connecting ? "DataTransfer, connecting throws: " : "DataTransfer throws: ",
                status);
}

CDataTransfer::Moved CDataTransfer::Step()
{
    switch (state) {
    case State::Connecting:
        return Connect();
    case State::Protecting:
        return Protect();
    case State::Moving: {
        const Moved moved = Move(channel);
        if (moved == Moved::All) {
            state = State::Ending;
        }
        return moved;
    }
    case State::Ending:
        return End();
    case State::Unborn:
    case State::Finished:
        break;
    }
    return Moved::MustWait;
}

CDataTransfer::Moved CDataTransfer::Connect()
{
    if (WaitForFirst({GetWanted()}, std::chrono::milliseconds(0)) == WaitResult::TimedOut) {
        return Moved::MustWait;
    }
    if (const int error = channel.GetSocket().EndConnect()) {
        throw error;
    }
    state = State::Moving;
    if (endpoint.tls != nullptr) {
        channel.Protect(*endpoint.tls, CTlsConnection::Role::Data);
        state = State::Protecting;
    }
    return Moved::Some;
}

CDataTransfer::Moved CDataTransfer::Protect()
{
    const SocketResult result = channel.Handshake();
    ThrowIfFailed(result);
    if (result.wouldBlock) {
        return Moved::MustWait;
    }
    // Another server, or somebody on the way, could have come first to the port.
    const CTlsConnection& tls = *channel.GetTls();
    if (!tls.IsResumed() && tls.GetIdentity().fingerprint != endpoint.tls->GetFingerprint()) {
        throw EngineStatus::TlsFailed;
    }
    state = State::Moving;
    return Moved::Some;
}

// The socket stays open, and what the server may still say on it unread, until the transfer is destroyed,
// after its reply: closing it earlier could break the connection with the last bytes still on their way.
CDataTransfer::Moved CDataTransfer::End()
{
    const SocketResult result = channel.EndSending();
    if (IsSending()) {
        ThrowIfFailed(result);
    }
    if (result.wouldBlock) {
        return Moved::MustWait;
    }
    state = State::Finished;
    return Moved::Some;
}

CDataTransfer::Moved CDataReceiver::Move(CChannel& channel)
{
    const std::size_t before = bytes.size();
    bytes.resize(before + receiveSize);
    const SocketResult result = channel.Receive(bytes.data() + before, receiveSize);
    bytes.resize(before + result.bytes);
    ThrowIfFailed(result);
    if (bytes.size() > maximum) {
        throw EngineStatus::MessageTooLong;
    }
    if (result.wouldBlock) {
        return Moved::MustWait;
    }
    return result.bytes == 0 ? Moved::All : Moved::Some;
}
