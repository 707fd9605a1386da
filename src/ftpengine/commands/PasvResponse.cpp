#include "ftpengine/commands/PasvResponse.h"

#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>

#include "ftpengine/messages/EngineStatus.h"

namespace {

using Numbers = std::array<uint8_t, 6>;

// Blanks may stand before a number, a comma follows at once.
std::optional<Numbers> ReadNumbers(std::string_view text)
{
    Numbers numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0) {
            if (!text.starts_with(',')) {
                return std::nullopt;
            }
            text.remove_prefix(1);
        }
        text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), numbers[i]);
        if (error != std::errc()) {
            return std::nullopt;
        }
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    }
    return numbers;
}

} // namespace

sockaddr_in ParsePasvResponse(std::string_view reply)
{
    const std::size_t open = reply.rfind('(');
    const std::size_t close = reply.rfind(')');
    std::optional<Numbers> numbers;
    if (open != std::string_view::npos && close != std::string_view::npos && open < close) {
        numbers = ReadNumbers(reply.substr(open + 1, close - open));
    }
    if (!numbers) {
        ThrowTracedLiterally("ParsePasvResponse failed", EngineStatus::UnreadablePasv);
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    std::memcpy(&address.sin_addr.s_addr, numbers->data(), sizeof address.sin_addr.s_addr);
    address.sin_port = htons(static_cast<uint16_t>((*numbers)[4] * 256 + (*numbers)[5]));
    return address;
}

uint16_t ParseEpsvResponse(std::string_view reply)
{
    const std::size_t open = reply.rfind('(');
    const std::string_view rest =
        open == std::string_view::npos ? std::string_view() : reply.substr(open + 1);
    uint16_t port = 0;
    if (rest.size() > 4 && rest[1] == rest[0] && rest[2] == rest[0]) {
        const char* const last = rest.data() + rest.size();
        const auto [end, error] = std::from_chars(rest.data() + 3, last, port);
        if (error == std::errc() && end != last && *end == rest[0]) {
            return port;
        }
    }
    ThrowTracedLiterally("ParseEpsvResponse failed", EngineStatus::UnreadablePasv);
}
