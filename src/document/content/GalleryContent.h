#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include <QString>

#include "common/Variant.h"
#include "common/XmlRest.h"
#include "document/content/GalleryLayout.h"
#include "document/files/FileTrace.h"
#include "document/pictures/PictureInfo.h"
#include "document/pictures/PictureList.h"
#include "effects/StampParams.h"

// The values that a gallery keeps for the markup of its layout. A plain record.
struct GalleryTexts {
    // Base name of a layout page, number of the output page.
    using PageKey = std::pair<QString, int32_t>;
    using Pages = std::map<PageKey, CVariableMap>;
    // By page file name, then by name of the slot.
    using Advertisements = std::map<QString, std::map<QString, QString>>;

    // By name without regard to case; null if the page has no such slot.
    const QString* FindAdvertisement(const QString& page, const QString& name) const;

    CVariableMap own; // of the object "gallery"
    Pages pages;
    Advertisements advertisements;

    bool operator==(const GalleryTexts&) const = default;
};

// What a project's file says of a gallery beyond what this version knows, by the elements that it stands in.
// A plain record.
struct GalleryRests {
    CXmlRest gallery;
    CXmlRest style;
    CXmlRest pictureList;
    std::map<GalleryTexts::PageKey, CXmlRest> pages;
    std::map<QString, CXmlRest> visibility; // by page file name
    std::array<CXmlRest, 3> imageStamps;
    std::array<CXmlRest, 3> textStamps;
    // By path; of other watermarks than are in use as well.
    std::map<QString, FileTrace> watermarkTraces;

    bool operator==(const GalleryRests&) const = default;
};

// Which elements of a gallery's pages are shown. Elements are entered when a page first asks about them.
class CPageVisibility {
public:
    using Elements = std::map<QString, bool>;

    // Enters an element that is not known on that page as visible. Notes its state as seen and returns it.
    bool Note(const QString& page, const QString& element);
    // Sets the elements of the map on that page and leaves its other elements as they are.
    void SetElements(const QString& page, const Elements& elements);
    void SetElement(const QString& page, const QString& element, bool visible);

    // Every element noted in the current render, with its state.
    const Elements& GetSeenElements() const { return seenElements; }
    void ClearSeenElements() { seenElements.clear(); }

    // By page file name.
    const std::map<QString, Elements>& GetPages() const { return pages; }
    void SetPages(const std::map<QString, Elements>& newPages) { pages = newPages; }

private:
    std::map<QString, Elements> pages;
    Elements seenElements;
};

// What a gallery holds: its pictures and child galleries in one order, its layout and style, texts,
// visibility and stamps. Knows no tree: a child gallery is an entry with an index here. The catalogue is
// borrowed. One thread at a time.
class CGalleryContent {
public:
    // One set of stamps for each class of picture size: small, middle, large.
    static constexpr size_t StampCount = 3;
    using ImageStamps = std::array<CImageStampParams, StampCount>;
    using TextStamps = std::array<CTextStampParams, StampCount>;

    CGalleryContent(const CGalleryCatalogue& catalogue, int32_t index) : index(index), layout(catalogue) {}
    CGalleryContent(const CGalleryContent&) = delete;
    CGalleryContent& operator=(const CGalleryContent&) = delete;

    // The gallery's own in its project.
    int32_t GetIndex() const { return index; }

    // --- Pictures.

    const CPictureList& GetPictures() const { return pictures; }
    CPictureList& GetPictures() { return pictures; }
    // The indexes of the child galleries among the pictures.
    std::set<int32_t> GetChildren() const;
    bool HasChildren() const { return !childPictures.empty(); }
    // Null for a gallery that is not listed here.
    const CGalleryPictureInfo* FindChildPicture(int32_t childIndex) const;
    CGalleryPictureInfo* FindChildPicture(int32_t childIndex);

    // --- Layout, style and pages.

    const CGalleryLayout& GetLayout() const { return layout; }
    CGalleryLayout& GetLayout() { return layout; }
    void SetStyle(const QString& path) { layout.SetStyle(path); }
    // False if it is the page already. Throws CTemplateParsingException for a name without ".".
    bool SetTemplatePage(const QString& name) { return layout.SetTemplatePage(name); }
    // The text from "?" on in the link that was followed last.
    const QString& GetQueryString() const { return queryString; }
    void SetQueryString(const QString& text) { queryString = text; }

    // --- Texts.

    const GalleryTexts& GetTexts() const { return texts; }
    GalleryTexts& GetTexts() { return texts; }
    // Objects "gallery" and "content"; any other is ignored.
    void SetObjectVariable(const QString& object, const QString& name, const CVariant& value);
    void SetPageVariable(const QString& pageName, int32_t pageNumber, const QString& name,
                         const CVariant& value);
    // The variable display_name, else the variable name.
    std::optional<QString> FindOwnName() const;

    // --- Visibility, of elements of the current page.

    const CPageVisibility& GetVisibility() const { return visibility; }
    CPageVisibility& GetVisibility() { return visibility; }
    const CPageVisibility::Elements& GetVisibilityMap() const { return visibility.GetSeenElements(); }
    void SetVisibilityMap(const CPageVisibility::Elements& map);
    // Asks as a page does: the element is noted.
    bool IsElementVisible(const QString& page, const QString& name) { return visibility.Note(page, name); }

    // --- Stamps.

    const ImageStamps& GetImageStamps() const { return imageStamps; }
    ImageStamps& GetImageStamps() { return imageStamps; }
    const TextStamps& GetTextStamps() const { return textStamps; }
    TextStamps& GetTextStamps() { return textStamps; }
    // The paths of the watermarks in use, whether they are there or not, each once.
    std::set<QString> GetWatermarks() const;
    // As read from the project's file; empty for a path that it has no trace of.
    FileTrace GetWatermarkTrace(const QString& path) const;
    void SetWatermarkTrace(const QString& path, const FileTrace& trace)
    {
        rests.watermarkTraces[path] = trace;
    }
    // False if no stamp has the old path.
    bool RelocateWatermark(const QString& oldPath, const QString& newPath);

    // --- What is only kept.

    const GalleryRests& GetRests() const { return rests; }
    GalleryRests& GetRests() { return rests; }

protected:
    // Lists a child gallery where the current page adds what is new. It must not be listed yet.
    CGalleryPictureInfo* ListChild(std::unique_ptr<CGalleryPictureInfo> entry);
    // Returns where it stood.
    int32_t UnlistChild(const CGalleryPictureInfo& entry);
    // Puts other entries into the place of all that are listed.
    void ListAnew(std::vector<std::unique_ptr<CPictureInfo>> entries);

private:
    const int32_t index;
    CPictureList pictures;
    std::map<int32_t, CGalleryPictureInfo*> childPictures; // by index; each is an entry of pictures
    CGalleryLayout layout;
    QString queryString;
    GalleryTexts texts;
    CPageVisibility visibility;
    ImageStamps imageStamps;
    TextStamps textStamps;
    GalleryRests rests;
};
