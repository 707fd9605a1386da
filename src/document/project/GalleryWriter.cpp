#include <map>
#include <set>

#include "document/content/GalleryContent.h"
#include "document/project/GalleryElement.h"

namespace {

void WriteStyle(const CGalleryContent& gallery, CXmlElement& element)
{
    const CGalleryLayout& layout = gallery.GetLayout();
    CXmlElement style = element.AppendChild("style");
    style.SetAttribute("template", layout.GetWrittenTemplateKey());
    style.SetAttribute("template_page", layout.GetTemplatePage());
    // The key of a style definition; no style sheet, for all its name.
    style.SetAttribute("css", layout.GetWrittenStyleKey());
    gallery.GetRests().style.WriteTo(style);
}

// An absent file's trace stays as it was read for as long as the project's file stays in its folder; after
// that it leads to where the file would have been.
QString RelativePathFor(const QString& path, const FileTrace& trace, const QString& folder)
{
    const QString traced = trace.GetPath();
    if (traced.isEmpty()) {
        return RelativePathOf(folder, path);
    }
    return trace.folder == folder ? trace.relative : RelativePathOf(folder, traced);
}

struct FileToWrite {
    QString path;
    bool isThere;
    FileTrace trace; // with the present size of a file that is there
};

void WriteTrace(CXmlElement& element, const FileToWrite& file, const QString& folder)
{
    const QString relative =
        file.isThere ? RelativePathOf(folder, file.path) : RelativePathFor(file.path, file.trace, folder);
    if (!relative.isEmpty()) {
        element.SetAttribute("relative", relative);
    }
    if (file.trace.size >= 0) {
        element.SetAttribute("size", QString::number(file.trace.size));
    }
}

void WritePicture(const CPictureInfo& record, CXmlElement& list, const QString& folder)
{
    CXmlElement picture = list.AppendChild("picture");
    if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(&record)) {
        picture.SetAttribute("index", child->GetGalleryIndex());
    } else if (const auto* file = dynamic_cast<const CFilePictureInfo*>(&record)) {
        picture.SetAttribute("path", file->GetPath());
        picture.SetAttribute("angle", file->GetAngle());
        WriteTrace(picture, {file->GetPath(), file->IsThere(), file->GetTrace()}, folder);
    }
    if (!record.GetNameSuffix().isEmpty()) {
        picture.SetAttribute("name_suffix", record.GetNameSuffix());
    }
    WriteVariables(picture, "picture_variable", record.GetVariables());
    record.GetRest().WriteTo(picture);
}

void WritePictures(const CGalleryContent& gallery, CXmlElement& element, const QString& folder)
{
    const CPictureList& pictures = gallery.GetPictures();
    CXmlElement list = element.AppendChild("picture_list");
    for (int32_t position = 0; position < pictures.GetCount(); ++position) {
        WritePicture(*pictures.GetAt(position), list, folder);
    }
    WriteVariables(list, "picture_list_variable", pictures.GetVariables());
    gallery.GetRests().pictureList.WriteTo(list);
}

// A loop of a layout leaves empty variables on every page that it was rendered for. They are not written, as
// they would not be read, so that looking at a page doesn't change the project's file.
CVariableMap WithoutEmpty(const CVariableMap& variables)
{
    CVariableMap result;
    for (const auto& [name, value] : variables.GetEntries()) {
        if (!value.IsEmpty()) {
            result.Set(name, value);
        }
    }
    return result;
}

// What a map has under a key; empty if it hasn't.
template <class Key, class Value>
Value ValueOf(const std::map<Key, Value>& map, const Key& key)
{
    const auto found = map.find(key);
    return found != map.end() ? found->second : Value();
}

// The keys of two maps, each once, in their order.
template <class Key, class A, class B>
std::set<Key> KeysOf(const std::map<Key, A>& a, const std::map<Key, B>& b)
{
    std::set<Key> keys;
    for (const auto& [key, unused] : a) {
        keys.insert(key);
    }
    for (const auto& [key, unused] : b) {
        keys.insert(key);
    }
    return keys;
}

void WritePages(const CGalleryContent& gallery, CXmlElement& element)
{
    const GalleryTexts::Pages& pages = gallery.GetTexts().pages;
    const auto& rests = gallery.GetRests().pages;
    for (const GalleryTexts::PageKey& key : KeysOf(pages, rests)) {
        const CVariableMap variables = WithoutEmpty(ValueOf(pages, key));
        const CXmlRest rest = ValueOf(rests, key);
        if (variables.GetEntries().empty() && rest.IsEmpty()) {
            continue;
        }
        CXmlElement page = element.AppendChild("page");
        page.SetAttribute("name", key.first);
        page.SetAttribute("index", key.second);
        WriteVariables(page, "page_variable", variables);
        rest.WriteTo(page);
    }
}

void WriteVisibility(const CGalleryContent& gallery, CXmlElement& element)
{
    const auto& pages = gallery.GetVisibility().GetPages();
    const auto& rests = gallery.GetRests().visibility;
    for (const QString& name : KeysOf(pages, rests)) {
        CXmlElement page = element.AppendChild("page_visibility");
        page.SetAttribute("name", name);
        for (const auto& [elementName, visible] : ValueOf(pages, name)) {
            CXmlElement state = page.AppendChild("visible_element");
            state.SetAttribute("name", elementName);
            state.SetAttribute("visible", visible ? 1 : 0);
        }
        ValueOf(rests, name).WriteTo(page);
    }
}

void WritePageStyles(const CGalleryLayout& layout, CXmlElement& element)
{
    for (const auto& [name, style] : layout.GetPageStyles()) {
        CXmlElement page = element.AppendChild("page_style");
        page.SetAttribute("name", name);
        page.SetAttribute("style", style);
    }
}

CXmlElement WriteStamp(CXmlElement& element, const char* tag, size_t slot, const CStampParams& params)
{
    CXmlElement stamp = element.AppendChild(tag);
    stamp.SetAttribute("index", static_cast<int32_t>(slot));
    stamp.SetAttribute("position", params.position);
    stamp.SetAttribute("margin", params.margin);
    return stamp;
}

void WriteWatermark(const CGalleryContent& gallery, const QString& path, CXmlElement& stamp,
                    const QString& folder)
{
    const FileState state = LookAtFile(path);
    FileTrace trace = gallery.GetWatermarkTrace(path);
    trace.size = state.isThere ? state.size : trace.size;
    WriteTrace(stamp, {path, state.isThere, trace}, folder);
}

// All slots, used or not.
void WriteStamps(const CGalleryContent& gallery, CXmlElement& element, const QString& folder)
{
    for (size_t slot = 0; slot < CGalleryContent::StampCount; ++slot) {
        const CImageStampParams& params = gallery.GetImageStamps()[slot];
        CXmlElement stamp = WriteStamp(element, "image_stamp", slot, params);
        stamp.SetAttribute("file", params.file);
        stamp.SetAttribute("transparency", params.transparency);
        if (!params.file.isEmpty()) {
            WriteWatermark(gallery, params.file, stamp, folder);
        }
        gallery.GetRests().imageStamps[slot].WriteTo(stamp);
    }
    for (size_t slot = 0; slot < CGalleryContent::StampCount; ++slot) {
        const CTextStampParams& params = gallery.GetTextStamps()[slot];
        CXmlElement stamp = WriteStamp(element, "text_stamp", slot, params);
        stamp.SetAttribute("font", params.font);
        stamp.SetAttribute("text", params.text);
        stamp.SetAttribute("font_size", params.font_size);
        stamp.SetAttribute("font_style", params.font_style);
        stamp.SetAttribute("color", QString::number(params.color));
        gallery.GetRests().textStamps[slot].WriteTo(stamp);
    }
}

void WriteAdvertisements(const GalleryTexts::Advertisements& advertisements, CXmlElement& element)
{
    for (const auto& [page, texts] : advertisements) {
        for (const auto& [name, value] : texts) {
            CXmlElement advertisement = element.AppendChild("advertisement");
            advertisement.SetAttribute("name", name);
            advertisement.SetAttribute("value", value);
            advertisement.SetAttribute("page", page);
        }
    }
}

} // namespace

void WriteGallery(const CGalleryContent& gallery, CXmlElement& project, const QString& folder)
{
    CXmlElement element = project.AppendChild("gallery");
    element.SetAttribute("index", gallery.GetIndex());
    WriteStyle(gallery, element);
    WritePictures(gallery, element, folder);
    WritePages(gallery, element);
    WriteVariables(element, "project_variable", gallery.GetTexts().own);
    WriteVisibility(gallery, element);
    WritePageStyles(gallery.GetLayout(), element);
    WriteStamps(gallery, element, folder);
    WriteAdvertisements(gallery.GetTexts().advertisements, element);
    gallery.GetRests().gallery.WriteTo(element);
}
