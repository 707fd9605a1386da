#pragma once

#include "template/sections/NoChildTemplateSection.h"

// <%pageheader%>: what the page's head needs from the system. Words behind the keyword are accepted and lost.
// Owned by its parent; used by one thread.
class CTemplateSectionPageHeader final : public CNoChildTemplateSection {
public:
    void Clear() override {}
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
    void AddText(const char*, size_t) override {}
    void OnEndOfFile(const char* text, size_t length) override;
};
