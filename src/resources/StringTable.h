#pragma once

#include <span>

#include "resources/FormatText.h"

// The texts that people see: rows of the files in resources/texts. Thread-safe.
enum class StringId : int {
#define TEXT(name, number, words) name = number,
#include "resources/texts/AllTexts.inc"
#undef TEXT
};

struct TextRow {
    StringId id; // its value is the number
    const char* name;
    const char* words; // in English
};

// All rows, by number.
std::span<const TextRow> GetTextRows();

// In English, whatever catalogue is installed.
QString EnglishText(StringId id);

// The text as it stands, its "%" included: from the installed catalogue, or in English if there is none that
// has it (see resources/TextCatalogue.h).
QString Text(StringId id);

// The same with its placeholders filled, see FormatText.
QString Text(StringId id, std::initializer_list<CFormatArgument> arguments);

template <class... Arguments>
QString Text(StringId id, const CFormatArgument& first, const Arguments&... others)
{
    return Text(id, {first, CFormatArgument(others)...});
}
