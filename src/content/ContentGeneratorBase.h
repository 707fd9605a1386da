#pragma once

#include <QSize>

#include "content/ImageRequest.h"
#include "template/contracts/ContentGeneratorStringConverter.h"

class CPictureInfo;

// The HTML that all settings share. What depends on the setting is left to virtual operations: where image
// files go, how pages address them, and hooks around each kind of element. A "Before" hook writes in front of
// an element, a "Write...Attributes" hook inside its opening tag. Stateless; single-threaded.
class CContentGeneratorBase : public CContentGeneratorStringConverter {
public:
    void GeneratePageHeader(CImageIterator& iterator, std::ostream& out) override;
    void GenerateTextSpan(CImageIterator& iterator, const TextSpanAttributes& span,
                          std::ostream& out) override;
    void GeneratePicture(CImageIterator& iterator, const PictureAttributes& picture,
                         std::ostream& out) override;
    void GenerateNavigationTable(CImageIterator& iterator, const NavigationTableAttributes& table,
                                 std::ostream& out) override;
    void GenerateImageReference(CImageIterator& iterator, const ImageReferenceAttributes& reference,
                                std::ostream& out) override;
    void GenerateTextReference(CImageIterator& iterator, const TextReferenceAttributes& reference,
                               std::ostream& out) override;
    void GenerateAdvertisement(CImageIterator& iterator, const std::string& name, std::ostream& out) override;

    // Names the file that a chain of effects makes of a picture and has it made if it is missing or if the
    // setting forces it. Returns what a page writes in "src". picture: the entry of the gallery that the
    // image shows; null for none. Throws CExceptionBase if the image work fails.
    QString GetImageName(const QString& sourcePath, std::shared_ptr<const CImageEffect> effect,
                         CPictureInfo* picture = nullptr);

    // Stores width and height in pixels of the picture under the cursor in the variables source_width and
    // source_height of the object id, and returns them.
    QSize StoreSourceSize(CImageIterator& iterator, const QString& id);

protected:
    virtual void WriteAdvertisementBody(const QString& text, std::ostream& out) = 0;
    // Writes a script expression for the address of the page.
    virtual void WriteCurrentUrl(CImageIterator& iterator, std::ostream& out) = 0;
    virtual bool IsImageOverwriteForced() const;
    struct WantedImage {
        const QString& sourcePath;
        const CImageEffect& effect;
        CPictureInfo* picture; // may be null
    };
    // The file for an image. Here: one of the views' cache.
    virtual QString GetImagePath(const WantedImage& image);
    // What a page writes for a file. Here: the path itself.
    virtual QString GetImageUrl(const QString& filePath) const;
    virtual void BeforePicture(std::ostream& out, const std::string& id);
    virtual void WritePictureAttributes(std::ostream& out, const std::string& id);
    // spanId: object and variable of the span's property, joined by "_".
    virtual void BeforeTextSpan(std::ostream& out, const std::string& spanId, const TextSpanAttributes& span);
    virtual void WriteTextSpanAttributes(std::ostream& out, const std::string& spanId);
    virtual void BeforeImageReference(std::ostream& out, const ImageReferenceAttributes& reference);
    virtual void WriteImageReferenceAttributes(std::ostream& out, const std::string& id);
    virtual void BeforeTextReference(std::ostream& out, const TextReferenceAttributes& reference);
    virtual void WriteTextReferenceAttributes(std::ostream& out, const std::string& id);
    // Has the file made. Here: at once, on the calling thread, for the views' cache.
    virtual void ProduceImage(const ImageRequest& request);

    // A script element with the named script of the program; empty if there is no such script.
    void WriteResourceScript(const QString& resourceName, std::ostream& out);
    // The text of a property, or the default if the object is unknown or the variable has no value. An empty
    // string is a value and wins over the default; in a text span it does not.
    std::string GetPropertyOrDefault(CImageIterator& iterator, const std::string& property,
                                     const std::string& defaultValue);

private:
    struct NavigationCell {
        const std::string& image;
        const std::string& alt;
        uint32_t page;
        bool enabled;
    };
    void WriteNavigationCell(CImageIterator& iterator, const NavigationCell& cell, std::ostream& out);
    std::string NavigationAlt(CImageIterator& iterator, const NavigationCell& cell);
    std::string TextSpanText(const TextSpanAttributes& span, const CVariant& value);
};
