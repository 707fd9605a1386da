#pragma once

#include "content/ContentGeneratorBase.h"
#include "content/PictureMenu.h"

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
    QString GetImageUrl(const QString& filePath) const override;
    void BeforePicture(std::ostream& out, const std::string& id) override;
    void WritePictureAttributes(std::ostream& out, const std::string& id) override;
    // A picture that can't be read is missing from the page, which is shown for it to be taken out.
    void ProduceImage(const ImageRequest& request) override;

    virtual void WritePictureMenu(std::ostream& out, const std::string& id) = 0;
};

// Writes a page of a gallery as it will be deployed, with the buttons that edit it. Lives for one pass over
// one page; screen's thread.
class CContentGeneratorPreview final : public CContentGeneratorViews {
public:
    // temporaryFolder: where the strips are kept, with a trailing separator.
    explicit CContentGeneratorPreview(const QString& temporaryFolder);

    // A picture whose file is not there is a card with its name, with the attribute "data-absent".
    void GeneratePicture(CImageIterator& iterator, const PictureAttributes& picture,
                         std::ostream& out) override;

protected:
    void WritePictureMenu(std::ostream& out, const std::string& id) override;
    void BeforeTextSpan(std::ostream& out, const std::string& spanId,
                        const TextSpanAttributes& span) override;
    void WriteTextSpanAttributes(std::ostream& out, const std::string& spanId) override;
    void BeforeImageReference(std::ostream& out, const ImageReferenceAttributes& reference) override;
    void WriteImageReferenceAttributes(std::ostream& out, const std::string& id) override;
    void BeforeTextReference(std::ostream& out, const TextReferenceAttributes& reference) override;
    void WriteTextReferenceAttributes(std::ostream& out, const std::string& id) override;

private:
    const CPictureMenu pictureMenu;
    const CPictureMenu absentPictureMenu;
    const CPictureMenu imageReferenceMenu;
    const CPictureMenu textSpanMenu;
    const CPictureMenu textReferenceMenu;
};

// Writes the rows of the folder view: a thumbnail each, with its buttons. Lives for one pass over one page;
// screen's thread.
class CContentGeneratorFolderView final : public CContentGeneratorViews {
public:
    // temporaryFolder: where the strips are kept, with a trailing separator.
    explicit CContentGeneratorFolderView(const QString& temporaryFolder);

    // One row of a table. A row with an empty href is not linked. Width and height are not used: the file
    // under the cursor has the size of the card already.
    void GeneratePicture(CImageIterator& iterator, const PictureAttributes& picture,
                         std::ostream& out) override;

protected:
    void WritePictureMenu(std::ostream& out, const std::string& id) override;

private:
    const CPictureMenu pictureMenu;
};
