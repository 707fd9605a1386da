#pragma once

#include "template/sections/TemplateSectionTextProperty.h"

// <%textspan%>: a stored text that the user can edit in place, so the generator writes it. Owned by its
// parent; used by one thread.
class CTemplateSectionTextSpan final : public CTemplateSectionTextProperty {
public:
    void OnClosingBracket() override;
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

private:
    Attribute name;
    Attribute maxChars;  // optional
    Attribute multiline; // optional
};
