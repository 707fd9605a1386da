#pragma once

#include <memory>
#include <string>

#include "template/parser/CompoundTemplateSection.h"

// Reads one attribute at a time, byte by byte: name="value" or name='value', with elements in the value.
// Owned by its element; lives while the element is parsed.
class CTemplateAttributeParser {
public:
    // True when this byte finished the attribute; then TakeValue and Reset are due. Throws
    // CTemplateParsingException.
    bool Feed(char c);

    // An element that stands between the bytes fed before and after; null for one that the input cut off.
    // Throws CTemplateParsingException outside a value.
    void AddSection(std::unique_ptr<CTemplateSection> section);

    const std::string& GetName() const { return name; }

    // The value of a finished attribute: a text, or a compound if elements stand in it. Never null.
    std::unique_ptr<CTemplateSection> TakeValue();

    // Makes ready for the next attribute.
    void Reset() { *this = CTemplateAttributeParser(); }

private:
    enum class State : int { Between = 0, InName = 1, AfterEquals = 2, InValue = 3, Finished = 4 };

    void MoveTextToCompound();

    std::string name;
    std::string value; // the text since the last nested element
    std::unique_ptr<CCompoundTemplateSection> compound;
    char quote = '"';
    State state = State::Between;
};
