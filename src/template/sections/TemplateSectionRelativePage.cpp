#include "template/sections/TemplateSectionRelativePage.h"

#include <cstdlib>

#include "common/Text.h"
#include "template/contracts/ImageIterator.h"

namespace {

void WritePageFileName(CImageIterator& iterator, int64_t target, std::ostream& out)
{
    out << Narrow(iterator.GetPageFileName(ToRing(target, iterator.GetPageCount())));
}

} // namespace

void CTemplateSectionRelativePage::OnClosingBracket()
{
    position = TakeAttribute("position");
    CheckNoAttributesLeft();
}

void CTemplateSectionRelativePage::Clear()
{
    CTemplateSectionElement::Clear();
    position.reset();
}

void CTemplateSectionRelativePage::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                            std::ostream& out)
{
    const int64_t distance = EvaluatePosition(iterator, generator);
    WritePageFileName(iterator, iterator.GetPageIndex() + distance, out);
}

int32_t CTemplateSectionRelativePage::EvaluatePosition(CImageIterator& iterator,
                                                       CContentGenerator& generator) const
{
    return ParseInteger(Evaluate(position, iterator, generator));
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
