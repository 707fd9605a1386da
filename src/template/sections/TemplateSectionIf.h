#pragma once

#include "template/sections/CompoundTemplateSectionWithClosingBracket.h"

// <%if CONDITION then <%else other%>%>: the first child is the condition, true if it writes any text; "0" and
// blanks are true. Both passes evaluate it for themselves. Owned by its parent; used by one thread.
class CTemplateSectionIf final : public CCompoundTemplateSectionWithClosingBracket {
public:
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
    // Throws CTemplateParsingException for a second "else".
    void AddSection(const char* name, std::unique_ptr<CTemplateSection> section) override;
    // Binds the branch that holds now. The condition itself isn't bound.
    void Bind(CImageIterator& iterator, CContentGenerator& generator) override;

private:
    // The branch to take; null for an "else" that isn't there.
    CTemplateSection* ChooseBranch(CImageIterator& iterator, CContentGenerator& generator);

    std::unique_ptr<CTemplateSection> condition; // null counts as true
    CCompoundTemplateSection thenBranch;
    std::unique_ptr<CTemplateSection> elseBranch;
};
