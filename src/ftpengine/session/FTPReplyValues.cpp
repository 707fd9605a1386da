#include "ftpengine/session/FTPReplyValues.h"

#include <algorithm>
#include <charconv>

#include "common/Text.h"
#include "ftpengine/messages/FTPReply.h"

std::string ReadQuotedPath(std::string_view reply)
{
    std::string path;
    std::size_t at = reply.find('"');
    while (at != std::string_view::npos) {
        const std::size_t end = reply.find('"', at + 1);
        if (end == std::string_view::npos) {
            break;
        }
        path += reply.substr(at + 1, end - at - 1);
        const bool isDoubled = end + 1 < reply.size() && reply[end + 1] == '"';
        if (!isDoubled && !path.empty()) {
            return path;
        }
        if (!isDoubled) {
            break;
        }
        path += '"';
        at = end + 1;
    }
    throw FTPReply{.code = 550, .text = Widen(reply)};
}

std::optional<int64_t> ReadSize(std::string_view reply)
{
    constexpr std::size_t codeLength = 4; // with the blank
    int64_t size = 0;
    const char* const last = reply.data() + reply.size();
    const auto [end, error] = std::from_chars(reply.data() + std::min(codeLength, reply.size()), last, size);
    const bool ends = end == last || *end == '\r' || *end == '\n' || *end == ' ';
    return error == std::errc() && ends && size >= 0 ? std::optional(size) : std::nullopt;
}
