#include "template/sections/NavigationSections.h"

#include <cstdlib>

#include "common/Text.h"
#include "template/contracts/ContentGenerator.h"
#include "template/contracts/ImageIterator.h"

namespace {

using Table = NavigationTableAttributes;

const ValueTable<Table> NavigationTable = {OtherAttributes::Refused,
                                           {{"max_pages_count", 1, &Table::maxPagesCount},
                                            {"previous_image", 3, &Table::previousImage},
                                            {"next_image", 4, &Table::nextImage},
                                            {"page_image", 5, &Table::pageImage},
                                            {"page_image_selected", 2, &Table::pageImageSelected},
                                            {"first_image", 6, &Table::firstImage},
                                            {"last_image", 7, &Table::lastImage},
                                            {"previous_page_alt", 8, &Table::previousPageAlt},
                                            {"next_page_alt", 9, &Table::nextPageAlt},
                                            {"page_alt", 10, &Table::pageAlt},
                                            {"first_page_alt", 11, &Table::firstPageAlt},
                                            {"last_page_alt", 12, &Table::lastPageAlt}}};

const AttributeTable RelativePageTable = {OtherAttributes::Refused, {{"position", 1}}};

void WritePageFileName(CImageIterator& iterator, int64_t target, std::ostream& out)
{
    out << Narrow(iterator.GetPageFileName(ToRing(target, iterator.GetPageCount())));
}

} // namespace

CTemplateSectionNavigationTable::CTemplateSectionNavigationTable() : CTemplateSectionElement(NavigationTable)
{}

void CTemplateSectionNavigationTable::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                               std::ostream& out)
{
    generator.GenerateNavigationTable(iterator, EvaluateAll(NavigationTable, iterator, generator), out);
}

CTemplateSectionRelativePage::CTemplateSectionRelativePage() : CTemplateSectionElement(RelativePageTable) {}

void CTemplateSectionRelativePage::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                            std::ostream& out)
{
    const int64_t distance = EvaluatePosition(iterator, generator);
    WritePageFileName(iterator, iterator.GetPageIndex() + distance, out);
}

int32_t CTemplateSectionRelativePage::EvaluatePosition(CImageIterator& iterator,
                                                       CContentGenerator& generator) const
{
    return ParseInteger(Evaluate("position", iterator, generator));
}

void CTemplateSectionRelativePageBlock::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                                 std::ostream& out)
{
    const int64_t distance = EvaluatePosition(iterator, generator);
    WritePageFileName(iterator, StepByBlock(iterator.GetPageIndex(), distance), out);
}

int32_t ToRing(int64_t target, int32_t pageCount)
{
    if (target >= pageCount) {
        return 0;
    }
    if (target < 0) {
        return pageCount > 0 ? pageCount - 1 : 0;
    }
    return static_cast<int32_t>(target);
}

int64_t StepByBlock(int64_t page, int64_t position)
{
    if (position == 0) {
        return page;
    }
    const int64_t block = std::abs(position);
    const int64_t start = page - page % block;
    return position > 0 ? start + position : start + block - 1 + position;
}
