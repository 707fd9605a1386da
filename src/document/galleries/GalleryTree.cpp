#include "document/galleries/GalleryTree.h"

#include <algorithm>

#include "document/galleries/Gallery.h"

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

std::vector<CGallery*> ChildrenBeforeParents(const std::map<int32_t, std::unique_ptr<CGallery>>& galleries)
{
    std::vector<CGallery*> ordered;
    for (const auto& [index, gallery] : galleries) {
        if (gallery && gallery->GetParentIndexes().empty()) {
            ordered.push_back(gallery.get());
        }
    }
    for (size_t i = 0; i < ordered.size(); ++i) {
        for (const int32_t child : ordered[i]->GetChildren()) {
            ordered.push_back(ordered[i]->GetManager().FindGallery(child));
        }
    }
    std::reverse(ordered.begin(), ordered.end());
    return ordered;
}
