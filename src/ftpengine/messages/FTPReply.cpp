#include "ftpengine/messages/FTPReply.h"

#include <algorithm>

#include "common/Text.h"

namespace {

constexpr std::size_t codeLength = 3;

int32_t CodeAt(std::string_view line)
{
    return ParseInteger(line.substr(0, codeLength));
}

bool IsCode(std::string_view text)
{
    return text.size() == codeLength &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

FTPReply MakeRefusal(int32_t code, const QString& text)
{
    return {.code = code, .text = QStringLiteral("%1 %2\r\n").arg(QString::number(code), text)};
}

FTPReply ReadReply(std::string_view bytes)
{
    constexpr std::string_view lineEnd = "\r\n";
    std::string_view line = bytes;
    for (;;) {
        const std::size_t end = line.find(lineEnd);
        // A last line without its end counts as well.
        if (end == std::string_view::npos || end + lineEnd.size() == line.size()) {
            return {.code = CodeAt(line), .text = Widen(line)};
        }
        line.remove_prefix(end + lineEnd.size());
    }
}

FTPReply ReadGreeting(std::string_view bytes)
{
    return {.code = CodeAt(bytes), .text = Widen(bytes)};
}

void CReplyLines::Feed(std::string_view bytes)
{
    for (const char byte : bytes) {
        atEnd = false;
        if (byte == '\n') {
            EndLine();
        } else if (head.size() <= codeLength) {
            head += byte;
        }
    }
}

bool CReplyLines::IsOpen() const
{
    // Also a line that has begun and says so itself.
    return !openCode.empty() ||
           (head.size() > codeLength && IsCode(head.substr(0, codeLength)) && head[codeLength] == '-');
}

void CReplyLines::EndLine()
{
    const std::string code = head.substr(0, codeLength);
    const bool announcesMore = head.size() > codeLength && head[codeLength] == '-';
    if (openCode.empty() && IsCode(code) && announcesMore) {
        openCode = code;
    } else if (code == openCode && !announcesMore) {
        openCode.clear();
    }
    atEnd = openCode.empty();
    head.clear();
}
