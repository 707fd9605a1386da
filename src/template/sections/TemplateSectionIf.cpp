#include "template/sections/TemplateSectionIf.h"

#include "common/Text.h"
#include "template/parser/TemplateErrors.h"

namespace {

bool IsElse(const char* name)
{
    return name && EqualsIgnoreCase(Widen(name), QStringLiteral("else"));
}

} // namespace

void CTemplateSectionIf::Clear()
{
    CCompoundTemplateSectionWithClosingBracket::Clear();
    condition.reset();
    thenBranch.Clear();
    elseBranch.reset();
}

void CTemplateSectionIf::AddSection(const char* name, std::unique_ptr<CTemplateSection> section)
{
    if (!condition) {
        condition = std::move(section);
    } else if (!IsElse(name)) {
        thenBranch.AddSection(name, std::move(section));
    } else if (!elseBranch) {
        elseBranch = std::move(section);
    } else {
        throw UnexpectedElseError();
    }
}

void CTemplateSectionIf::Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out)
{
    if (CTemplateSection* branch = ChooseBranch(iterator, generator)) {
        branch->Generate(iterator, generator, out);
    }
}

void CTemplateSectionIf::Bind(CImageIterator& iterator, CContentGenerator& generator)
{
    if (CTemplateSection* branch = ChooseBranch(iterator, generator)) {
        branch->Bind(iterator, generator);
    }
}

CTemplateSection* CTemplateSectionIf::ChooseBranch(CImageIterator& iterator, CContentGenerator& generator)
{
    const bool isTrue = !condition || !condition->GenerateToString(iterator, generator).empty();
    return isTrue ? &thenBranch : elseBranch.get();
}
