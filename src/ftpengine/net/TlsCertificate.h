#pragma once

#include <string>

#include "ftpengine/session/ServerIdentity.h"

struct x509_st;

// What a certificate is held against.
struct CertificateCheck {
    std::string server;     // the name, or the address in figures, that was meant
    bool isAddress = false; // in figures
    long verifyResult = 0;  // of OpenSSL, about the chain of authorities (X509_V_...)
};

// Fingerprint, names and issuer of a certificate, with what has to be doubted of it: its authority before its
// time before its name. Server and port are left to the caller. No certificate: no fingerprint, and doubt.
ServerIdentity DescribeCertificate(const x509_st* certificate, const CertificateCheck& check);
