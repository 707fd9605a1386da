#include "template/sections/TemplateSectionElement.h"

#include "template/contracts/TemplateObserver.h"
#include "template/parser/TemplateErrors.h"

void CTemplateSectionElement::Clear()
{
    attributes.clear();
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
        observer.OnAttributeKept(name, bodyStart);
    }
}

CTemplateSectionElement::Attribute CTemplateSectionElement::TakeAttribute(const char* name, Presence presence)
{
    const auto entry = attributes.find(name);
    if (entry == attributes.end()) {
        if (presence == Presence::Required) {
            throw RequiredAttributeError(name);
        }
        return nullptr;
    }
    Attribute attribute = std::move(entry->second);
    attributes.erase(entry);
    return attribute;
}

void CTemplateSectionElement::CheckNoAttributesLeft() const
{
    if (!attributes.empty()) {
        throw UnknownAttributeError(attributes.begin()->first);
    }
}

std::string CTemplateSectionElement::Evaluate(const Attribute& attribute, CImageIterator& iterator,
                                              CContentGenerator& generator)
{
    return attribute ? attribute->GenerateToString(iterator, generator) : std::string();
}
