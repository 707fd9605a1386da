#pragma once

#include "template/contracts/ContentGenerator.h"

// A generator that writes nothing and only converts values to text: the base of those that write, and by
// itself the generator of a bind pass that only counts pictures. Stateless.
class CContentGeneratorStringConverter : public CContentGenerator {
public:
    void GeneratePageHeader(CImageIterator&, std::ostream&) override {}
    void GenerateTextSpan(CImageIterator&, const TextSpanAttributes&, std::ostream&) override {}
    void GeneratePicture(CImageIterator&, const PictureAttributes&, std::ostream&) override {}
    void GenerateNavigationTable(CImageIterator&, const NavigationTableAttributes&, std::ostream&) override {}
    QString VariantToString(const CVariant& value) const override;
    void GenerateImageReference(CImageIterator&, const ImageReferenceAttributes&, std::ostream&) override {}
    void GenerateTextReference(CImageIterator&, const TextReferenceAttributes&, std::ostream&) override {}
    void GenerateBanner(const std::string&, const std::string&, std::ostream&) override {}
    void GenerateAdvertisement(CImageIterator&, const std::string&, std::ostream&) override {}
};
