#include "template/sections/NoChildTemplateSection.h"

#include "template/parser/TemplateErrors.h"

void CNoChildTemplateSection::AddSection(const char*, std::unique_ptr<CTemplateSection>)
{
    throw NestedSectionError();
}
