#pragma once

#include <cstdint>
#include <optional>

#include <QString>

// The address of a folder on an FTP server, as people write it (RFC 1738, 3.2):
// ftp://[USER[:PASSWORD]@]HOST[:PORT][/DIRECTORY]. A plain value.
struct FTPUrl {
    QString userName; // "anonymous" if the address names nobody
    std::optional<QString> password;
    QString server;
    uint16_t port = 21;
    // Seen from the login's folder; "//" after the host makes it absolute. Without "/" at its end.
    QString directory;
};

// Whether an argument is meant as an FTP address and not as a folder.
bool IsFTPAddress(const QString& argument);

// User name, password and directory may hold "%" and two hexadecimal digits for a byte of UTF-8. Throws
// CWrongUse with a text that never repeats what could be a piece of a password.
FTPUrl ParseFTPUrl(const QString& text);

// The address without its password, in a form that can be parsed again.
QString FormatFTPUrl(const FTPUrl& url);
