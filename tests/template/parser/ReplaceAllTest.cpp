#include "template/parser/ReplaceAll.h"

TEST(ReplaceAll, StepsByThePatternAndOneByte)
{
    const struct {
        const char* text;
        const char* pattern;
        const char* replacement;
        const char* expected;
    } rows[] = {
        {"a%x%b", "%x%", "y", "ayb"},
        {"", "a", "b", ""},
        {"abc", "d", "x", "abc"},
        {"abc", "", "x", "abc"},
        {"abc", "abc", "", ""},
        {"a\\b", "\\", "\\\\", "a\\\\b"},
        {"\\\\", "\\", "\\\\", "\\\\\\\\"},
        // The byte after an unchanged length is skipped.
        {"aaaa", "a", "b", "baba"},
        {"a-a-a", "a", "b", "b-b-b"},
        // A shorter text slips under the step.
        {"aaaa", "a", "", "aa"},
        {"xyxy", "xy", "", "xy"},
        // What a longer text makes of its end and what stands after it is replaced again.
        {"%a%a%", "%a%", "0123%", "01230123%"},
        // What is skipped may be the end.
        {"ab", "b", "", "a"},
        {"abab", "b", "", "aab"},
        {"aa", "aa", "a", "a"},
        // A text that brings in the pattern itself is put in once for each place.
        {"%a%", "%a%", "0123%a%", "0123%a%"},
        {"%a%%a%", "%a%", "0123%a%", "0123%a%0123%a%"},
    };
    for (const auto& row : rows) {
        std::string text = row.text;
        ReplaceAll(text, row.pattern, row.replacement);
        EXPECT_EQ(text, row.expected) << row.text << ' ' << row.pattern;
    }
}
