#pragma once

#include "template/sections/TemplateSectionElement.h"

// <%textproperty property="object.variable" default="..."%>: a stored text, or the default if the variable
// has no value. An empty string is a value. Owned by its parent; used by one thread.
class CTemplateSectionTextProperty : public CTemplateSectionElement {
public:
    void OnClosingBracket() override;
    void Clear() override;
    // Throws CTemplateParsingException if property has no ".".
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

protected:
    Attribute property;
    Attribute defaultText; // the attribute "default"
};
