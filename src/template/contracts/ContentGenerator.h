#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include <QString>

#include "common/Variant.h"

class CImageIterator;

// The attributes of an element as its sections evaluated them: narrow text, sizes included; whoever needs a
// number of a size converts it with ParseInteger.
struct TextSpanAttributes {
    std::string name;     // label for an editor of the text
    std::string property; // "object.variable"
    std::string defaultText;
    int32_t maxChars = 0; // 0: no limit
    bool multiline = false;
};

struct PictureAttributes {
    std::string id;
    std::string href;
    std::string height;
    std::string width;
    bool hasImageReference = false;
    std::optional<std::string> alt = std::nullopt; // nothing if the element has no such attribute
};

struct NavigationTableAttributes {
    int32_t maxPagesCount = 0;
    std::string previousImage;
    std::string nextImage;
    std::string pageImage;
    std::string pageImageSelected;
    std::string firstImage;
    std::string lastImage;
    std::string previousPageAlt;
    std::string nextPageAlt;
    std::string pageAlt;
    std::string firstPageAlt;
    std::string lastPageAlt;
};

struct ImageReferenceAttributes {
    std::string id;
    std::string name;
    std::string src;
    std::string hrefProperty; // "object.variable"
    std::string defaultHref;
    std::string altProperty; // "object.variable"
    std::string defaultAlt;
};

struct TextReferenceAttributes {
    std::string id;
    std::string name;
    std::string hrefProperty; // "object.variable"
    std::string defaultHref;
    std::string text; // "object.variable"
    std::string defaultText;
};

// The operations by which sections emit output: the whole contract between the template engine and everything
// that makes pages. A generator serves one generation at a time, on one thread.
class CContentGenerator {
public:
    virtual ~CContentGenerator() = default;

    // What the page's head needs from the system: scripts and meta tags.
    virtual void GeneratePageHeader(CImageIterator& iterator, std::ostream& out) = 0;
    virtual void GenerateTextSpan(CImageIterator& iterator, const TextSpanAttributes& span,
                                  std::ostream& out) = 0;
    // The picture under the iterator's cursor, fitted to the box and linked.
    virtual void GeneratePicture(CImageIterator& iterator, const PictureAttributes& picture,
                                 std::ostream& out) = 0;
    virtual void GenerateNavigationTable(CImageIterator& iterator, const NavigationTableAttributes& table,
                                         std::ostream& out) = 0;
    // The text of a value for people: short date of the user's locale, plain decimal numbers.
    // Throws CExceptionBase if the value has no text.
    virtual QString VariantToString(const CVariant& value) const = 0;
    virtual void GenerateImageReference(CImageIterator& iterator, const ImageReferenceAttributes& reference,
                                        std::ostream& out) = 0;
    virtual void GenerateTextReference(CImageIterator& iterator, const TextReferenceAttributes& reference,
                                       std::ostream& out) = 0;
    virtual void GenerateBanner(const std::string& width, const std::string& height, std::ostream& out) = 0;
    virtual void GenerateAdvertisement(CImageIterator& iterator, const std::string& name,
                                       std::ostream& out) = 0;
};
