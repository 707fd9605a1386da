#pragma once

#include <memory>

#include "ftpengine/net/Socket.h"
#include "ftpengine/net/TlsClient.h"
#include "ftpengine/session/ServerIdentity.h"

struct ssl_st;

// TLS on one socket, for this side (RFC 8446, RFC 5246). Never waits. Owned by the channel over that socket
// and used on its thread; the client has to live as long.
class CTlsConnection {
public:
    enum class Role {
        Control, // gives the session that the others resume; its end need not be signed, as each reply has
                 // an end of its own
        Data,    // resumes it; without the signed end what has come is a part
    };

    // descriptor: stays the owner's. Throws an int, 12157.
    CTlsConnection(CTlsClient& client, int descriptor, Role role);
    ~CTlsConnection();
    CTlsConnection(const CTlsConnection&) = delete;
    CTlsConnection& operator=(const CTlsConnection&) = delete;

    // To be repeated until it doesn't block. 12157 if the two sides don't agree, or the server breaks off.
    SocketResult Handshake();
    // No bytes and no error: the end of what the server sends, proven in the role Data.
    SocketResult Receive(char* bytes, std::size_t size);
    // After it would block, the same bytes have to come again.
    SocketResult Send(const char* bytes, std::size_t size);
    // Tells the server, in a way that it can prove, that nothing more will come (close_notify).
    SocketResult EndSending();
    // What to wait for after a call that would block: TLS may have to send before it can receive.
    bool WantsWrite() const;

    // The session of the control connection goes on; so this is the server that has shown its certificate
    // there.
    bool IsResumed() const;
    // Of the certificate that the server has shown, without server and port. After the handshake.
    ServerIdentity GetIdentity() const;

private:
    struct Wire;
    struct Free {
        void operator()(ssl_st* connection) const;
    };

    SocketResult ResultOf(int returned, std::size_t bytes);

    CTlsClient& client;
    const std::unique_ptr<Wire> wire;
    std::unique_ptr<ssl_st, Free> connection;
};
