#pragma once

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
