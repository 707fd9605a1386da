#include "template/parser/TemplateSectionElement.h"

#include <algorithm>

#include "common/Text.h"
#include "template/contracts/TemplateObserver.h"
#include "template/parser/TemplateParsingException.h"

void CTemplateSectionElement::OnClosingBracket()
{
    const AttributeRow* missing = nullptr;
    for (const AttributeRow& row : table.rows) {
        const bool isMissing = row.required != AttributeRow::Optional && !attributes.contains(row.name);
        if (isMissing && (!missing || row.required < missing->required)) {
            missing = &row;
        }
    }
    if (missing) {
        throw RequiredAttributeError(std::string(missing->name));
    }
    for (const auto& [name, value] : attributes) {
        if (table.others == OtherAttributes::Refused && !IsInTable(name)) {
            throw UnknownAttributeError(name);
        }
    }
    isClosed = true;
}

void CTemplateSectionElement::Clear()
{
    attributes.clear();
    isClosed = false;
}

void CTemplateSectionElement::AddText(const char* text, size_t length)
{
    for (size_t i = 0; i < length && text[i] != '\0'; ++i) {
        if (!parser.Feed(text[i])) {
            continue;
        }
        if (attributes.contains(parser.GetName())) {
            throw DuplicateAttributeError(parser.GetName());
        }
        attributes[parser.GetName()] = parser.TakeValue();
        parser.Reset();
    }
}

void CTemplateSectionElement::AddSection(const char*, std::unique_ptr<CTemplateSection> section)
{
    parser.AddSection(std::move(section));
}

void CTemplateSectionElement::OnEndOfFile(const char*, size_t)
{
    throw NoClosingBracketError();
}

void CTemplateSectionElement::TellObserver(CTemplateObserver& observer) const
{
    for (const auto& [name, value] : attributes) {
        if (!IsInTable(name)) {
            observer.OnAttributeKept(name, bodyStart);
        }
    }
}

std::string CTemplateSectionElement::Evaluate(std::string_view name, CImageIterator& iterator,
                                              CContentGenerator& generator) const
{
    CTemplateSection* const section = Find(name);
    return section ? section->GenerateToString(iterator, generator) : std::string();
}

CTemplateSection* CTemplateSectionElement::Find(std::string_view name) const
{
    if (!IsInTable(name)) {
        throw CUnexpectedException("TemplateSectionElement", __LINE__);
    }
    const auto entry = attributes.find(name);
    return isClosed && entry != attributes.end() ? entry->second.get() : nullptr;
}

bool CTemplateSectionElement::IsInTable(std::string_view name) const
{
    return std::any_of(table.rows.begin(), table.rows.end(),
                       [name](const AttributeRow& row) { return row.name == name; });
}

void CTemplateSectionElement::Store(std::string& value, std::optional<std::string> text)
{
    value = std::move(text).value_or("");
}

void CTemplateSectionElement::Store(std::optional<std::string>& value, std::optional<std::string> text)
{
    value = std::move(text);
}

void CTemplateSectionElement::Store(int32_t& value, std::optional<std::string> text)
{
    value = ParseInteger(text.value_or(""));
}

void CTemplateSectionElement::Store(bool& value, std::optional<std::string> text)
{
    value = text == "true";
}
