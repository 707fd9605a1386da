#include "shell/panes/galleries/GalleryTreeNode.h"

#include <algorithm>
#include <unordered_set>

#include "document/project/GalleryProject.h"

CGalleryTree::CGalleryTree(const CGalleryProject& project)
{
    const CGallery* const root = project.GetRootGallery();
    if (!root) {
        return;
    }
    std::unordered_set<int32_t> seen = {root->GetIndex()};
    nodes.push_back({.name = root->GetDisplayName(), .galleryId = root->GetIndex()});
    for (size_t i = 0; i < nodes.size(); ++i) {
        CGalleryTreeNode& parent = nodes[i];
        CGalleryTreeNode* last = nullptr;
        for (const int32_t index : project.FindGallery(parent.galleryId)->GetChildren()) {
            const CGallery* const child = project.FindGallery(index);
            if (!child || !seen.insert(index).second) {
                continue;
            }
            nodes.push_back(
                {.name = child->GetDisplayName(), .previous = last, .parent = &parent, .galleryId = index});
            (last ? last->next : parent.firstChild) = &nodes.back();
            last = &nodes.back();
        }
    }
}

const CGalleryTreeNode* CGalleryTree::Find(int32_t galleryId) const
{
    const auto found = std::find_if(nodes.begin(), nodes.end(), [galleryId](const CGalleryTreeNode& node) {
        return node.galleryId == galleryId;
    });
    return found != nodes.end() ? &*found : nullptr;
}
