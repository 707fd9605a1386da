#pragma once

#include "template/sections/TemplateSectionElement.h"

// A picture of the page, or with image_reference a picture at a distance from the page. Bind registers it
// with the iterator, Generate consumes one registration. Owned by its parent; used by one thread.
class CTemplateSectionPicture final : public CTemplateSectionElement {
public:
    void OnClosingBracket() override;
    void Clear() override;
    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override;
    void Bind(CImageIterator& iterator, CContentGenerator& generator) override;

private:
    Attribute height;
    Attribute width;
    Attribute href;
    Attribute id;
    Attribute imageReference;     // optional
    Attribute alt;                // optional
    Attribute referenceBlockSize; // optional
};
