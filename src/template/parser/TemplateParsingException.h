#pragma once

#include <cstdint>
#include <string>

#include "common/Exceptions.h"

// An error in a layout. The offsets are those of the failing section's body in the page file, in bytes, both
// 0 until the section is known and for an error at evaluation.
class CTemplateParsingException : public CGenericException {
public:
    using CGenericException::CGenericException;

    uint64_t errorStart = 0;
    uint64_t errorEnd = 0;
};

// An error of the page markup: the common caption and advice with this description.
CTemplateParsingException TemplateError(const QString& description);

// The errors of the page markup, one function for each, to be thrown by the place that finds it. Names and
// bytes are shown as the page wrote them; bad UTF-8 shows as U+FFFD. Thread-safe.

CTemplateParsingException UnknownSectionError(const std::string& name);
CTemplateParsingException NestedSectionError();
CTemplateParsingException InvalidVariableSyntaxError(const QString& text);
CTemplateParsingException DuplicateAttributeError(const std::string& name);
CTemplateParsingException RequiredAttributeError(const std::string& name);
CTemplateParsingException UnknownAttributeError(const std::string& name);
CTemplateParsingException InvalidCharacterError(char found);
CTemplateParsingException NoOpeningQuoteError(const std::string& attributeName);
CTemplateParsingException UnexpectedElseError();
CTemplateParsingException NoClosingBracketError();

// Limits that keep a page from exhausting the stack or the user's patience.
CTemplateParsingException NestingTooDeepError(int limit);
CTemplateParsingException LoopsTooDeepError(int limit);
CTemplateParsingException IncludeTooDeepError(const QString& file, int limit);
CTemplateParsingException TooManyIncludesError(const QString& file, int limit);
