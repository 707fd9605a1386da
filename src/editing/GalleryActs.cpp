#include "editing/GalleryActs.h"

#include "document/project/GalleryProject.h"
#include "editing/ActNames.h"

namespace {

const QString TitleVariable = QStringLiteral("title");

// Those that list the gallery.
std::set<int32_t> ParentsOf(const CGalleryProject& project, int32_t index)
{
    const CGallery* const gallery = project.FindGallery(index);
    return gallery ? gallery->GetParentIndexes() : std::set<int32_t>();
}

std::set<int32_t> With(std::set<int32_t> galleries, std::initializer_list<int32_t> others)
{
    galleries.insert(others);
    return galleries;
}

// The project lists it where the parent's current page adds what is new.
void InsertAbove(CGalleryProject& project, int32_t gallery)
{
    const CGallery* const parent = project.GetParentGallery(gallery);
    const int32_t place = parent ? parent->FindChildPlace(gallery)->position : 0;
    const int32_t inserted = project.AddParentGallery(gallery);
    if (parent && inserted != -1) {
        // Counted with the new entry itself, which may stand in front of the place.
        const bool isBefore = parent->FindChildPlace(inserted)->position < place;
        project.MoveGallery(inserted, parent->GetIndex(), isBefore ? place + 1 : place);
    }
}

QString NoticeOfRemoving(size_t pictures, size_t children)
{
    const QString gone =
        pictures == 0 ? Text(StringId::GalleryDeleted)
                      : NameFor(StringId::GalleryDeletedWithPicture, StringId::GalleryDeletedWithPictures,
                                static_cast<qsizetype>(pictures));
    return children == 0 ? gone
                         : gone + QLatin1Char(' ') +
                               NameFor(StringId::ChildMovedUp, StringId::ChildrenMovedUp,
                                       static_cast<qsizetype>(children));
}

} // namespace

std::set<int32_t> GalleriesAround(const CGalleryProject& project, int32_t index)
{
    std::set<int32_t> galleries = With(ParentsOf(project, index), {index});
    if (const CGallery* const gallery = project.FindGallery(index)) {
        galleries.merge(gallery->GetChildren());
    }
    return galleries;
}

Act AddGalleryBelow(int32_t parent)
{
    return {.name = Text(StringId::ActAddGallery),
            .galleries = {parent},
            .apply = [parent](CGalleryProject& project) {
                project.AddChildGallery(parent);
            }};
}

Act InsertGalleryAbove(const CGalleryProject& project, int32_t gallery)
{
    return {.name = Text(StringId::ActInsertGallery),
            .galleries = With(ParentsOf(project, gallery), {gallery}),
            .apply = [gallery](CGalleryProject& changed) {
                InsertAbove(changed, gallery);
            }};
}

Act RemoveGalleryAct(const CGalleryProject& project, int32_t gallery)
{
    const CGallery* const removed = project.FindGallery(gallery);
    const size_t entries = removed ? static_cast<size_t>(removed->GetPictures().GetCount()) : 0;
    const size_t children = removed ? removed->GetChildren().size() : 0;
    return {.name = Text(StringId::ActDeleteGallery),
            .galleries = GalleriesAround(project, gallery),
            .apply = [gallery](CGalleryProject& changed) { changed.RemoveGallery(gallery); },
            .notice = NoticeOfRemoving(entries - children, children)};
}

Act MoveGalleryTo(const CGalleryProject& project, int32_t gallery, int32_t parent, int32_t position)
{
    return {.name = Text(StringId::ActMoveGallery),
            .galleries = With(ParentsOf(project, gallery), {gallery, parent}),
            .apply = [gallery, parent, position](CGalleryProject& changed) {
                changed.MoveGallery(gallery, parent, position);
            }};
}

Act RenameGallery(int32_t gallery, const QString& title)
{
    return {.name = Text(StringId::ActRenameGallery),
            .galleries = {gallery},
            .apply = [gallery, title](CGalleryProject& project) {
                if (CGallery* const renamed = project.FindGallery(gallery)) {
                    renamed->SetObjectVariable(QStringLiteral("gallery"), TitleVariable,
                                               title.isEmpty() ? CVariant() : CVariant(title));
                }
            }};
}

Act DuplicateGalleryAct(const CGalleryProject& project, int32_t gallery)
{
    return {.name = Text(StringId::ActDuplicateGallery),
            .galleries = With(ParentsOf(project, gallery), {gallery}),
            .apply = [gallery](CGalleryProject& changed) {
                changed.DuplicateGallery(gallery);
            }};
}
