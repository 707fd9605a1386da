#include "template/parser/ReplaceAll.h"

namespace {

// Where the search never goes back into what was put in, the text is copied once: to move its tail at each
// place would take the square of its length.
std::string ReplacedInOneGo(const std::string& text, std::string_view pattern, std::string_view replacement,
                            size_t skipped)
{
    std::string result;
    size_t copied = 0;
    for (size_t found = text.find(pattern); found != std::string::npos;) {
        result.append(text, copied, found - copied).append(replacement);
        copied = found + pattern.size();
        found = copied + skipped <= text.size() ? text.find(pattern, copied + skipped) : std::string::npos;
    }
    return result.append(text, copied);
}

} // namespace

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
    if (step >= replacement.size()) {
        text = ReplacedInOneGo(text, pattern, replacement, step - replacement.size());
        return;
    }
    size_t found = text.find(pattern);
    while (found != std::string::npos) {
        text.replace(found, pattern.size(), replacement);
        found = text.find(pattern, found + step);
    }
}
