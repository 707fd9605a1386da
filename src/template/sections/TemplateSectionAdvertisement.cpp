#include "template/sections/TemplateSectionAdvertisement.h"

#include "template/contracts/ContentGenerator.h"

void CTemplateSectionAdvertisement::OnClosingBracket()
{
    name = TakeAttribute("name");
    CheckNoAttributesLeft();
}

void CTemplateSectionAdvertisement::Clear()
{
    CTemplateSectionElement::Clear();
    name.reset();
}

void CTemplateSectionAdvertisement::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                             std::ostream& out)
{
    generator.GenerateAdvertisement(iterator, Evaluate(name, iterator, generator), out);
}
