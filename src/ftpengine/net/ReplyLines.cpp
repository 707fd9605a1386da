#include "ftpengine/net/ReplyLines.h"

#include <algorithm>

namespace {

constexpr std::size_t codeLength = 3;

bool IsCode(std::string_view text)
{
    return text.size() == codeLength &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

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
