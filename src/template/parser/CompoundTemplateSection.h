#pragma once

#include <vector>

#include "template/parser/TemplateSection.h"

// The sections that are no elements with attributes: they hold other sections, or text alone. Each is owned
// by its parent, the root of a page by whoever parses it.

// A section with children in document order: the root of a page, the body of an "else".
class CCompoundTemplateSection : public CTemplateSection {
public:
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
    void AddText(const char* text, size_t length) override;
    void AddSection(const char* name, std::unique_ptr<CTemplateSection> section) override;
    void Bind(CImageIterator& iterator, CContentGenerator& generator) override;

protected:
    // Null where the input ended inside the keyword of an element; such a child is passed over.
    std::vector<std::unique_ptr<CTemplateSection>> children;
};

// A compound whose closing "%>" must be there: the end of the input inside it is an error.
class CCompoundTemplateSectionWithClosingBracket : public CCompoundTemplateSection {
public:
    void OnEndOfFile(const char* text, size_t length) override;
};

// A section in which no element may stand.
class CNoChildTemplateSection : public CTemplateSection {
public:
    void AddSection(const char* name, std::unique_ptr<CTemplateSection> section) override;
};

// Literal text of a page: the bytes outside elements, and those of attribute values.
class CTemplateSectionText final : public CNoChildTemplateSection {
public:
    CTemplateSectionText(const char* text, size_t length) : text(text, length) {}

    void Clear() override { text.clear(); }
    // Writes up to the first NUL byte.
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
    void AddText(const char* moreText, size_t length) override { text.append(moreText, length); }

private:
    std::string text;
};
