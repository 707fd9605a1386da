#pragma once

#include "template/sections/TemplateSectionElement.h"

// <%imgref%>: a linked image whose target and alternative text the user can edit. Owned by its parent; used
// by one thread.
class CTemplateSectionImageReference final : public CTemplateSectionElement {
public:
    void OnClosingBracket() override;
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

private:
    Attribute name;
    Attribute src;
    Attribute hrefProperty;
    Attribute altProperty;
    Attribute defaultHref;
    Attribute defaultAlt;
    Attribute id;
};
