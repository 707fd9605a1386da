#pragma once

#include "template/sections/TemplateSectionElement.h"

// <%navigationtable%>: a row of links to the pages of a gallery, with images that the style provides. Owned
// by its parent; used by one thread.
class CTemplateSectionNavigationTable final : public CTemplateSectionElement {
public:
    void OnClosingBracket() override;
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

private:
    Attribute maxPagesCount;
    Attribute pageImageSelected;
    Attribute previousImage;
    Attribute nextImage;
    Attribute pageImage;
    Attribute firstImage;
    Attribute lastImage;
    Attribute previousPageAlt;
    Attribute nextPageAlt;
    Attribute pageAlt;
    Attribute firstPageAlt;
    Attribute lastPageAlt;
};
