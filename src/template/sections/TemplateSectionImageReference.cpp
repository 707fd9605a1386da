#include "template/sections/TemplateSectionImageReference.h"

#include "template/contracts/ContentGenerator.h"

void CTemplateSectionImageReference::OnClosingBracket()
{
    name = TakeAttribute("name");
    hrefProperty = TakeAttribute("href_property");
    src = TakeAttribute("src");
    altProperty = TakeAttribute("alt_property");
    defaultHref = TakeAttribute("default_href");
    defaultAlt = TakeAttribute("default_alt");
    id = TakeAttribute("id");
    CheckNoAttributesLeft();
}

void CTemplateSectionImageReference::Clear()
{
    CTemplateSectionElement::Clear();
    name.reset();
    src.reset();
    hrefProperty.reset();
    altProperty.reset();
    defaultHref.reset();
    defaultAlt.reset();
    id.reset();
}

void CTemplateSectionImageReference::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                              std::ostream& out)
{
    ImageReferenceAttributes reference;
    reference.name = Evaluate(name, iterator, generator);
    reference.id = Evaluate(id, iterator, generator);
    reference.src = Evaluate(src, iterator, generator);
    reference.hrefProperty = Evaluate(hrefProperty, iterator, generator);
    reference.altProperty = Evaluate(altProperty, iterator, generator);
    reference.defaultHref = Evaluate(defaultHref, iterator, generator);
    reference.defaultAlt = Evaluate(defaultAlt, iterator, generator);
    generator.GenerateImageReference(iterator, reference, out);
}
