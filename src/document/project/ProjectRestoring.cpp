#include "document/project/GalleryProject.h"
#include "document/project/ProjectState.h"

// The part of CGalleryProject that takes moments down and comes back to them.

ProjectState CGalleryProject::GetState(const std::set<int32_t>& indexes, const ProjectState& former) const
{
    const auto formerOf = [&](int32_t index) {
        const auto found = former.galleries.find(index);
        return found != former.galleries.end() ? found->second : GalleryState();
    };
    ProjectState state{.galleries = {},
                       .rootGallery = rootGalleryIndex,
                       .currentGallery = currentGalleryIndex,
                       .currentLayout = nullptr};
    for (const int32_t index : indexes) {
        const CGallery* const gallery = FindGallery(index);
        state.galleries[index] = gallery ? StateOf(*gallery, formerOf(index)) : GalleryState();
    }
    if (const CGallery* const current = GetCurrentGallery()) {
        state.currentLayout = std::make_shared<const CGalleryLayout>(current->GetLayout());
    }
    return state;
}

// Galleries that come back are made first, since lists of others name them; those that go go last, when no
// list names them any more. In between the covers stay what they were.
void CGalleryProject::Restore(const ProjectState& wanted, const ProjectState& present)
{
    std::vector<CGallery*> touched;
    for (const auto& [index, state] : wanted.galleries) {
        if (state.IsThere()) {
            touched.push_back(&CreateGallery(index));
            touched.back()->GetCover().Hold();
        }
    }
    for (CGallery* gallery : touched) {
        const auto now = present.galleries.find(gallery->GetIndex());
        gallery->Restore(wanted.galleries.at(gallery->GetIndex()),
                         now != present.galleries.end() ? now->second : GalleryState());
    }
    for (const auto& [index, state] : wanted.galleries) {
        if (!state.IsThere() && FindGallery(index)) {
            EraseGallery(index);
        }
    }
    rootGalleryIndex = wanted.rootGallery;
    SetCurrentGallery(wanted.currentGallery);
    if (CGallery* const current = GetCurrentGallery(); current && wanted.currentLayout) {
        current->GetLayout() = *wanted.currentLayout;
    }
    // From the bottom up, so that each chooses what it shows once.
    for (CGallery* gallery : ChildrenBeforeParents()) {
        if (wanted.galleries.count(gallery->GetIndex()) != 0) {
            gallery->GetCover().Release();
        }
    }
}
