#include "editing/TextActs.h"

#include "document/project/GalleryProject.h"
#include "editing/ActNames.h"

namespace {

void Change(CGallery& gallery, const TextChange& change)
{
    const TextPlace& place = change.place;
    switch (place.owner) {
    case TextPlace::Owner::Gallery:
        return gallery.SetObjectVariable(QStringLiteral("gallery"), place.name, change.text);
    case TextPlace::Owner::PictureList:
        return gallery.SetObjectVariable(QStringLiteral("content"), place.name, change.text);
    case TextPlace::Owner::Page:
        return gallery.SetPageVariable(place.page, place.pageNumber, place.name, change.text);
    case TextPlace::Owner::Picture:
        if (CPictureInfo* const picture = gallery.GetPictures().GetAt(place.position)) {
            picture->SetVariable(place.name, change.text);
        }
    }
}

// The texts of a child's entry are the child's own.
std::set<int32_t> GalleriesOf(const CGalleryProject& project, int32_t index,
                              const std::vector<TextChange>& changes)
{
    std::set<int32_t> galleries = {index};
    const CGallery* const gallery = project.FindGallery(index);
    for (const TextChange& change : changes) {
        if (gallery && change.place.owner == TextPlace::Owner::Picture) {
            const auto* const child =
                dynamic_cast<const CGalleryPictureInfo*>(gallery->GetPictures().GetAt(change.place.position));
            if (child) {
                galleries.insert(child->GetGalleryIndex());
            }
        }
    }
    return galleries;
}

Act EditTexts(const QString& name, const CGalleryProject& project, int32_t index,
              const std::vector<TextChange>& changes)
{
    return {.name = name,
            .galleries = GalleriesOf(project, index, changes),
            .apply = [index, changes](CGalleryProject& edited) {
                if (CGallery* const gallery = edited.FindGallery(index)) {
                    for (const TextChange& change : changes) {
                        Change(*gallery, change);
                    }
                }
            }};
}

} // namespace

Act EditText(const CGalleryProject& project, int32_t gallery, const TextChange& change)
{
    return EditTexts(Text(StringId::ActEditText), project, gallery, {change});
}

Act EditLink(const CGalleryProject& project, int32_t gallery, const std::vector<TextChange>& changes)
{
    return EditTexts(Text(StringId::ActEditLink), project, gallery, changes);
}

Act EditPictureTexts(const CGalleryProject& project, int32_t gallery, const std::vector<TextChange>& changes)
{
    return EditTexts(Text(StringId::ActEditPictureTexts), project, gallery, changes);
}
