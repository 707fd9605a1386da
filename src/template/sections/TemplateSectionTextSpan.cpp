#include "template/sections/TemplateSectionTextSpan.h"

#include "common/Text.h"
#include "template/contracts/ContentGenerator.h"

void CTemplateSectionTextSpan::OnClosingBracket()
{
    CTemplateSectionTextProperty::OnClosingBracket();
    name = TakeAttribute("name");
    maxChars = TakeAttribute("max_chars", Presence::Optional);
    multiline = TakeAttribute("multiline", Presence::Optional);
    CheckNoAttributesLeft();
}

void CTemplateSectionTextSpan::Clear()
{
    CTemplateSectionTextProperty::Clear();
    name.reset();
    maxChars.reset();
    multiline.reset();
}

void CTemplateSectionTextSpan::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                        std::ostream& out)
{
    TextSpanAttributes span;
    span.property = Evaluate(property, iterator, generator);
    span.defaultText = Evaluate(defaultText, iterator, generator);
    span.name = Evaluate(name, iterator, generator);
    span.multiline = Evaluate(multiline, iterator, generator) == "true";
    span.maxChars = ParseInteger(Evaluate(maxChars, iterator, generator));
    generator.GenerateTextSpan(iterator, span, out);
}
