#include "template/sections/CompoundTemplateSectionWithClosingBracket.h"

#include "template/parser/TemplateErrors.h"

void CCompoundTemplateSectionWithClosingBracket::OnEndOfFile(const char*, size_t)
{
    throw NoClosingBracketError();
}
