#pragma once

#include <memory>
#include <string>

#include <QByteArray>
#include <QString>

struct ssl_ctx_st;
struct ssl_session_st;

struct FreeTlsContext {
    void operator()(ssl_ctx_st* context) const;
};
struct FreeTlsSession {
    void operator()(ssl_session_st* session) const;
};
using TlsSession = std::unique_ptr<ssl_session_st, FreeTlsSession>;

// What all TLS connections to one server have in common: versions (1.2 and 1.3), whom the system trusts, and
// the session that data connections resume. Owned by the stream of the control connection, which it outlives
// together with its data connections; used on one thread.
class CTlsClient {
public:
    // server: the name, or address in figures, that its certificate has to be for. Throws an int, 12157, if
    // TLS can't be set up at all.
    explicit CTlsClient(const QString& server);
    CTlsClient(const CTlsClient&) = delete;
    CTlsClient& operator=(const CTlsClient&) = delete;

    // Its connections that are to give their sessions to this object have it as their application data.
    ssl_ctx_st* GetContext() const { return context.get(); }
    const std::string& GetServer() const { return server; }
    // In figures: "192.168.1.2", "fe80::1".
    bool IsAddress() const;

    // The newest one of the control connection. A server of TLS 1.3 sends it some time after the handshake.
    void KeepSession(TlsSession newest) { session = std::move(newest); }
    // None before a server has given one. A copy, since a connection that breaks spoils what it has resumed.
    TlsSession CopySession() const;

    // Of the certificate that data connections have to show as well, if they don't resume the session.
    void SetFingerprint(const QByteArray& sha256) { fingerprint = sha256; }
    const QByteArray& GetFingerprint() const { return fingerprint; }

private:
    const std::string server;
    std::unique_ptr<ssl_ctx_st, FreeTlsContext> context;
    TlsSession session;
    QByteArray fingerprint;
};
