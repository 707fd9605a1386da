#pragma once

#include <vector>

#include "template/sections/TemplateSection.h"

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
