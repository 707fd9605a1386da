#include "template/sections/TemplateSectionIsEqual.h"

void CTemplateSectionIsEqual::OnClosingBracket()
{
    property1 = TakeAttribute("property1");
    property2 = TakeAttribute("property2");
}

void CTemplateSectionIsEqual::Clear()
{
    CTemplateSectionElement::Clear();
    property1.reset();
    property2.reset();
}

void CTemplateSectionIsEqual::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                       std::ostream& out)
{
    const std::string first = Evaluate(property1, iterator, generator);
    const std::string second = Evaluate(property2, iterator, generator);
    if (first == second) {
        out << '1';
    }
}
