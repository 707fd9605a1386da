#include "template/sections/ConditionSections.h"

#include "common/Text.h"
#include "template/contracts/ImageIterator.h"
#include "template/parser/TemplateParsingException.h"

namespace {

const AttributeTable IsEqualTable = {OtherAttributes::Kept, {{"property1", 1}, {"property2", 2}}};
const AttributeTable IsVisibleTable = {OtherAttributes::Kept, {{"layout", 1}}};

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

CTemplateSectionIsEqual::CTemplateSectionIsEqual() : CTemplateSectionElement(IsEqualTable) {}

void CTemplateSectionIsEqual::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                       std::ostream& out)
{
    const std::string first = Evaluate("property1", iterator, generator);
    const std::string second = Evaluate("property2", iterator, generator);
    if (first == second) {
        out << '1';
    }
}

CTemplateSectionIsVisible::CTemplateSectionIsVisible() : CTemplateSectionElement(IsVisibleTable) {}

void CTemplateSectionIsVisible::Generate(CImageIterator& iterator, CContentGenerator& generator,
                                         std::ostream& out)
{
    if (iterator.IsElementVisible(Widen(Evaluate("layout", iterator, generator)))) {
        out << '1';
    }
}
