#pragma once

#include "template/contracts/ContentGeneratorStringConverter.h"

// Writes each call as one readable piece, {operation argument|argument|...}, in the order of the arguments.
class CRecordingGenerator final : public CContentGeneratorStringConverter {
public:
    void GeneratePageHeader(CImageIterator&, std::ostream& out) override;
    void GenerateTextSpan(CImageIterator&, const TextSpanAttributes& span, std::ostream& out) override;
    void GeneratePicture(CImageIterator&, const PictureAttributes& picture, std::ostream& out) override;
    void GenerateNavigationTable(CImageIterator&, const NavigationTableAttributes&, std::ostream&) override;
    void GenerateImageReference(CImageIterator&, const ImageReferenceAttributes&, std::ostream&) override;
    void GenerateTextReference(CImageIterator&, const TextReferenceAttributes&, std::ostream&) override;
    void GenerateBanner(const std::string& width, const std::string& height, std::ostream& out) override;
    void GenerateAdvertisement(CImageIterator&, const std::string& name, std::ostream& out) override;
};
