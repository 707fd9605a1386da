#pragma once

#include "template/sections/TemplateSectionElement.h"

// <%textref%>: a link whose target and text the user can edit. Owned by its parent; used by one thread.
class CTemplateSectionTextReference final : public CTemplateSectionElement {
public:
    void OnClosingBracket() override;
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

private:
    Attribute name;
    Attribute hrefProperty;
    Attribute defaultHref;
    Attribute id;
    Attribute text;
    Attribute defaultText;
};
