#pragma once

#include "template/sections/NoChildTemplateSection.h"

// Literal text of a page: the bytes outside elements, and those of attribute values. Owned by its parent;
// used by one thread.
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
