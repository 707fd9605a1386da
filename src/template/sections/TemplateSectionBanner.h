#pragma once

#include "template/sections/TemplateSectionElement.h"

// <%banner width="468" height="60"%>: a frame of that size for the banner server. Owned by its parent; used
// by one thread.
class CTemplateSectionBanner final : public CTemplateSectionElement {
public:
    void OnClosingBracket() override;
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

private:
    Attribute width;
    Attribute height;
};
