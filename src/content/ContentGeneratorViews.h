#pragma once

#include "content/ContentGeneratorBase.h"

// The base of the generators that write pages for the screen: their elements carry strips of buttons that
// appear under the mouse and call the program. Lives for one pass over one page; screen's thread.
class CContentGeneratorViews : public CContentGeneratorBase {
public:
    void GeneratePageHeader(CImageIterator& iterator, std::ostream& out) override;
    void GenerateBanner(const std::string& width, const std::string& height, std::ostream& out) override;

protected:
    void WriteAdvertisementBody(const QString& text, std::ostream& out) override;
    void WriteCurrentUrl(CImageIterator& iterator, std::ostream& out) override;
    // The path as an address, see AddressOfFile.
    QString GetImageUrl(const QString& filePath) override;
    void BeforePicture(std::ostream& out, const std::string& id) override;
    void WritePictureAttributes(std::ostream& out, const std::string& id) override;
    // A picture that can't be read is missing from the page, which is shown for it to be taken out.
    void ProduceImage(const ImageRequest& request) override;

    virtual void WritePictureMenu(std::ostream& out, const std::string& id) = 0;
};
