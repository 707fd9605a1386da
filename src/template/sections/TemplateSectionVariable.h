#pragma once

#include "template/sections/CompoundTemplateSectionWithClosingBracket.h"

// <%=object.variable%>: the text of a value. Its children are the text from "=" on and the elements in it, so
// that a name can itself be computed. Owned by its parent; used by one thread.
class CTemplateSectionVariable final : public CCompoundTemplateSectionWithClosingBracket {
public:
    // Writes the value as it is, without escaping: values may be markup on purpose. Throws
    // CTemplateParsingException if the name has no ".".
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};
