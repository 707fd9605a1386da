#pragma once

#include <string>
#include <string_view>

// Follows the lines of replies as their bytes arrive, to know where a server has finished speaking (RFC 959,
// 4.2): a line "230-..." opens a reply of several lines, and "230 ..." closes it. A value.
class CReplyLines {
public:
    void Feed(std::string_view bytes);

    // True if the last byte ended a line behind which nothing is announced.
    bool IsAtEnd() const { return atEnd; }

private:
    void EndLine();

    std::string head;     // at most the first four bytes of the line
    std::string openCode; // of the reply that is not closed yet
    bool atEnd = false;
};
