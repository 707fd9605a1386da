#include "resources/StringTable.h"

#include <algorithm>
#include <array>

#include "resources/TextCatalogue.h"

namespace {

#define TEXT(name, number, words) TextRow{StringId::name, #name, words},
constexpr auto Rows = [] {
    const TextRow unsorted[] = {
#include "resources/texts/AllTexts.inc"
    };
    auto rows = std::to_array(unsorted);
    std::ranges::sort(rows, {}, &TextRow::id);
    return rows;
}();
#undef TEXT

static_assert(std::ranges::adjacent_find(Rows, {}, &TextRow::id) == Rows.end(), "two texts have one number");

const TextRow* FindRow(StringId id)
{
    const auto row = std::ranges::lower_bound(Rows, id, {}, &TextRow::id);
    return row != Rows.end() && row->id == id ? &*row : nullptr;
}

QString Translated(StringId id, const std::vector<int>& numbers)
{
    const QString english = EnglishText(id);
    const auto catalogue = FindTextCatalogue();
    if (!catalogue) {
        return english;
    }
    const auto translation = catalogue->FindText(static_cast<int>(id), numbers);
    return translation && FitsPlaceholders(*translation, english) ? *translation : english;
}

} // namespace

std::span<const TextRow> GetTextRows()
{
    return Rows;
}

QString EnglishText(StringId id)
{
    const TextRow* const row = FindRow(id);
    return row ? QString::fromUtf8(row->words) : QString();
}

QString Text(StringId id)
{
    return Translated(id, {});
}

QString Text(StringId id, std::initializer_list<CFormatArgument> arguments)
{
    std::vector<int> numbers;
    for (const CFormatArgument& argument : arguments) {
        if (const auto number = argument.GetNumber()) {
            numbers.push_back(*number);
        }
    }
    return FormatText(Translated(id, numbers), arguments);
}
