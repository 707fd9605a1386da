#include "Check.h"
#include "ftpengine/commands/PasvResponse.h"
#include "ftpengine/messages/EngineStatus.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const std::string_view reply(reinterpret_cast<const char*>(bytes), size);
    try {
        const sockaddr_in address = ParsePasvResponse(reply);
        Check(address.sin_family == AF_INET, "an address is one of the Internet");
        Check(reply.find(')') != std::string_view::npos, "an address stands between brackets");
    } catch (int status) {
        Check(status == EngineStatus::UnreadablePasv, "what can't be read has its own number");
    }
    try {
        ParseEpsvResponse(reply);
        Check(reply.find('(') != std::string_view::npos, "a port stands after a bracket");
    } catch (int status) {
        Check(status == EngineStatus::UnreadablePasv, "what can't be read has its own number");
    }
    return 0;
}
