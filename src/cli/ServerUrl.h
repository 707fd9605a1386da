#pragma once

#include <cstdint>
#include <optional>

#include <QByteArray>
#include <QString>

#include "ftpengine/destinations/FTPDestination.h"

// The address of a folder on a server, as people write it (RFC 1738, 3.2):
// SCHEME://[USER[:PASSWORD]@]HOST[:PORT][/DIRECTORY]. A plain value.
//
//   ftp     in clear
//   ftpes   FTP with TLS, asked for by AUTH TLS
//   ftps    FTP with TLS from the first byte on
//   sftp    over SSH; needs a user
struct ServerUrl {
    ServerProtocol protocol = ServerProtocol::Ftp;
    QString userName; // "anonymous" if the address names nobody
    std::optional<QString> password;
    QString server; // a name, or an address; that of IPv6 without its brackets
    uint16_t port = 21;
    // Seen from the login's folder; "//" after the host makes it absolute. Without "/" at its end. With SFTP
    // "/~/" is the login's folder as well, which makes nothing of it here.
    QString directory;
};

// Whether an argument is meant as a server's address and not as a folder: it begins with a scheme and "://",
// known or not.
bool IsServerAddress(const QString& argument);

// User name, password and directory may hold "%" and two hexadecimal digits for a byte of UTF-8. Throws
// CWrongUse with a text that never repeats what could be a piece of a password.
ServerUrl ParseServerUrl(const QString& text);

// "~/www" and "~" as they are seen from the login's folder, which is what "~" means with SFTP.
QString WithoutHome(QString directory);

// The address without its password, in a form that can be parsed again.
QString FormatServerUrl(const ServerUrl& url);
// The same of a connection.
QString FormatServerUrl(const FTPDestinationConnection& connection);

// The fingerprint that a person gives: "sha256:" and 64 hexadecimal digits, with or without ":" between the
// bytes, or "SHA256:" and Base64 as ssh(1) prints it. 32 bytes; nothing for another text.
std::optional<QByteArray> ParseFingerprint(const QString& text);
