#pragma once

#include <cstdint>
#include <fstream>
#include <istream>
#include <optional>

#include <QString>

// Page files as streams of bytes. The bytes come unchanged on every system, line ends included, so that
// positions in a page can be compared with those of a second read. No state of its own.

// Opens a page file for reading. The stream isn't good if the path names no regular file that can be read: a
// folder or a device is refused, since reading it would fail late or never end.
std::ifstream OpenPageFile(const QString& path);

// The next byte; nothing at the end of the input or when reading fails: the stream isn't good any more then.
std::optional<char> ReadPageByte(std::istream& stream);

// The next byte without consuming it; nothing at the end. The state of the stream stays as it is.
std::optional<char> PeekPageByte(std::istream& stream);

// Puts the byte that was read last back.
void UnreadPageByte(std::istream& stream);

// Bytes before the next one, the size of the input once its end was met; 0 for a stream without positions.
uint64_t GetPagePosition(std::istream& stream);

// Classes of bytes in page markup: those of the C locale, whatever locale the program runs in, so that a byte
// of a UTF-8 character is neither a blank nor a letter.

constexpr bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool IsLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

constexpr bool IsQuote(char c)
{
    return c == '"' || c == '\'';
}
