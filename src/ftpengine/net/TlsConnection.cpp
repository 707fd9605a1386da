#include "ftpengine/net/TlsConnection.h"

#include <algorithm>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/TlsCertificate.h"

// Between OpenSSL and the socket. OpenSSL's own one would raise a signal when the connection breaks.
struct CTlsConnection::Wire {
    int descriptor = -1;
    int error = 0; // EngineStatus.h, of the last call that failed
    bool ended = false;

    static const BIO_METHOD* GetMethod();
    static int Read(BIO* bio, char* bytes, int size);
    static int Write(BIO* bio, const char* bytes, int size);

    int Note(BIO* bio, const SocketResult& result, void (*setRetry)(BIO*))
    {
        BIO_clear_retry_flags(bio);
        if (result.wouldBlock) {
            setRetry(bio);
            return -1;
        }
        error = result.error;
        return result.error != 0 ? -1 : static_cast<int>(result.bytes);
    }
};

int CTlsConnection::Wire::Read(BIO* bio, char* bytes, int size)
{
    Wire& wire = *static_cast<Wire*>(BIO_get_data(bio));
    const SocketResult result = ReceiveFrom(wire.descriptor, bytes, static_cast<std::size_t>(size));
    wire.ended = result.bytes == 0 && !result.wouldBlock && result.error == 0;
    return wire.Note(bio, result, [](BIO* retried) { BIO_set_retry_read(retried); });
}

int CTlsConnection::Wire::Write(BIO* bio, const char* bytes, int size)
{
    Wire& wire = *static_cast<Wire*>(BIO_get_data(bio));
    return wire.Note(bio, SendTo(wire.descriptor, bytes, static_cast<std::size_t>(size)),
                     [](BIO* retried) { BIO_set_retry_write(retried); });
}

const BIO_METHOD* CTlsConnection::Wire::GetMethod()
{
    static BIO_METHOD* const method = [] {
        BIO_METHOD* const made = BIO_meth_new(BIO_get_new_index() | BIO_TYPE_SOURCE_SINK, "wire");
        BIO_meth_set_read(made, Read);
        BIO_meth_set_write(made, Write);
        BIO_meth_set_ctrl(made, [](BIO* bio, int command, long, void*) -> long {
            if (command == BIO_CTRL_EOF) {
                return static_cast<Wire*>(BIO_get_data(bio))->ended ? 1 : 0;
            }
            return command == BIO_CTRL_FLUSH ? 1 : 0;
        });
        BIO_meth_set_create(made, [](BIO* bio) {
            BIO_set_init(bio, 1);
            return 1;
        });
        return made;
    }();
    return method;
}

void CTlsConnection::Free::operator()(ssl_st* connection) const
{
    SSL_free(connection);
}

CTlsConnection::CTlsConnection(CTlsClient& client, int descriptor, Role role)
    : client(client), wire(std::make_unique<Wire>()), connection(SSL_new(client.GetContext()))
{
    wire->descriptor = descriptor;
    BIO* const bio = BIO_new(Wire::GetMethod());
    if (!connection || bio == nullptr) {
        BIO_free(bio);
        ThrowTraced("TlsConnection throws: ", EngineStatus::TlsFailed);
    }
    BIO_set_data(bio, wire.get());
    SSL_set_bio(connection.get(), bio, bio);
    SSL_set_app_data(connection.get(), role == Role::Control ? &client : nullptr);
    SSL_set_connect_state(connection.get());
    if (!client.IsAddress()) { // RFC 6066, 3: names only
        SSL_set_tlsext_host_name(connection.get(), client.GetServer().c_str());
    }
    if (role == Role::Control) {
        SSL_set_options(connection.get(), SSL_OP_IGNORE_UNEXPECTED_EOF);
    } else if (const TlsSession session = client.CopySession()) {
        SSL_set_session(connection.get(), session.get());
    }
}

CTlsConnection::~CTlsConnection() = default;

SocketResult CTlsConnection::Handshake()
{
    ERR_clear_error();
    const int returned = SSL_do_handshake(connection.get());
    SocketResult result = ResultOf(returned, 0);
    if (!result.wouldBlock && returned != 1) {
        result.error = EngineStatus::TlsFailed;
    }
    return result;
}

SocketResult CTlsConnection::Receive(char* bytes, std::size_t size)
{
    ERR_clear_error();
    std::size_t count = 0;
    const int returned = SSL_read_ex(connection.get(), bytes, size, &count);
    return ResultOf(returned, count);
}

SocketResult CTlsConnection::Send(const char* bytes, std::size_t size)
{
    if (size == 0) {
        return {};
    }
    ERR_clear_error();
    std::size_t count = 0;
    const int returned = SSL_write_ex(connection.get(), bytes, size, &count);
    return ResultOf(returned, count);
}

SocketResult CTlsConnection::EndSending()
{
    ERR_clear_error();
    const int returned = SSL_shutdown(connection.get());
    // 0: said, and the server hasn't said so yet; nobody waits for that.
    return returned >= 0 ? SocketResult{} : ResultOf(returned, 0);
}

SocketResult CTlsConnection::ResultOf(int returned, std::size_t bytes)
{
    if (returned > 0) {
        return {.bytes = bytes};
    }
    switch (SSL_get_error(connection.get(), returned)) {
    case SSL_ERROR_WANT_READ:
    case SSL_ERROR_WANT_WRITE:
        return {.wouldBlock = true};
    case SSL_ERROR_ZERO_RETURN:
        return {};
    case SSL_ERROR_SSL:
        // The connection has ended without the notice: anybody on the way can have cut it.
        return {.error = ERR_GET_REASON(ERR_peek_error()) == SSL_R_UNEXPECTED_EOF_WHILE_READING
                             ? EngineStatus::ConnectionReset
                             : EngineStatus::TlsFailed};
    default:
        return {.error = wire->error != 0 ? wire->error : EngineStatus::ConnectionReset};
    }
}

bool CTlsConnection::WantsWrite() const
{
    return SSL_want_write(connection.get());
}

bool CTlsConnection::IsResumed() const
{
    return SSL_session_reused(connection.get()) == 1;
}

ServerIdentity CTlsConnection::GetIdentity() const
{
    const x509_st* const certificate = SSL_get0_peer_certificate(connection.get());
    return DescribeCertificate(certificate, {.server = client.GetServer(),
                                             .isAddress = client.IsAddress(),
                                             .verifyResult = SSL_get_verify_result(connection.get())});
}
