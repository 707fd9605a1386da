#include "document/content/GalleryContent.h"
#include "document/project/GalleryElement.h"

namespace {

void WriteStyle(const CGalleryLayout& layout, CXmlElement& element)
{
    CXmlElement style = element.AppendChild("style");
    style.SetAttribute("template", layout.GetTemplateKey());
    style.SetAttribute("template_page", layout.GetTemplatePage());
    // The key of a style definition; no style sheet, for all its name.
    style.SetAttribute("css", layout.GetStyleKey());
}

void WritePictures(const CPictureList& pictures, CXmlElement& element)
{
    CXmlElement list = element.AppendChild("picture_list");
    for (int32_t position = 0; position < pictures.GetCount(); ++position) {
        const CPictureInfo* const record = pictures.GetAt(position);
        CXmlElement picture = list.AppendChild("picture");
        if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(record)) {
            picture.SetAttribute("index", child->GetGalleryIndex());
        } else {
            picture.SetAttribute("path", record->GetPath());
            picture.SetAttribute("angle", record->GetAngle());
        }
        if (!record->GetNameSuffix().isEmpty()) {
            picture.SetAttribute("name_suffix", record->GetNameSuffix());
        }
        WriteVariables(picture, "picture_variable", record->GetVariables());
    }
    WriteVariables(list, "picture_list_variable", pictures.GetVariables());
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

void WritePages(const GalleryTexts::Pages& pages, CXmlElement& element)
{
    for (const auto& [key, allVariables] : pages) {
        const CVariableMap variables = WithoutEmpty(allVariables);
        if (variables.GetEntries().empty()) {
            continue;
        }
        CXmlElement page = element.AppendChild("page");
        page.SetAttribute("name", key.first);
        page.SetAttribute("index", key.second);
        WriteVariables(page, "page_variable", variables);
    }
}

void WriteVisibility(const CPageVisibility& visibility, CXmlElement& element)
{
    for (const auto& [name, elements] : visibility.GetPages()) {
        CXmlElement page = element.AppendChild("page_visibility");
        page.SetAttribute("name", name);
        for (const auto& [elementName, visible] : elements) {
            CXmlElement state = page.AppendChild("visible_element");
            state.SetAttribute("name", elementName);
            state.SetAttribute("visible", visible ? 1 : 0);
        }
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

// All slots, used or not.
void WriteStamps(const CGalleryContent& gallery, CXmlElement& element)
{
    for (size_t slot = 0; slot < CGalleryContent::StampCount; ++slot) {
        const CImageStampParams& params = gallery.GetImageStamps()[slot];
        CXmlElement stamp = WriteStamp(element, "image_stamp", slot, params);
        stamp.SetAttribute("file", params.file);
        stamp.SetAttribute("transparency", params.transparency);
    }
    for (size_t slot = 0; slot < CGalleryContent::StampCount; ++slot) {
        const CTextStampParams& params = gallery.GetTextStamps()[slot];
        CXmlElement stamp = WriteStamp(element, "text_stamp", slot, params);
        stamp.SetAttribute("font", params.font);
        stamp.SetAttribute("text", params.text);
        stamp.SetAttribute("font_size", params.font_size);
        stamp.SetAttribute("font_style", params.font_style);
        stamp.SetAttribute("color", QString::number(params.color));
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

void WriteGallery(const CGalleryContent& gallery, CXmlElement& project)
{
    CXmlElement element = project.AppendChild("gallery");
    element.SetAttribute("index", gallery.GetIndex());
    WriteStyle(gallery.GetLayout(), element);
    WritePictures(gallery.GetPictures(), element);
    WritePages(gallery.GetTexts().pages, element);
    WriteVariables(element, "project_variable", gallery.GetTexts().own);
    WriteVisibility(gallery.GetVisibility(), element);
    WritePageStyles(gallery.GetLayout(), element);
    WriteStamps(gallery, element);
    WriteAdvertisements(gallery.GetTexts().advertisements, element);
}
