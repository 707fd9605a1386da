#include "ftpengine/messages/ServerFeatures.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace {

// " MLST type*;size*;" gives "MLST". Names are without regard to case.
std::string NameAt(std::string_view line)
{
    const std::string_view name = line.substr(0, line.find_first_of(" \r\n"));
    std::string upper(name);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return upper;
}

} // namespace

ServerFeatures ParseFeatures(std::string_view reply)
{
    ServerFeatures features;
    const struct {
        const char* name;
        bool ServerFeatures::*member;
    } known[] = {
        {"UTF8", &ServerFeatures::utf8}, {"MLST", &ServerFeatures::mlst}, {"MLSD", &ServerFeatures::mlst},
        {"EPSV", &ServerFeatures::epsv}, {"SIZE", &ServerFeatures::size}, {"MDTM", &ServerFeatures::mdtm},
        {"REST", &ServerFeatures::rest},
    };
    while (!reply.empty()) {
        const std::size_t end = std::min(reply.find('\n'), reply.size() - 1) + 1;
        const std::string_view line = reply.substr(0, end);
        reply.remove_prefix(end);
        if (!line.starts_with(' ')) {
            continue;
        }
        const std::string name = NameAt(line.substr(1));
        for (const auto& feature : known) {
            if (name == feature.name) {
                features.*feature.member = true;
            }
        }
    }
    return features;
}
