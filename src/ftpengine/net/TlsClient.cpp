#include "ftpengine/net/TlsClient.h"

#include <arpa/inet.h>
#include <openssl/err.h>
#include <openssl/ssl.h>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

// Called by OpenSSL for each session that a server gives. 1: the session is taken over.
int TakeSession(SSL* connection, SSL_SESSION* session)
{
    auto* const keeper = static_cast<CTlsClient*>(SSL_get_app_data(connection));
    if (keeper == nullptr) {
        return 0; // of a data connection
    }
    keeper->KeepSession(TlsSession(session));
    return 1;
}

// "example.org." is a full name in the resolver's eyes; certificates have it without the dot.
std::string WithoutFinalDot(std::string name)
{
    if (name.ends_with('.')) {
        name.pop_back();
    }
    return name;
}

} // namespace

void FreeTlsContext::operator()(ssl_ctx_st* context) const
{
    SSL_CTX_free(context);
}

void FreeTlsSession::operator()(ssl_session_st* session) const
{
    SSL_SESSION_free(session);
}

CTlsClient::CTlsClient(const QString& server)
    : server(WithoutFinalDot(Narrow(server))), context(SSL_CTX_new(TLS_client_method()))
{
    ERR_clear_error();
    if (!context || SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION) != 1) {
        ThrowTraced("TlsClient throws: ", EngineStatus::TlsFailed);
    }
    // The system's authorities, or those that SSL_CERT_FILE names. Where there are none, no server proves
    // itself, and the person is asked.
    SSL_CTX_set_default_verify_paths(context.get());
    // The handshake goes on with any certificate: what to think of it is decided, and shown, after that.
    SSL_CTX_set_verify(context.get(), SSL_VERIFY_NONE, nullptr);
    // A repeated write may come from another place in memory, and need not be taken as a whole.
    SSL_CTX_set_mode(context.get(), SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER |
                                        SSL_MODE_AUTO_RETRY);
    SSL_CTX_set_session_cache_mode(context.get(), SSL_SESS_CACHE_CLIENT | SSL_SESS_CACHE_NO_INTERNAL);
    SSL_CTX_sess_set_new_cb(context.get(), TakeSession);
}

bool CTlsClient::IsAddress() const
{
    unsigned char bytes[sizeof(in6_addr)];
    return ::inet_pton(AF_INET, server.c_str(), bytes) == 1 ||
           ::inet_pton(AF_INET6, server.c_str(), bytes) == 1;
}

TlsSession CTlsClient::CopySession() const
{
    return TlsSession(session ? SSL_SESSION_dup(session.get()) : nullptr);
}
