#pragma once

#include <QString>

#include "common/Variant.h"
#include "template/parser/CompoundTemplateSection.h"

// What a loop does with its body at each entry. The two passes over a page share the loop and differ in this
// alone, so that they can't disagree about what is repeated. Made on the stack of a pass; keeps no state.
class CBlogProcessor {
public:
    virtual ~CBlogProcessor() = default;
    virtual void Process(CImageIterator& iterator, CContentGenerator& generator, CTemplateSection& body) = 0;
};

// Writes the body.
class CBlogGenerator final : public CBlogProcessor {
public:
    // Borrowed.
    explicit CBlogGenerator(std::ostream& out) : out(out) {}
    void Process(CImageIterator& iterator, CContentGenerator& generator, CTemplateSection& body) override
    {
        body.Generate(iterator, generator, out);
    }

private:
    std::ostream& out;
};

// Registers the pictures of the body.
class CBlogBinder final : public CBlogProcessor {
public:
    void Process(CImageIterator& iterator, CContentGenerator& generator, CTemplateSection& body) override
    {
        body.Bind(iterator, generator);
    }
};

// Overrides one variable of the current page for the length of its life, and puts back what was there, also
// on the way of an exception. A variable that was not there is left with an empty value. Lives on the stack
// of a pass over a page, whose iterator it borrows and whose page must stay the current one meanwhile.
class CScopedPageVariable {
public:
    CScopedPageVariable(CImageIterator& iterator, const QString& name, const CVariant& value);
    ~CScopedPageVariable();
    CScopedPageVariable(const CScopedPageVariable&) = delete;
    CScopedPageVariable& operator=(const CScopedPageVariable&) = delete;

private:
    CVariant saved;
    const QString name;
    CImageIterator& iterator;
};

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
    void SetContext(const TemplateContext& newContext) override;

private:
    void RunLoop(CImageIterator& iterator, CContentGenerator& generator, CBlogProcessor& processor);

    CCompoundTemplateSection body; // takes all text and elements; the inherited children stay empty
};
