#pragma once

#include "template/parser/TemplateSectionElement.h"

// The sections that show images. Each is owned by its parent and used by one thread.

// <%picture%>: a picture of the page, or with image_reference a picture at a distance from the page. Bind
// registers it with the iterator, Generate consumes one registration.
class CTemplateSectionPicture final : public CTemplateSectionElement {
public:
    CTemplateSectionPicture();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
    void Bind(CImageIterator& iterator, CContentGenerator& generator) override;
};

// <%imgref%>: a linked image whose target and alternative text the user can edit.
class CTemplateSectionImageReference final : public CTemplateSectionElement {
public:
    CTemplateSectionImageReference();
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
};
