#include "template/ReplaceAll.h"

void ReplaceAll(std::string& text, std::string_view pattern, std::string_view replacement)
{
    if (pattern.empty()) {
        return;
    }
    size_t found = text.find(pattern);
    while (found != std::string::npos) {
        text.replace(found, pattern.size(), replacement);
        // Odd on purpose: reckoned from the pattern, not from the replacement, and one byte is skipped.
        found = text.find(pattern, found + pattern.size() + 1);
    }
}
