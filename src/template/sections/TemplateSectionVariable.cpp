#include "template/sections/TemplateSectionVariable.h"

#include <sstream>

#include "common/Text.h"
#include "template/contracts/ContentGenerator.h"
#include "template/contracts/ImageIterator.h"
#include "template/parser/TemplateVariableName.h"

void CTemplateSectionVariable::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                        std::ostream& out)
{
    std::ostringstream text;
    CCompoundTemplateSection::Generate(iterator, generator, text);
    std::string name = text.str();
    name.erase(0, 1); // the "="
    const CTemplateVariableName variable(Widen(name));
    CVariant value;
    // The answer doesn't matter: the iterator leaves a message as the value of an object that it doesn't
    // know, and that message is what the page shows.
    iterator.GetVariable(variable.GetObjectName(), variable.GetVariableName(), value);
    out << Narrow(generator.VariantToString(value));
}
