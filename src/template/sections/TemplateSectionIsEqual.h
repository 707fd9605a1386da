#pragma once

#include "template/sections/TemplateSectionElement.h"

// <%isequal property1="..." property2="..."%>: writes "1" if both texts are equal, byte for byte and with
// case; otherwise nothing. Made for conditions. Owned by its parent; used by one thread.
class CTemplateSectionIsEqual final : public CTemplateSectionElement {
public:
    void OnClosingBracket() override;
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

private:
    Attribute property1;
    Attribute property2;
};
