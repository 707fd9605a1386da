#pragma once

#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/TemplateSectionElement.h"

// The sections that write values and stored texts. Each is owned by its parent and used by one thread.

// <%=object.variable%>: the text of a value. Its children are the text from "=" on and the elements in it, so
// that a name can itself be computed.
class CTemplateSectionVariable final : public CCompoundTemplateSectionWithClosingBracket {
public:
    // Writes the value as it is, without escaping: values may be markup on purpose. Throws
    // CTemplateParsingException if the name has no ".".
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};

// <%textproperty property="object.variable" default="..."%>: a stored text, or the default if the variable
// has no value. An empty string is a value.
class CTemplateSectionTextProperty : public CTemplateSectionElement {
public:
    CTemplateSectionTextProperty();
    // Throws CTemplateParsingException if property has no ".".
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

protected:
    using CTemplateSectionElement::CTemplateSectionElement;
};

// <%textspan%>: a stored text that the user can edit in place, so the generator writes it.
class CTemplateSectionTextSpan final : public CTemplateSectionTextProperty {
public:
    CTemplateSectionTextSpan();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};

// <%textref%>: a link whose target and text the user can edit.
class CTemplateSectionTextReference final : public CTemplateSectionElement {
public:
    CTemplateSectionTextReference();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};
