#pragma once

#include "template/sections/CompoundTemplateSectionWithClosingBracket.h"

class CBlogProcessor;

// <%blog body%>: the loop of the language. Repeats its body for up to 11 pictures of the gallery around the
// current page, with page.blog_index (the picture's position from 0), page.blog_reference (its distance from
// the current page) and page.blog_number (its position from 1) set for each. The run keeps its length at the
// start of the gallery and is cut off at its end. Owned by its parent; used by one thread.
class CTemplateSectionBlog final : public CCompoundTemplateSectionWithClosingBracket {
public:
    // How many loops may stand in each other. Each of them repeats what is inside eleven times, so that a few
    // more would never come to an end.
    static constexpr int MaxDepth = 4;

    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
    void AddSection(const char* name, std::unique_ptr<CTemplateSection> section) override;
    void Bind(CImageIterator& iterator, CContentGenerator& generator) override;
    // Throws CTemplateParsingException for a loop in too many others.
    void SetDepth(const TemplateDepth& newDepth) override;

private:
    void RunLoop(CImageIterator& iterator, CContentGenerator& generator, CBlogProcessor& processor);

    CCompoundTemplateSection body; // takes all text and elements; the inherited children stay empty
};
