#include "template/NoChildTemplateSection.h"

#include "template/TemplateErrors.h"

void CNoChildTemplateSection::AddSection(const char*, std::unique_ptr<CTemplateSection>)
{
    throw NestedSectionError();
}
