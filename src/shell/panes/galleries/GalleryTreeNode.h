#pragma once

#include <cstdint>
#include <deque>

#include <QString>

class CGallery;
class CGalleryProject;

// What people call the gallery: its title, or else the name by which the project knows it.
QString GetGalleryTitle(const CGallery& gallery);

// One gallery in the tree of all galleries of a project. Owned by its CGalleryTree, which holds the nodes
// that this one points at.
class CGalleryTreeNode {
public:
    QString name;
    const CGalleryTreeNode* previous = nullptr;
    const CGalleryTreeNode* next = nullptr;
    const CGalleryTreeNode* parent = nullptr;
    const CGalleryTreeNode* firstChild = nullptr;
    int32_t galleryId = 0;
};

// The tree as it is at the moment: built afresh for every drawing, no link to the document stays.
// Siblings stand in the order in which their parent lists them. A gallery that several others list stands
// under the one nearest to the root.
class CGalleryTree {
public:
    explicit CGalleryTree(const CGalleryProject& project);
    CGalleryTree(const CGalleryTree&) = delete;
    CGalleryTree& operator=(const CGalleryTree&) = delete;

    // Null for a project without galleries.
    const CGalleryTreeNode* GetRoot() const { return nodes.empty() ? nullptr : &nodes.front(); }
    // Null for a gallery that can't be reached from the root.
    const CGalleryTreeNode* Find(int32_t galleryId) const;

private:
    // A list, not an owning chain: a hand-made project may be a line of thousands of galleries. Nodes stay
    // where they are.
    std::deque<CGalleryTreeNode> nodes;
};
