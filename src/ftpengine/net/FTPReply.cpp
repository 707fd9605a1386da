#include "ftpengine/net/FTPReply.h"

#include "common/Text.h"

namespace {

int32_t CodeAt(std::string_view line)
{
    return ParseInteger(line.substr(0, 3));
}

} // namespace

FTPReply ReadReply(std::string_view chunk)
{
    constexpr std::string_view lineEnd = "\r\n";
    std::string_view line = chunk;
    for (;;) {
        const std::size_t end = line.find(lineEnd);
        // A last line without its end counts as well.
        if (end == std::string_view::npos || end + lineEnd.size() == line.size()) {
            return {.code = CodeAt(line), .text = Widen(line)};
        }
        line.remove_prefix(end + lineEnd.size());
    }
}

FTPReply ReadGreeting(std::string_view chunk)
{
    return {.code = CodeAt(chunk), .text = Widen(chunk)};
}
