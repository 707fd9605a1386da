#pragma once

#include "template/sections/TemplateSectionElement.h"

// <%advertisement name="top"%>: one of the user's advertisement blocks. Owned by its parent; used by one
// thread.
class CTemplateSectionAdvertisement final : public CTemplateSectionElement {
public:
    void OnClosingBracket() override;
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;

private:
    Attribute name;
};
