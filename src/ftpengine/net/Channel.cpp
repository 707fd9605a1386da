#include "ftpengine/net/Channel.h"

void CChannel::Protect(CTlsClient& client, CTlsConnection::Role role)
{
    tls = std::make_unique<CTlsConnection>(client, socket.GetDescriptor(), role);
}

SocketResult CChannel::Handshake()
{
    return Noted(tls->Handshake(), false);
}

SocketResult CChannel::Receive(char* bytes, std::size_t size)
{
    return Noted(tls ? tls->Receive(bytes, size) : socket.Receive(bytes, size), false);
}

SocketResult CChannel::Send(const char* bytes, std::size_t size)
{
    return Noted(tls ? tls->Send(bytes, size) : socket.Send(bytes, size), true);
}

SocketResult CChannel::EndSending()
{
    const SocketResult result = tls ? Noted(tls->EndSending(), true) : SocketResult{};
    if (!result.wouldBlock && result.error == 0) {
        socket.EndSending();
    }
    return result;
}

void CChannel::Reset()
{
    tls.reset();
    socket.Reset();
}

SocketResult CChannel::Noted(const SocketResult& result, bool sending)
{
    wantsWrite = tls ? tls->WantsWrite() : sending;
    return result;
}
