#include "template/sections/TemplateSectionIsVisible.h"

#include "common/Text.h"
#include "template/contracts/ImageIterator.h"

void CTemplateSectionIsVisible::OnClosingBracket()
{
    layout = TakeAttribute("layout");
}

void CTemplateSectionIsVisible::Clear()
{
    CTemplateSectionElement::Clear();
    layout.reset();
}

void CTemplateSectionIsVisible::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                         std::ostream& out)
{
    if (iterator.IsElementVisible(Widen(Evaluate(layout, iterator, generator)))) {
        out << '1';
    }
}
