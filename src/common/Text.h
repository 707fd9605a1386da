#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <QString>

// Text in the model is wide (QString). Text in layouts and in generated pages is narrow: bytes in the
// system's narrow code page, UTF-8.

// Bad bytes become U+FFFD.
QString Widen(std::string_view text);

// Never fails: a lone surrogate becomes "?".
std::string Narrow(const QString& text);

// The case folding of all keys: variable names, object names, paths.
QString Lower(const QString& text);
bool EqualsIgnoreCase(const QString& a, const QString& b);

// C's atoi without its undefined cases: leading white space, a sign, digits; anything unparsable is 0, and a
// number outside the range of 32 bits is the nearest one inside it.
int32_t ParseInteger(std::string_view text);
