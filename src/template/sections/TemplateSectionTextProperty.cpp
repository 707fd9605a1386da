#include "template/sections/TemplateSectionTextProperty.h"

#include "common/Text.h"
#include "template/contracts/ContentGenerator.h"
#include "template/contracts/ImageIterator.h"
#include "template/parser/TemplateVariableName.h"

void CTemplateSectionTextProperty::OnClosingBracket()
{
    property = TakeAttribute("property");
    defaultText = TakeAttribute("default");
}

void CTemplateSectionTextProperty::Clear()
{
    CTemplateSectionElement::Clear();
    property.reset();
    defaultText.reset();
}

void CTemplateSectionTextProperty::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                            std::ostream& out)
{
    const CTemplateVariableName variable(Widen(Evaluate(property, iterator, generator)));
    CVariant value;
    iterator.GetVariable(variable.GetObjectName(), variable.GetVariableName(), value);
    if (value.IsEmpty()) {
        out << Evaluate(defaultText, iterator, generator);
    } else {
        out << Narrow(generator.VariantToString(value));
    }
}
