#pragma once

#include "template/sections/TemplateSectionElement.h"

// <%isvisible layout="..."%>: writes "1" unless the user has hidden the page element of that name. Asking
// makes the name known to the user's list of elements. Owned by its parent; used by one thread.
class CTemplateSectionIsVisible final : public CTemplateSectionElement {
public:
    void OnClosingBracket() override;
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

private:
    Attribute layout;
};
