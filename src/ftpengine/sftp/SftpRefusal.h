#pragma once

#include <cstdint>

#include <QString>

#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/sftp/SftpPackets.h"

// The codes of SFTP's Status answers (draft-ietf-secsh-filexfer-02, section 7) that are asked for by name.
namespace SftpCode {
inline constexpr uint32_t Ok = 0;
inline constexpr uint32_t EndOfFile = 1;
inline constexpr uint32_t NoSuchFile = 2;
inline constexpr uint32_t Failure = 4;
inline constexpr uint32_t NoSuchPath = 10; // of later versions; servers of version 3 send it, too
} // namespace SftpCode

// A refusal as a server of FTP would have told it: "550 www/a.html: Permission denied\r\n". what: the path
// that it is about. Throws 10054 for a status that says that the connection is gone.
FTPReply TranslateRefusal(const SftpStatus& status, const QString& what);
