#include "template/sections/TemplateSectionNavigationTable.h"

#include "common/Text.h"
#include "template/contracts/ContentGenerator.h"

void CTemplateSectionNavigationTable::OnClosingBracket()
{
    maxPagesCount = TakeAttribute("max_pages_count");
    pageImageSelected = TakeAttribute("page_image_selected");
    previousImage = TakeAttribute("previous_image");
    nextImage = TakeAttribute("next_image");
    pageImage = TakeAttribute("page_image");
    firstImage = TakeAttribute("first_image");
    lastImage = TakeAttribute("last_image");
    previousPageAlt = TakeAttribute("previous_page_alt");
    nextPageAlt = TakeAttribute("next_page_alt");
    pageAlt = TakeAttribute("page_alt");
    firstPageAlt = TakeAttribute("first_page_alt");
    lastPageAlt = TakeAttribute("last_page_alt");
    CheckNoAttributesLeft();
}

void CTemplateSectionNavigationTable::Clear()
{
    CTemplateSectionElement::Clear();
    maxPagesCount.reset();
    pageImageSelected.reset();
    previousImage.reset();
    nextImage.reset();
    pageImage.reset();
    firstImage.reset();
    lastImage.reset();
    previousPageAlt.reset();
    nextPageAlt.reset();
    pageAlt.reset();
    firstPageAlt.reset();
    lastPageAlt.reset();
}

void CTemplateSectionNavigationTable::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                               std::ostream& out)
{
    NavigationTableAttributes table;
    table.maxPagesCount = ParseInteger(Evaluate(maxPagesCount, iterator, generator));
    table.previousImage = Evaluate(previousImage, iterator, generator);
    table.nextImage = Evaluate(nextImage, iterator, generator);
    table.pageImage = Evaluate(pageImage, iterator, generator);
    table.pageImageSelected = Evaluate(pageImageSelected, iterator, generator);
    table.firstImage = Evaluate(firstImage, iterator, generator);
    table.lastImage = Evaluate(lastImage, iterator, generator);
    table.previousPageAlt = Evaluate(previousPageAlt, iterator, generator);
    table.nextPageAlt = Evaluate(nextPageAlt, iterator, generator);
    table.pageAlt = Evaluate(pageAlt, iterator, generator);
    table.firstPageAlt = Evaluate(firstPageAlt, iterator, generator);
    table.lastPageAlt = Evaluate(lastPageAlt, iterator, generator);
    generator.GenerateNavigationTable(iterator, table, out);
}
