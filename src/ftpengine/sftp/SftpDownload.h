#pragma once

#include <optional>
#include <string_view>

#include <QByteArray>

#include "ftpengine/sftp/SftpChannel.h"

struct SftpContent {
    QByteArray bytes;
    std::optional<SftpStatus> refusal; // then bytes are those before it
};

// The bytes of an open file, several blocks on their way at once, up to its end or until there are more than
// maximum. Throws an int.
SftpContent ReadContent(CSftpChannel& channel, std::string_view handle, int64_t maximum);
