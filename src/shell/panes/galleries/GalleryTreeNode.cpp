#include "shell/panes/galleries/GalleryTreeNode.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "document/project/GalleryProject.h"

namespace {

// As the list of pictures names them: that is the order in which a person moves them.
std::vector<int32_t> ChildrenInOrder(const CGallery& gallery)
{
    std::vector<int32_t> children;
    const CPictureList& entries = gallery.GetPictures();
    for (int32_t position = 0; gallery.HasChildren() && position < entries.GetCount(); ++position) {
        if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(entries.GetAt(position))) {
            children.push_back(child->GetGalleryIndex());
        }
    }
    return children;
}

} // namespace

QString GetGalleryTitle(const CGallery& gallery)
{
    const std::optional<CVariant> title = gallery.GetTexts().own.Find(QStringLiteral("title"));
    const bool isText =
        title && title->GetType() == CVariant::Type::String && !title->GetString().trimmed().isEmpty();
    return isText ? title->GetString() : gallery.GetDisplayName();
}

CGalleryTree::CGalleryTree(const CGalleryProject& project)
{
    const CGallery* const root = project.GetRootGallery();
    if (!root) {
        return;
    }
    std::unordered_set<int32_t> seen = {root->GetIndex()};
    nodes.push_back({.name = GetGalleryTitle(*root), .galleryId = root->GetIndex()});
    for (size_t i = 0; i < nodes.size(); ++i) {
        CGalleryTreeNode& parent = nodes[i];
        CGalleryTreeNode* last = nullptr;
        for (const int32_t index : ChildrenInOrder(*project.FindGallery(parent.galleryId))) {
            const CGallery* const child = project.FindGallery(index);
            if (!child || !seen.insert(index).second) {
                continue;
            }
            nodes.push_back(
                {.name = GetGalleryTitle(*child), .previous = last, .parent = &parent, .galleryId = index});
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
