#include "template/CompoundTemplateSectionWithClosingBracket.h"

#include "template/TemplateErrors.h"

void CCompoundTemplateSectionWithClosingBracket::OnEndOfFile(const char*, size_t)
{
    throw NoClosingBracketError();
}
