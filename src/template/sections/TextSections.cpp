#include "template/sections/TextSections.h"

#include <sstream>

#include "common/Text.h"
#include "template/contracts/ContentGenerator.h"
#include "template/contracts/ImageIterator.h"
#include "template/parser/TemplateVariableName.h"

namespace {

constexpr int Optional = AttributeRow::Optional;

const AttributeTable TextPropertyTable = {OtherAttributes::Kept, {{"property", 1}, {"default", 2}}};

const ValueTable<TextSpanAttributes> TextSpanTable = {
    OtherAttributes::Refused,
    {{"property", 1, &TextSpanAttributes::property},
     {"default", 2, &TextSpanAttributes::defaultText},
     {"name", 3, &TextSpanAttributes::name},
     {"multiline", Optional, &TextSpanAttributes::multiline},
     {"max_chars", Optional, &TextSpanAttributes::maxChars}}};

using Reference = TextReferenceAttributes;

const ValueTable<Reference> ReferenceTable = {OtherAttributes::Refused,
                                              {{"name", 1, &Reference::name},
                                               {"id", 4, &Reference::id},
                                               {"href_property", 2, &Reference::hrefProperty},
                                               {"default_href", 3, &Reference::defaultHref},
                                               {"text", 5, &Reference::text},
                                               {"default_text", 6, &Reference::defaultText}}};

// The answer of the iterator doesn't matter: it leaves a message as the value of an object that it doesn't
// know, and that message is what the page shows.
CVariant ValueOf(const std::string& path, CImageIterator& iterator)
{
    const CTemplateVariableName variable(Widen(path));
    CVariant value;
    iterator.GetVariable(variable.GetObjectName(), variable.GetVariableName(), value);
    return value;
}

} // namespace

void CTemplateSectionVariable::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                        std::ostream& out)
{
    std::ostringstream text;
    CCompoundTemplateSection::Generate(iterator, generator, text);
    std::string path = text.str();
    path.erase(0, 1); // the "="
    out << Narrow(generator.VariantToString(ValueOf(path, iterator)));
}

CTemplateSectionTextProperty::CTemplateSectionTextProperty() : CTemplateSectionElement(TextPropertyTable) {}

void CTemplateSectionTextProperty::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                            std::ostream& out)
{
    const CVariant value = ValueOf(Evaluate("property", iterator, generator), iterator);
    if (value.IsEmpty()) {
        out << Evaluate("default", iterator, generator);
    } else {
        out << Narrow(generator.VariantToString(value));
    }
}

CTemplateSectionTextSpan::CTemplateSectionTextSpan() : CTemplateSectionTextProperty(TextSpanTable) {}

void CTemplateSectionTextSpan::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                        std::ostream& out)
{
    generator.GenerateTextSpan(iterator, EvaluateAll(TextSpanTable, iterator, generator), out);
}

CTemplateSectionTextReference::CTemplateSectionTextReference() : CTemplateSectionElement(ReferenceTable) {}

void CTemplateSectionTextReference::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                             std::ostream& out)
{
    generator.GenerateTextReference(iterator, EvaluateAll(ReferenceTable, iterator, generator), out);
}
