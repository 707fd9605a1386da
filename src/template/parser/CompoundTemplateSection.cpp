#include "template/parser/CompoundTemplateSection.h"

#include "template/parser/TemplateParsingException.h"

void CCompoundTemplateSection::Clear()
{
    children.clear();
}

void CCompoundTemplateSection::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                        std::ostream& out)
{
    for (const auto& child : children) {
        if (context.IsStopped()) {
            return;
        }
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
        if (context.IsStopped()) {
            return;
        }
        if (child) {
            child->Bind(iterator, generator);
        }
    }
}

void CCompoundTemplateSectionWithClosingBracket::OnEndOfFile(const char*, size_t)
{
    throw NoClosingBracketError();
}

void CNoChildTemplateSection::AddSection(const char*, std::unique_ptr<CTemplateSection>)
{
    throw NestedSectionError();
}

void CTemplateSectionText::Generate(CImageIterator&, CContentGenerator&, std::ostream& out)
{
    out << text.c_str(); // odd on purpose: a NUL byte in a page ends the output of its section
}
