#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <QString>

// A server's reply to one command (RFC 959, 4.2). Thrown by value when the server refuses.
struct FTPReply {
    int32_t code = 200;
    QString text; // with its line end

    int32_t GetGroup() const { return code / 100; }
};

// Codes of refusals that this side gives a meaning to (RFC 959, 4.2); those of other protocols are translated
// into them.
namespace RefusalCode {
inline constexpr int32_t Incomplete = 451; // "local error in processing"
inline constexpr int32_t NotImplemented = 502;
inline constexpr int32_t NotLoggedIn = 530;
inline constexpr int32_t NotAvailable = 550;
inline constexpr int32_t NoSpace = 552;
} // namespace RefusalCode

// With the code before the text and the line's end after it.
FTPReply MakeRefusal(int32_t code, const QString& text);

// The reply in its bytes. The last line decides, and its head alone: whether a line says that
// others follow ("230-") is not looked at. No bytes, or no number at the head of the last line: code 0.
// "230-Hello\r\n230 OK\r\n" gives 230 and "230 OK\r\n".
FTPReply ReadReply(std::string_view bytes);

// The greeting: its first three bytes, and all of its text.
FTPReply ReadGreeting(std::string_view bytes);

// Follows the lines of replies as their bytes arrive, to know where a server has finished speaking (RFC 959,
// 4.2): a line "230-..." opens a reply of several lines, and "230 ..." closes it. A value.
class CReplyLines {
public:
    void Feed(std::string_view bytes);

    // True if the last byte ended a line after which nothing is announced.
    bool IsAtEnd() const { return atEnd; }
    // Lines are announced that haven't come yet.
    bool IsOpen() const;

private:
    void EndLine();

    std::string head;     // at most the first four bytes of the line
    std::string openCode; // of the reply that is not closed yet
    bool atEnd = false;
};
