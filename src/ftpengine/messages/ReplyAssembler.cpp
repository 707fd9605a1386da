#include "ftpengine/messages/ReplyAssembler.h"

#include <utility>

void CReplyAssembler::Append(std::string_view more)
{
    bytes += more;
}

std::optional<std::string> CReplyAssembler::Take()
{
    while (seen < bytes.size()) {
        const std::size_t end = bytes.find('\n', seen);
        const std::size_t next = end == std::string::npos ? bytes.size() : end + 1;
        lines.Feed(std::string_view(bytes).substr(seen, next - seen));
        seen = next;
        if (lines.IsAtEnd()) {
            std::string reply = bytes.substr(0, seen);
            bytes.erase(0, std::exchange(seen, 0));
            if (!std::exchange(isPassedOver, false)) {
                return reply;
            }
        }
    }
    return std::nullopt;
}

std::string CReplyAssembler::TakeRest()
{
    seen = 0;
    lines = {};
    isPassedOver = false;
    return std::exchange(bytes, {});
}

bool CReplyAssembler::HasLineWithoutEnd() const
{
    return !bytes.empty() && !lines.IsOpen();
}
