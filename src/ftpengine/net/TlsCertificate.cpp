#include "ftpengine/net/TlsCertificate.h"

#include <arpa/inet.h>
#include <memory>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

#include <QStringList>

#include "common/Text.h"
#include "ftpengine/messages/ServerWords.h"

namespace {

using Doubt = ServerIdentity::Doubt;

// As many names as a person looks at.
constexpr int maximalNames = 8;

QByteArray FingerprintOf(const X509* certificate)
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    if (X509_digest(certificate, EVP_sha256(), digest, &size) != 1) {
        return {};
    }
    return QByteArray(reinterpret_cast<const char*>(digest), static_cast<qsizetype>(size));
}

// "CN = example.org, O = Example"
QString TextOf(const X509_NAME* name)
{
    const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), &BIO_free);
    X509_NAME_print_ex(memory.get(), name, 0, XN_FLAG_ONELINE & ~ASN1_STRFLGS_ESC_MSB);
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &bytes);
    return CleanServerWords(Widen({bytes, static_cast<std::size_t>(size)}));
}

QString TextOf(const GENERAL_NAME& name)
{
    if (name.type == GEN_DNS) {
        return Widen({reinterpret_cast<const char*>(ASN1_STRING_get0_data(name.d.dNSName)),
                      static_cast<std::size_t>(ASN1_STRING_length(name.d.dNSName))});
    }
    if (name.type == GEN_IPADD) {
        char text[INET6_ADDRSTRLEN] = {};
        const int family = ASN1_STRING_length(name.d.iPAddress) == 4 ? AF_INET : AF_INET6;
        ::inet_ntop(family, ASN1_STRING_get0_data(name.d.iPAddress), text, sizeof text);
        return QString::fromLatin1(text);
    }
    return {};
}

// Those that a server is checked by (RFC 6125); a certificate without any has its subject.
QString NamesOf(const X509* certificate)
{
    const std::unique_ptr<GENERAL_NAMES, decltype(&GENERAL_NAMES_free)> names(
        static_cast<GENERAL_NAMES*>(X509_get_ext_d2i(certificate, NID_subject_alt_name, nullptr, nullptr)),
        &GENERAL_NAMES_free);
    QStringList texts;
    for (int i = 0; i < sk_GENERAL_NAME_num(names.get()) && texts.size() < maximalNames; ++i) {
        texts << CleanServerWords(TextOf(*sk_GENERAL_NAME_value(names.get(), i)));
    }
    texts.removeAll(QString());
    return texts.isEmpty() ? TextOf(X509_get_subject_name(certificate)) : texts.join(QStringLiteral(", "));
}

bool IsFor(const X509* certificate, const CertificateCheck& check)
{
    X509* const checked = const_cast<X509*>(certificate); // OpenSSL's way: it is not changed
    return check.isAddress ? X509_check_ip_asc(checked, check.server.c_str(), 0) == 1
                           : X509_check_host(checked, check.server.data(), check.server.size(),
                                             X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS, nullptr) == 1;
}

Doubt DoubtOf(const X509* certificate, const CertificateCheck& check)
{
    switch (check.verifyResult) {
    case X509_V_OK:
        return IsFor(certificate, check) ? Doubt::None : Doubt::OtherName;
    case X509_V_ERR_CERT_HAS_EXPIRED:
    case X509_V_ERR_CERT_NOT_YET_VALID:
        return Doubt::Expired;
    default:
        return Doubt::UnknownAuthority;
    }
}

} // namespace

ServerIdentity DescribeCertificate(const x509_st* certificate, const CertificateCheck& check)
{
    ServerIdentity identity;
    if (certificate == nullptr) {
        identity.doubt = Doubt::UnknownAuthority;
        return identity;
    }
    identity.fingerprint = FingerprintOf(certificate);
    identity.subject = NamesOf(certificate);
    identity.issuer = TextOf(X509_get_issuer_name(certificate));
    identity.doubt = DoubtOf(certificate, check);
    return identity;
}
