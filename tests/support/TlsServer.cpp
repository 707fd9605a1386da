#include "support/TlsServer.h"

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <gtest/gtest.h>

namespace {

// Keys take their time to be made, and no test needs one of its own.
std::shared_ptr<EVP_PKEY> SharedKey()
{
    static const std::shared_ptr<EVP_PKEY> key(EVP_RSA_gen(2048), &EVP_PKEY_free);
    return key;
}

void AddExtension(X509* certificate, int kind, const std::string& value)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str());
    ASSERT_NE(extension, nullptr) << value;
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

// Each has a name of its own, so that none is taken for the issuer of another.
void SetSubject(X509* certificate, long number)
{
    const std::string name = "Test " + std::to_string(number);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0);
}

QByteArray Written(int (*write)(BIO*, void*), void* object)
{
    const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), &BIO_free);
    EXPECT_EQ(write(memory.get(), object), 1);
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &bytes);
    return QByteArray(bytes, size);
}

} // namespace

CTestCertificate::CTestCertificate(const CertificateSetting& setting, const CTestCertificate* issuer)
    : key(SharedKey()), certificate(X509_new(), &X509_free)
{
    static std::atomic<long> last = 0;
    const long number = ++last;
    X509* const made = certificate.get();
    X509_set_version(made, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(made), number);
    X509_gmtime_adj(X509_getm_notBefore(made), setting.validFrom * 24L * 60 * 60);
    X509_gmtime_adj(X509_getm_notAfter(made), setting.validUntil * 24L * 60 * 60);
    X509_set_pubkey(made, key.get());
    SetSubject(made, number);
    X509_set_issuer_name(made, X509_get_subject_name(issuer ? issuer->GetCertificate() : made));
    if (setting.isAuthority) {
        AddExtension(made, NID_basic_constraints, "critical,CA:TRUE");
    } else {
        AddExtension(made, NID_subject_alt_name, setting.names);
    }
    EXPECT_GT(X509_sign(made, issuer ? issuer->GetKey() : key.get(), EVP_sha256()), 0);
}

QByteArray CTestCertificate::GetCertificatePem() const
{
    return Written([](BIO* bio, void* object) { return PEM_write_bio_X509(bio, static_cast<X509*>(object)); },
                   certificate.get());
}

QByteArray CTestCertificate::GetPem() const
{
    return Written(
               [](BIO* bio, void* object) {
                   return PEM_write_bio_PrivateKey(bio, static_cast<EVP_PKEY*>(object), nullptr, nullptr, 0,
                                                   nullptr, nullptr);
               },
               key.get()) +
           GetCertificatePem();
}

QByteArray CTestCertificate::GetFingerprint() const
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    EXPECT_EQ(X509_digest(certificate.get(), EVP_sha256(), digest, &size), 1);
    return QByteArray(reinterpret_cast<const char*>(digest), static_cast<qsizetype>(size));
}

CTlsServer::CTlsServer(const CTestCertificate& certificate, Versions versions)
    : context(SSL_CTX_new(TLS_server_method()), &SSL_CTX_free)
{
    SSL_CTX* const made = context.get();
    EXPECT_EQ(SSL_CTX_use_certificate(made, certificate.GetCertificate()), 1);
    EXPECT_EQ(SSL_CTX_use_PrivateKey(made, certificate.GetKey()), 1);
    const unsigned char id[] = "scripted";
    SSL_CTX_set_session_id_context(made, id, sizeof id);
    if (versions == Versions::Tls12) {
        SSL_CTX_set_max_proto_version(made, TLS1_2_VERSION);
    } else if (versions == Versions::Tls11) {
        SSL_CTX_set_security_level(made, 0); // the system has shut this version off
        SSL_CTX_set_min_proto_version(made, TLS1_VERSION);
        SSL_CTX_set_max_proto_version(made, TLS1_1_VERSION);
    }
}

std::unique_ptr<ssl_st, void (*)(ssl_st*)> CTlsServer::MakeConnection() const
{
    std::unique_ptr<ssl_st, void (*)(ssl_st*)> connection(SSL_new(context.get()), &SSL_free);
    // Through memory: the socket is read and written here, where no signal is raised.
    SSL_set_bio(connection.get(), BIO_new(BIO_s_mem()), BIO_new(BIO_s_mem()));
    SSL_set_accept_state(connection.get());
    return connection;
}

bool CServerChannel::Protect(CTlsServer& server, const CEvent& stop)
{
    tls = server.MakeConnection();
    for (;;) {
        ERR_clear_error();
        const int returned = SSL_do_handshake(tls.get());
        Flush(stop);
        if (returned == 1) {
            ++server.handshakes;
            server.resumed += SSL_session_reused(tls.get());
            return true;
        }
        if (SSL_get_error(tls.get(), returned) != SSL_ERROR_WANT_READ || !Feed(stop)) {
            return false;
        }
    }
}

void CServerChannel::Send(std::string_view bytes, const CEvent& stop)
{
    if (!tls) {
        SendAll(socket, bytes, stop);
        return;
    }
    // In parts, so that a peer that takes little is waited for.
    constexpr std::size_t part = 64 * 1024;
    for (; !bytes.empty() && socket.IsOpen() && !stop.IsSet();
         bytes.remove_prefix(std::min(part, bytes.size()))) {
        ERR_clear_error();
        SSL_write(tls.get(), bytes.data(), static_cast<int>(std::min(part, bytes.size())));
        Flush(stop);
    }
}

bool CServerChannel::ReadMore(std::string& text, const CEvent& stop)
{
    char bytes[4096];
    while (socket.IsOpen()) {
        if (tls) {
            ERR_clear_error();
            const int count = SSL_read(tls.get(), bytes, sizeof bytes);
            Flush(stop);
            if (count > 0) {
                text.append(bytes, static_cast<std::size_t>(count));
                return true;
            }
            if (SSL_get_error(tls.get(), count) != SSL_ERROR_WANT_READ || !Feed(stop)) {
                return false;
            }
            continue;
        }
        if (WaitForFirst({UntilSet(stop), {socket.GetDescriptor()}}, NoLimit) == WaitResult::First) {
            return false;
        }
        const SocketResult result = socket.Receive(bytes, sizeof bytes);
        if (result.bytes > 0) {
            text.append(bytes, result.bytes);
            return true;
        }
        if (!result.wouldBlock) {
            return false;
        }
    }
    return false;
}

void CServerChannel::Close(const CEvent& stop)
{
    if (tls && socket.IsOpen()) {
        SSL_shutdown(tls.get());
        Flush(stop);
    }
    CloseWithoutNotice();
}

void CServerChannel::CloseWithoutNotice()
{
    tls.reset();
    socket.Close();
}

void CServerChannel::Reset()
{
    tls.reset();
    socket.Reset();
}

bool CServerChannel::HasNotice() const
{
    return tls && (SSL_get_shutdown(tls.get()) & SSL_RECEIVED_SHUTDOWN) != 0;
}

// What TLS has to say goes to the socket.
void CServerChannel::Flush(const CEvent& stop)
{
    char bytes[16384];
    for (int count = BIO_read(SSL_get_wbio(tls.get()), bytes, sizeof bytes); count > 0;
         count = BIO_read(SSL_get_wbio(tls.get()), bytes, sizeof bytes)) {
        SendAll(socket, {bytes, static_cast<std::size_t>(count)}, stop);
    }
}

// Some bytes of the socket go to TLS; false if there are none any more.
bool CServerChannel::Feed(const CEvent& stop)
{
    for (;;) {
        if (!socket.IsOpen() ||
            WaitForFirst({UntilSet(stop), {socket.GetDescriptor()}}, NoLimit) == WaitResult::First) {
            return false;
        }
        char bytes[16384];
        const SocketResult result = socket.Receive(bytes, sizeof bytes);
        if (result.bytes > 0) {
            BIO_write(SSL_get_rbio(tls.get()), bytes, static_cast<int>(result.bytes));
            return true;
        }
        if (!result.wouldBlock) {
            return false;
        }
    }
}

void SendAll(CSocket& socket, std::string_view bytes, const CEvent& stop)
{
    while (!bytes.empty() && socket.IsOpen()) {
        const SocketResult result = socket.Send(bytes.data(), bytes.size());
        if (result.error != 0) {
            socket.Close();
            return;
        }
        bytes.remove_prefix(result.bytes);
        if (result.wouldBlock &&
            WaitForFirst({UntilSet(stop), {socket.GetDescriptor(), true}}, NoLimit) == WaitResult::First) {
            return;
        }
    }
}
