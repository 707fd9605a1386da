#pragma once

#include "template/sections/TemplateSectionElement.h"

// <%javastring value="..."%>: the value with its backslashes doubled, for a string in a script. Quotes are
// left alone. Owned by its parent; used by one thread.
class CTemplateSectionJavaString final : public CTemplateSectionElement {
public:
    void OnClosingBracket() override;
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

private:
    Attribute value;
};
