#include "editing/LookActs.h"

#include "document/project/GalleryProject.h"
#include "editing/ActNames.h"

namespace {

Act OnGallery(StringId name, int32_t index, const std::function<void(CGallery& gallery)>& change)
{
    return {.name = Text(name), .galleries = {index}, .apply = [index, change](CGalleryProject& project) {
                if (CGallery* const gallery = project.FindGallery(index)) {
                    change(*gallery);
                }
            }};
}

} // namespace

Act ChooseLayout(int32_t gallery, const QString& key)
{
    return OnGallery(StringId::ActChooseLayout, gallery, [key](CGallery& of) { of.SetTemplate(key); });
}

Act ChooseStyle(int32_t gallery, const QString& key)
{
    return OnGallery(StringId::ActChooseStyle, gallery, [key](CGallery& of) { of.SetStyle(key); });
}

Act ShowElements(int32_t gallery, const CPageVisibility::Elements& elements)
{
    return OnGallery(StringId::ActShowElements, gallery,
                     [elements](CGallery& of) { of.SetVisibilityMap(elements); });
}

Act ChangeWatermarks(int32_t gallery, const CGalleryContent::ImageStamps& stamps)
{
    return OnGallery(StringId::ActChangeWatermark, gallery,
                     [stamps](CGallery& of) { of.GetImageStamps() = stamps; });
}

Act ChangeSignatures(int32_t gallery, const CGalleryContent::TextStamps& stamps)
{
    return OnGallery(StringId::ActChangeSignature, gallery,
                     [stamps](CGallery& of) { of.GetTextStamps() = stamps; });
}

Act ChangeAdvertisements(int32_t gallery, const QString& page, const std::map<QString, QString>& texts)
{
    return OnGallery(StringId::ActChangeAds, gallery,
                     [page, texts](CGallery& of) { of.GetTexts().advertisements[page] = texts; });
}
