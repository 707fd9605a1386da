#include "template/sections/CompoundTemplateSection.h"

#include "template/sections/TemplateSectionText.h"

void CCompoundTemplateSection::Clear()
{
    children.clear();
}

void CCompoundTemplateSection::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                        std::ostream& out)
{
    for (const auto& child : children) {
        if (child) {
            child->Generate(iterator, generator, out);
        }
    }
}

void CCompoundTemplateSection::AddText(const char* text, size_t length)
{
    AddSection(nullptr, std::make_unique<CTemplateSectionText>(text, length));
}

void CCompoundTemplateSection::AddSection(const char*, std::unique_ptr<CTemplateSection> section)
{
    children.push_back(std::move(section));
}

void CCompoundTemplateSection::Bind(CImageIterator& iterator, CContentGenerator& generator)
{
    for (const auto& child : children) {
        if (child) {
            child->Bind(iterator, generator);
        }
    }
}
