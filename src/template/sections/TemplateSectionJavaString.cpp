#include "template/sections/TemplateSectionJavaString.h"

#include "template/parser/ReplaceAll.h"

void CTemplateSectionJavaString::OnClosingBracket()
{
    value = TakeAttribute("value");
}

void CTemplateSectionJavaString::Clear()
{
    CTemplateSectionElement::Clear();
    value.reset();
}

void CTemplateSectionJavaString::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                          std::ostream& out)
{
    std::string text = Evaluate(value, iterator, generator);
    ReplaceAll(text, R"(\)", R"(\\)");
    out << text;
}
