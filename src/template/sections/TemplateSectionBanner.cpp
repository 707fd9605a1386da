#include "template/sections/TemplateSectionBanner.h"

#include "template/contracts/ContentGenerator.h"

void CTemplateSectionBanner::OnClosingBracket()
{
    width = TakeAttribute("width");
    height = TakeAttribute("height");
}

void CTemplateSectionBanner::Clear()
{
    CTemplateSectionElement::Clear();
    width.reset();
    height.reset();
}

void CTemplateSectionBanner::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                      std::ostream& out)
{
    const std::string frameHeight = Evaluate(height, iterator, generator);
    const std::string frameWidth = Evaluate(width, iterator, generator);
    generator.GenerateBanner(frameWidth, frameHeight, out);
}
