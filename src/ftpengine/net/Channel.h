#pragma once

#include <memory>

#include "ftpengine/net/Event.h"
#include "ftpengine/net/Socket.h"
#include "ftpengine/net/TlsConnection.h"

// A connection that bytes go over: in clear at first, by TLS once it is protected. Never waits. Owned by
// whoever speaks on it, and used on one thread.
class CChannel {
public:
    CChannel() = default; // none
    explicit CChannel(CSocket socket) : socket(std::move(socket)) {}

    // From here on by TLS; the bytes go when Handshake has come to its end, which it has when it doesn't
    // block any more. Throws an int, 12157, if there is no TLS to be had.
    void Protect(CTlsClient& client, CTlsConnection::Role role);
    SocketResult Handshake();
    // None in clear.
    const CTlsConnection* GetTls() const { return tls.get(); }

    // No bytes and no error: the peer has closed.
    SocketResult Receive(char* bytes, std::size_t size);
    // After it would block, the same bytes have to come again.
    SocketResult Send(const char* bytes, std::size_t size);
    // What to wait for after a call that would block.
    WaitedDescriptor GetWanted() const { return {socket.GetDescriptor(), wantsWrite}; }

    // Tells the peer that all has been sent. May block.
    SocketResult EndSending();
    // Closes in such a way that the peer doesn't take what it has got for the whole.
    void Reset();

    CSocket& GetSocket() { return socket; }
    const CSocket& GetSocket() const { return socket; }

private:
    SocketResult Noted(const SocketResult& result, bool sending);

    CSocket socket;
    std::unique_ptr<CTlsConnection> tls;
    bool wantsWrite = false;
};
