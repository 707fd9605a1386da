#pragma once

#include <string>
#include <string_view>

// Replaces pattern in text from the front on. After a replacement the search goes on at the place found plus
// the length of the pattern plus 1, in the changed text: published pages rely on this step. So with a
// replacement that is longer by one byte each place is replaced once, and of "aa" with an empty replacement
// only the first "a" goes. An empty pattern replaces nothing. Thread-safe.
void ReplaceAll(std::string& text, std::string_view pattern, std::string_view replacement);
