#include "document/GalleryTree.h"

#include "document/Gallery.h"

bool IsAtOrAbove(const CGallery& candidate, const CGallery& gallery)
{
    if (!candidate.HasChildren()) {
        return &candidate == &gallery;
    }
    std::set<const CGallery*> seen;
    std::vector<const CGallery*> open = {&gallery};
    while (!open.empty()) {
        const CGallery* const next = open.back();
        open.pop_back();
        if (next == &candidate) {
            return true;
        }
        for (const int32_t parentIndex : next->GetParentIndexes()) {
            const CGallery* const parent = next->GetManager().FindGallery(parentIndex);
            if (parent && seen.insert(parent).second) {
                open.push_back(parent);
            }
        }
    }
    return false;
}
