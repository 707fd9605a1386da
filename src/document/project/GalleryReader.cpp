#include "document/galleries/Gallery.h"
#include "document/pictures/PictureFiles.h"
#include "document/project/GalleryElement.h"

namespace {

QString TextOf(const CXmlElement& element, const char* name)
{
    return GetAttributeText(element, name).GetString();
}

bool HasAttribute(const CXmlElement& element, const char* name)
{
    return !GetAttributeText(element, name).IsEmpty();
}

// 0 to 3, whatever a file says: the rest of the program relies on it.
int32_t QuarterTurns(int32_t angle)
{
    constexpr int32_t fullTurn = 4;
    return (angle % fullTurn + fullTurn) % fullTurn;
}

void ReadStyle(CGallery& gallery, const CXmlElement& element)
{
    const CXmlElement style = element.FindChild("style");
    if (!style) {
        return;
    }
    gallery.SetTemplate(TextOf(style, "template"));
    // A gallery that has never had a page is written with an empty one.
    const QString page = TextOf(style, "template_page");
    if (page.contains(QLatin1Char('.'))) {
        gallery.SetTemplatePage(page);
    }
    gallery.SetStyle(TextOf(style, "css"));
}

void ReadNameSuffix(const CXmlElement& element, CPictureInfo& record)
{
    const QString suffix = TextOf(element, "name_suffix");
    if (IsNameSuffix(suffix)) {
        record.SetNameSuffix(suffix);
    }
}

// A tree has one road to each gallery: the first listing of a gallery counts, and the root has none.
void ReadChild(CGallery& gallery, const CXmlElement& element)
{
    const int32_t childIndex = GetAttributeLong(element, "index");
    CGalleryManager& manager = gallery.GetManager();
    const CGallery* const child = manager.FindGallery(childIndex);
    if (child && child->GetParentIndexes().empty() && childIndex != manager.GetRootGalleryIndex()) {
        if (CPictureInfo* const entry = gallery.AddChild(childIndex)) {
            ReadNameSuffix(element, *entry);
        }
    }
}

void ReadPicture(CGallery& gallery, const CXmlElement& element, CPictureFinder& finder)
{
    if (HasAttribute(element, "index")) {
        ReadChild(gallery, element);
        return;
    }
    if (!HasAttribute(element, "path")) {
        return;
    }
    const QString path = finder.Find(TextOf(element, "path"));
    if (path.isNull()) {
        return;
    }
    CPictureInfo* const record =
        gallery.AppendPicture(path, QuarterTurns(GetAttributeLong(element, "angle")));
    if (record) {
        ReadNameSuffix(element, *record);
        ReadVariables(element, "picture_variable", record->GetVariables());
    }
}

void ReadPictures(CGallery& gallery, const CXmlElement& element, CPictureFinder& finder)
{
    const CXmlElement list = element.FindChild("picture_list");
    for (const CXmlElement& picture : list.GetChildren("picture")) {
        ReadPicture(gallery, picture, finder);
    }
    ReadVariables(list, "picture_list_variable", gallery.GetPictures().GetVariables());
}

void ReadPages(const CXmlElement& element, GalleryTexts& texts)
{
    for (const CXmlElement& page : element.GetChildren("page")) {
        const GalleryTexts::PageKey key(TextOf(page, "name"), GetAttributeLong(page, "index"));
        ReadVariables(page, "page_variable", texts.pages[key]);
    }
}

void ReadVisibility(CGalleryContent& gallery, const CXmlElement& element)
{
    for (const CXmlElement& page : element.GetChildren("page_visibility")) {
        for (const CXmlElement& state : page.GetChildren("visible_element")) {
            gallery.GetVisibility().SetElement(TextOf(page, "name"), TextOf(state, "name"),
                                               GetAttributeLong(state, "visible") != 0);
        }
    }
}

void ReadPageStyles(CGalleryContent& gallery, const CXmlElement& element)
{
    for (const CXmlElement& page : element.GetChildren("page_style")) {
        if (HasAttribute(page, "name") && HasAttribute(page, "style")) {
            gallery.GetLayout().SetPageStyle(TextOf(page, "name"), TextOf(page, "style"));
        }
    }
}

// The slot's common fields; null for an index that names no slot.
template <class Params>
Params* ReadStampSlot(const CXmlElement& stamp, std::array<Params, CGalleryContent::StampCount>& stamps)
{
    const int32_t slot = GetAttributeLong(stamp, "index");
    if (slot < 0 || static_cast<size_t>(slot) >= stamps.size()) {
        return nullptr;
    }
    Params& params = stamps[static_cast<size_t>(slot)];
    params.position = GetAttributeLong(stamp, "position");
    params.margin = GetAttributeLong(stamp, "margin");
    return &params;
}

void ReadTextIfThere(const CXmlElement& element, const char* name, QString& field)
{
    if (HasAttribute(element, name)) {
        field = TextOf(element, name);
    }
}

void ReadImageStamps(CGalleryContent& gallery, const CXmlElement& element)
{
    for (const CXmlElement& stamp : element.GetChildren("image_stamp")) {
        if (CImageStampParams* params = ReadStampSlot(stamp, gallery.GetImageStamps())) {
            ReadTextIfThere(stamp, "file", params->file);
            params->transparency = GetAttributeLong(stamp, "transparency");
        }
    }
}

void ReadTextStamps(CGalleryContent& gallery, const CXmlElement& element)
{
    for (const CXmlElement& stamp : element.GetChildren("text_stamp")) {
        if (CTextStampParams* params = ReadStampSlot(stamp, gallery.GetTextStamps())) {
            ReadTextIfThere(stamp, "font", params->font);
            ReadTextIfThere(stamp, "text", params->text);
            params->font_size = GetAttributeLong(stamp, "font_size");
            params->font_style = GetAttributeLong(stamp, "font_style");
            params->color = static_cast<uint32_t>(GetAttributeLong(stamp, "color"));
        }
    }
}

void ReadAdvertisements(CGalleryContent& gallery, const CXmlElement& element)
{
    auto& advertisements = gallery.GetTexts().advertisements;
    for (const CXmlElement& advertisement : element.GetChildren("advertisement")) {
        const QString name = TextOf(advertisement, "name");
        const QString value = TextOf(advertisement, "value");
        if (HasAttribute(advertisement, "page")) {
            advertisements[TextOf(advertisement, "page")][name] = value;
        } else if (const CGalleryTemplate* layout = gallery.GetLayout().GetTemplate()) {
            for (const CGalleryTemplatePage& page : layout->GetPages()) {
                advertisements[page.file][name] = value;
            }
        }
    }
}

} // namespace

void ReadGallery(CGallery& gallery, const CXmlElement& element, CPictureFinder& finder)
{
    // The layout comes first: it says where children land and which pages advertisements belong to.
    ReadStyle(gallery, element);
    ReadPictures(gallery, element, finder);
    ReadPages(element, gallery.GetTexts());
    ReadVariables(element, "project_variable", gallery.GetTexts().own);
    ReadVisibility(gallery, element);
    ReadPageStyles(gallery, element);
    ReadImageStamps(gallery, element);
    ReadTextStamps(gallery, element);
    ReadAdvertisements(gallery, element);
    gallery.UpdateCover(0);
}
