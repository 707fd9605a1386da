#include "template/sections/TemplateSectionTextReference.h"

#include "template/contracts/ContentGenerator.h"

void CTemplateSectionTextReference::OnClosingBracket()
{
    name = TakeAttribute("name");
    hrefProperty = TakeAttribute("href_property");
    defaultHref = TakeAttribute("default_href");
    id = TakeAttribute("id");
    text = TakeAttribute("text");
    defaultText = TakeAttribute("default_text");
    CheckNoAttributesLeft();
}

void CTemplateSectionTextReference::Clear()
{
    CTemplateSectionElement::Clear();
    name.reset();
    hrefProperty.reset();
    defaultHref.reset();
    id.reset();
    text.reset();
    defaultText.reset();
}

void CTemplateSectionTextReference::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                             std::ostream& out)
{
    TextReferenceAttributes reference;
    reference.name = Evaluate(name, iterator, generator);
    reference.id = Evaluate(id, iterator, generator);
    reference.hrefProperty = Evaluate(hrefProperty, iterator, generator);
    reference.defaultHref = Evaluate(defaultHref, iterator, generator);
    reference.text = Evaluate(text, iterator, generator);
    reference.defaultText = Evaluate(defaultText, iterator, generator);
    generator.GenerateTextReference(iterator, reference, out);
}
