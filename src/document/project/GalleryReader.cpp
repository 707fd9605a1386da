#include "document/galleries/Gallery.h"
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

int32_t NumberOf(const CXmlElement& element, const char* name)
{
    return FindAttributeLong(element, name).value_or(0);
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
    CGalleryLayout& layout = gallery.GetLayout();
    gallery.SetTemplate(TextOf(style, "template"));
    layout.KeepTemplateKey(TextOf(style, "template"));
    // A gallery that has never had a page is written with an empty one.
    const QString page = TextOf(style, "template_page");
    if (page.contains(QLatin1Char('.'))) {
        gallery.SetTemplatePage(page);
    }
    gallery.SetStyle(TextOf(style, "css"));
    layout.KeepStyleKey(TextOf(style, "css"));
    gallery.GetRests().style = CXmlRest(style, {{"template", "template_page", "css"}, {}});
}

void ReadNameSuffix(const CXmlElement& element, CPictureList& pictures, CPictureInfo& record)
{
    const QString suffix = TextOf(element, "name_suffix");
    if (IsNameSuffix(suffix)) {
        pictures.SetNameSuffix(record, suffix);
    }
}

// A tree has one road to each gallery: the first listing of a gallery counts, and the root has none.
void ReadChild(CGallery& gallery, const CXmlElement& element)
{
    const int32_t childIndex = NumberOf(element, "index");
    CGalleryManager& manager = gallery.GetManager();
    const CGallery* const child = manager.FindGallery(childIndex);
    if (!child || !child->GetParentIndexes().empty() || childIndex == manager.GetRootGalleryIndex()) {
        return;
    }
    if (CPictureInfo* const entry = gallery.AddChild(childIndex)) {
        ReadNameSuffix(element, gallery.GetPictures(), *entry);
        entry->SetRest(CXmlRest(element, {{"index", "name_suffix"}, {}}));
    }
}

FileTrace TraceOf(const CXmlElement& element, const QString& folder)
{
    bool isNumber = false;
    const qint64 size = TextOf(element, "size").toLongLong(&isNumber);
    return {
        .relative = TextOf(element, "relative"), .folder = folder, .size = isNumber && size >= 0 ? size : -1};
}

void ReadFilePicture(CGallery& gallery, const CXmlElement& element, const QString& folder)
{
    const int32_t angle = QuarterTurns(NumberOf(element, "angle"));
    const AddedPicture added = gallery.AppendPicture(TextOf(element, "path"), angle);
    auto* const record = dynamic_cast<CFilePictureInfo*>(added.record);
    if (!record) {
        return;
    }
    // One that is listed twice has its last angle and the texts of both.
    gallery.GetPictures().SetAngle(*record, angle);
    record->SetTrace(TraceOf(element, folder));
    ReadNameSuffix(element, gallery.GetPictures(), *record);
    CXmlRest rest(element, {{"path", "angle", "relative", "size", "name_suffix"}, {"picture_variable"}});
    ReadVariables(element, "picture_variable", record->GetVariables(), rest);
    record->SetRest(rest);
}

void ReadPictures(CGallery& gallery, const CXmlElement& element, const QString& folder)
{
    const CXmlElement list = element.FindChild("picture_list");
    // "name" stands in files of the first version.
    CXmlRest rest(list, {{"name"}, {"picture", "picture_list_variable"}});
    for (const CXmlElement& picture : list.GetChildren("picture")) {
        if (HasAttribute(picture, "index")) {
            ReadChild(gallery, picture);
        } else if (!TextOf(picture, "path").isEmpty()) {
            ReadFilePicture(gallery, picture, folder);
        } else {
            rest.Keep(picture);
        }
    }
    ReadVariables(list, "picture_list_variable", gallery.GetPictures().GetVariables(), rest);
    gallery.GetRests().pictureList = rest;
}

void ReadPages(const CXmlElement& element, CGallery& gallery)
{
    for (const CXmlElement& page : element.GetChildren("page")) {
        const GalleryTexts::PageKey key(TextOf(page, "name"), NumberOf(page, "index"));
        CXmlRest rest(page, {{"name", "index"}, {"page_variable"}});
        ReadVariables(page, "page_variable", gallery.GetTexts().pages[key], rest);
        if (rest != CXmlRest()) {
            gallery.GetRests().pages[key] = rest;
        }
    }
}

void ReadVisibility(CGallery& gallery, const CXmlElement& element)
{
    for (const CXmlElement& page : element.GetChildren("page_visibility")) {
        const QString name = TextOf(page, "name");
        CXmlRest rest(page, {{"name"}, {"visible_element"}});
        for (const CXmlElement& state : page.GetChildren("visible_element")) {
            gallery.GetVisibility().SetElement(name, TextOf(state, "name"), NumberOf(state, "visible") != 0);
            rest.KeepPart(state, {{"name", "visible"}, {}}, {"name"});
        }
        if (rest != CXmlRest()) {
            gallery.GetRests().visibility[name] = rest;
        }
    }
}

void ReadPageStyles(CGalleryContent& gallery, const CXmlElement& element)
{
    CXmlRest& rest = gallery.GetRests().gallery;
    for (const CXmlElement& page : element.GetChildren("page_style")) {
        if (HasAttribute(page, "name") && HasAttribute(page, "style")) {
            gallery.GetLayout().SetPageStyle(TextOf(page, "name"), TextOf(page, "style"));
            rest.KeepPart(page, {{"name", "style"}, {}}, {"name"});
        } else {
            rest.Keep(page);
        }
    }
}

// Nothing for an index that names no slot or is none: a newer version may have more of them.
std::optional<size_t> StampSlotOf(const CXmlElement& stamp)
{
    const std::optional<int32_t> slot =
        HasAttribute(stamp, "index") ? FindAttributeLong(stamp, "index") : std::optional(0);
    const bool isSlot = slot && *slot >= 0 && static_cast<size_t>(*slot) < CGalleryContent::StampCount;
    return isSlot ? std::optional(static_cast<size_t>(*slot)) : std::nullopt;
}

void ReadStamp(const CXmlElement& stamp, CStampParams& params)
{
    params.position = NumberOf(stamp, "position");
    params.margin = NumberOf(stamp, "margin");
}

void ReadTextIfThere(const CXmlElement& element, const char* name, QString& field)
{
    if (HasAttribute(element, name)) {
        field = TextOf(element, name);
    }
}

void ReadImageStamps(CGallery& gallery, const CXmlElement& element, const QString& folder)
{
    for (const CXmlElement& stamp : element.GetChildren("image_stamp")) {
        const std::optional<size_t> slot = StampSlotOf(stamp);
        if (!slot) {
            gallery.GetRests().gallery.Keep(stamp);
            continue;
        }
        CImageStampParams& params = gallery.GetImageStamps()[*slot];
        ReadStamp(stamp, params);
        ReadTextIfThere(stamp, "file", params.file);
        params.transparency = NumberOf(stamp, "transparency");
        if (!params.file.isEmpty()) {
            gallery.SetWatermarkTrace(params.file, TraceOf(stamp, folder));
        }
        gallery.GetRests().imageStamps[*slot] = CXmlRest(
            stamp, {{"index", "position", "margin", "file", "transparency", "relative", "size"}, {}});
    }
}

void ReadTextStamps(CGallery& gallery, const CXmlElement& element)
{
    for (const CXmlElement& stamp : element.GetChildren("text_stamp")) {
        const std::optional<size_t> slot = StampSlotOf(stamp);
        if (!slot) {
            gallery.GetRests().gallery.Keep(stamp);
            continue;
        }
        CTextStampParams& params = gallery.GetTextStamps()[*slot];
        ReadStamp(stamp, params);
        ReadTextIfThere(stamp, "font", params.font);
        ReadTextIfThere(stamp, "text", params.text);
        params.font_size = NumberOf(stamp, "font_size");
        params.font_style = NumberOf(stamp, "font_style");
        params.color = static_cast<uint32_t>(NumberOf(stamp, "color"));
        gallery.GetRests().textStamps[*slot] = CXmlRest(
            stamp, {{"index", "position", "margin", "font", "text", "font_size", "font_style", "color"}, {}});
    }
}

void ReadAdvertisements(CGalleryContent& gallery, const CXmlElement& element)
{
    auto& advertisements = gallery.GetTexts().advertisements;
    for (const CXmlElement& advertisement : element.GetChildren("advertisement")) {
        const QString name = TextOf(advertisement, "name");
        gallery.GetRests().gallery.KeepPart(advertisement, {{"name", "value", "page"}, {}}, {"name", "page"});
        // A missing value is an empty text: a null one would write no block at all.
        const QString value =
            HasAttribute(advertisement, "value") ? TextOf(advertisement, "value") : QStringLiteral("");
        if (HasAttribute(advertisement, "page")) {
            advertisements[TextOf(advertisement, "page")][name] = value;
        } else if (const CGalleryTemplate* layout = gallery.GetLayout().GetTemplate()) {
            for (const CGalleryTemplatePage& page : layout->GetPages()) {
                advertisements[page.file][name] = value;
            }
        }
    }
}

XmlNames NamesOfGallery(GalleryElementKind kind)
{
    XmlNames names = {{"index"},
                      {"style", "picture_list", "page", "project_variable", "page_visibility", "page_style",
                       "image_stamp", "text_stamp", "advertisement"}};
    if (kind == GalleryElementKind::WholeProject) {
        const XmlNames project = NamesOfProject();
        names.attributes = project.attributes;
        names.elements.insert(names.elements.end(), project.elements.begin(), project.elements.end());
    }
    return names;
}

} // namespace

XmlNames NamesOfProject()
{
    return {{"version", "root_gallery_index", "current_gallery_index", "id"},
            {"project_folders", "folder", "gallery", "deploy_settings"}};
}

void ReadGallery(CGallery& gallery, const CXmlElement& element, const GalleryElementContext& context)
{
    CXmlRest& rest = gallery.GetRests().gallery;
    rest = CXmlRest(element, NamesOfGallery(context.kind));
    // The layout comes first: it says where children land and which pages advertisements belong to.
    ReadStyle(gallery, element);
    ReadPictures(gallery, element, context.folder);
    ReadPages(element, gallery);
    ReadVariables(element, "project_variable", gallery.GetTexts().own, rest);
    ReadVisibility(gallery, element);
    ReadPageStyles(gallery, element);
    ReadImageStamps(gallery, element, context.folder);
    ReadTextStamps(gallery, element);
    ReadAdvertisements(gallery, element);
    gallery.UpdateCover(0);
}
