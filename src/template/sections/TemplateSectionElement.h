#pragma once

#include <map>

#include "template/parser/TemplateAttributeParser.h"
#include "template/sections/TemplateSection.h"

// An element with attributes. Values are sections, evaluated on each use: an attribute that holds a variable
// follows the iterator. A derived class claims its attributes when the closing bracket has been read. Owned
// by its parent; used by one thread.
class CTemplateSectionElement : public CTemplateSection {
public:
    void Clear() override;
    void AddText(const char* text, size_t length) override;
    void AddSection(const char* name, std::unique_ptr<CTemplateSection> section) override;
    void OnEndOfFile(const char* text, size_t length) override;

protected:
    void TellObserver(CTemplateObserver& observer) const override;

    // Null for an optional attribute that was not given, and for all attributes of an element whose closing
    // bracket was never reached.
    using Attribute = std::unique_ptr<CTemplateSection>;

    enum class Presence { Required, Optional };

    // Claims an attribute. Throws CTemplateParsingException if a required one is missing.
    Attribute TakeAttribute(const char* name, Presence presence = Presence::Required);

    // Throws CTemplateParsingException if an attribute was given that nobody claimed.
    void CheckNoAttributesLeft() const;

    // The text of an attribute in the present state of the iterator; "" for null.
    static std::string Evaluate(const Attribute& attribute, CImageIterator& iterator,
                                CContentGenerator& generator);

private:
    CTemplateAttributeParser parser;
    std::map<std::string, Attribute> attributes; // by name, in byte order: the first one left is reported
};
