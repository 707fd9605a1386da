#pragma once

#include "content/ContentGeneratorViews.h"
#include "content/PictureMenu.h"

// Writes a page of a gallery as it will be deployed, with the buttons that edit it. Lives for one pass over
// one page; screen's thread.
class CContentGeneratorPreview final : public CContentGeneratorViews {
public:
    // temporaryFolder: where the strips are kept, with a trailing separator.
    explicit CContentGeneratorPreview(const QString& temporaryFolder);

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
    const CPictureMenu imageReferenceMenu;
    const CPictureMenu textSpanMenu;
    const CPictureMenu textReferenceMenu;
};
