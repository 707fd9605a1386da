#pragma once

#include <cstdint>
#include <string_view>

#include <QString>

// A server's reply to one command (RFC 959, 4.2). Thrown by value when the server refuses.
struct FTPReply {
    int32_t code = 200;
    QString text; // with its line end

    int32_t GetGroup() const { return code / 100; }
};

// The reply in the bytes of one chunk. The last line decides, and its head alone: whether a line says that
// others follow ("230-") is not looked at. No bytes, or no number at the head of the last line: code 0.
// "230-Hello\r\n230 OK\r\n" gives 230 and "230 OK\r\n".
FTPReply ReadReply(std::string_view chunk);

// The greeting in the last chunk of it: its first three bytes, and all of its text.
FTPReply ReadGreeting(std::string_view chunk);
