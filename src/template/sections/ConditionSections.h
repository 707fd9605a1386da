#pragma once

#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/TemplateSectionElement.h"

// The conditional and the tests that were made for its condition. Each is owned by its parent; used by one
// thread at a time.

// <%if CONDITION then <%else other%>%>: the first child is the condition, true if it writes any text; "0" and
// blanks are true. Both passes evaluate it for themselves.
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

// <%isequal property1="..." property2="..."%>: writes "1" if both texts are equal, byte for byte and with
// case; otherwise nothing.
class CTemplateSectionIsEqual final : public CTemplateSectionElement {
public:
    CTemplateSectionIsEqual();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};

// <%isvisible layout="..."%>: writes "1" unless the user has hidden the page element of that name. Asking
// makes the name known to the user's list of elements.
class CTemplateSectionIsVisible final : public CTemplateSectionElement {
public:
    CTemplateSectionIsVisible();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};
