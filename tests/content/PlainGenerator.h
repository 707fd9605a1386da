#pragma once

#include <vector>

#include "common/FileSystem.h"
#include "content/ContentGeneratorBase.h"
#include "effects/ImageEffect.h"

// The base generator with its pure operations filled in, its hooks made visible, and its images noted instead
// of made where the test asks for that.
class CPlainGenerator : public CContentGeneratorBase {
public:
    QString imageFolder; // empty: the views' cache
    bool makesImages = false;
    bool showsHooks = false;
    std::vector<ImageRequest> requests;

    using CContentGeneratorBase::GetImageUrl;
    using CContentGeneratorBase::WriteResourceScript;
    QString GetImagePath(const WantedImage& image) override
    {
        return imageFolder.isEmpty()
                   ? CContentGeneratorBase::GetImagePath(image)
                   : image.effect.GetResultFileName(imageFolder + ExtractLastName(image.sourcePath));
    }

protected:
    void WriteAdvertisementBody(const QString& text, std::ostream& out) override
    {
        out << "[ad " << text.toStdString() << ']';
    }
    void WriteCurrentUrl(CImageIterator&, std::ostream& out) override { out << "HERE"; }
    void ProduceImage(const ImageRequest& request) override
    {
        requests.push_back(request);
        if (makesImages) {
            CContentGeneratorBase::ProduceImage(request);
        }
    }
    void BeforePicture(std::ostream& out, const std::string& id) override
    {
        Show(out, "{before " + id + "}");
    }
    void WritePictureAttributes(std::ostream& out, const std::string& id) override
    {
        Show(out, "{in " + id + "}");
    }
    void BeforeTextSpan(std::ostream& out, const std::string& spanId, const TextSpanAttributes& span) override
    {
        Show(out, "{before " + spanId + " " + span.name + "}");
    }
    void WriteTextSpanAttributes(std::ostream& out, const std::string& spanId) override
    {
        Show(out, "{in " + spanId + "}");
    }
    void BeforeImageReference(std::ostream& out, const ImageReferenceAttributes& reference) override
    {
        Show(out, "{before " + reference.id + " " + reference.name + "}");
    }
    void WriteImageReferenceAttributes(std::ostream& out, const std::string& id) override
    {
        Show(out, "{in " + id + "}");
    }
    void BeforeTextReference(std::ostream& out, const TextReferenceAttributes& reference) override
    {
        Show(out, "{before " + reference.id + " " + reference.name + "}");
    }
    void WriteTextReferenceAttributes(std::ostream& out, const std::string& id) override
    {
        Show(out, "{in " + id + "}");
    }

private:
    void Show(std::ostream& out, const std::string& text) const
    {
        if (showsHooks) {
            out << text;
        }
    }
};

// References whose properties have no values in a new gallery.
inline ImageReferenceAttributes SampleImageReference()
{
    return {.id = "i",
            .name = "n",
            .src = "s",
            .hrefProperty = "gallery.h",
            .defaultHref = "d",
            .altProperty = "gallery.a",
            .defaultAlt = "e"};
}

inline TextReferenceAttributes SampleTextReference()
{
    return {.id = "i",
            .name = "n",
            .hrefProperty = "gallery.h",
            .defaultHref = "d",
            .text = "gallery.t",
            .defaultText = "e"};
}
