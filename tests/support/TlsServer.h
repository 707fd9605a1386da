#pragma once

#include <atomic>
#include <memory>
#include <string>

#include <QByteArray>

#include "ftpengine/net/Event.h"
#include "ftpengine/net/Socket.h"

struct evp_pkey_st;
struct ssl_ctx_st;
struct ssl_st;
struct x509_st;

// What a certificate of a test says.
struct CertificateSetting {
    std::string names = "IP:127.0.0.1"; // as in OpenSSL's configuration: "DNS:a.example,IP:127.0.0.1"
    int validFrom = -1;                 // days from now
    int validUntil = 30;
    bool isAuthority = false; // may sign others
};

// A certificate with its key, made by the test: signed by itself, or by an issuer.
class CTestCertificate {
public:
    explicit CTestCertificate(const CertificateSetting& setting = {},
                              const CTestCertificate* issuer = nullptr);

    QByteArray GetCertificatePem() const;
    // Key and certificate, as servers want them in one file.
    QByteArray GetPem() const;
    // SHA-256, 32 bytes.
    QByteArray GetFingerprint() const;

    x509_st* GetCertificate() const { return certificate.get(); }
    evp_pkey_st* GetKey() const { return key.get(); }

private:
    std::shared_ptr<evp_pkey_st> key;
    std::shared_ptr<x509_st> certificate;
};

// The server's side of TLS for all connections of a scripted server.
class CTlsServer {
public:
    enum class Versions { All, Tls12, Tls11 };

    explicit CTlsServer(const CTestCertificate& certificate, Versions versions = Versions::All);

    std::unique_ptr<ssl_st, void (*)(ssl_st*)> MakeConnection() const;

    std::atomic<int> handshakes = 0; // that came to their end
    std::atomic<int> resumed = 0;    // of these, those that went on with an older session

private:
    std::shared_ptr<ssl_ctx_st> context;
};

// One end of a connection in the server's hand, in clear or by TLS. All waits end when stop is signalled.
class CServerChannel {
public:
    CServerChannel() = default;
    explicit CServerChannel(CSocket socket) : socket(std::move(socket)) {}

    // False if the two sides don't agree.
    bool Protect(CTlsServer& server, const CEvent& stop);

    // All bytes, or as many as the peer takes before it closes.
    void Send(std::string_view bytes, const CEvent& stop);
    // Appends at least one byte; false at the end of the connection.
    bool ReadMore(std::string& text, const CEvent& stop);

    void Close(const CEvent& stop);
    // Without the notice that TLS has for the end; in clear as any other.
    void CloseWithoutNotice();
    void Reset();

    bool IsOpen() const { return socket.IsOpen(); }
    int GetDescriptor() const { return socket.GetDescriptor(); }
    CSocket& GetSocket() { return socket; }
    // The peer has said that its data are complete, not just closed the connection.
    bool HasNotice() const;

private:
    void Flush(const CEvent& stop);
    bool Feed(const CEvent& stop);

    CSocket socket;
    std::unique_ptr<ssl_st, void (*)(ssl_st*)> tls{nullptr, nullptr};
};

// Sends all bytes, or as many as the peer takes before it closes or stop is signalled.
void SendAll(CSocket& socket, std::string_view bytes, const CEvent& stop);
