#pragma once

#include <cstdint>

#include <QString>

#include "editing/Act.h"

// Changes of the tree of galleries. Galleries go by their indexes; an act on one that isn't there changes
// nothing.

// A new gallery below the parent.
Act AddGalleryBelow(int32_t parent);
// A new gallery between the gallery and its parent, in the place that the gallery had there. It becomes the
// current one. Throws what CGalleryProject::AddParentGallery throws.
Act InsertGalleryAbove(const CGalleryProject& project, int32_t gallery);
// Its pictures leave with it; the galleries below it go up to its parent. The root goes if exactly one
// gallery below can take its place.
Act RemoveGalleryAct(const CGalleryProject& project, int32_t gallery);
// With all that lies below it, to another parent or another place: in front of the entry of that position, or
// to the end.
Act MoveGalleryTo(const CGalleryProject& project, int32_t gallery, int32_t parent, int32_t position);
// By its title. An empty one: the layout's own takes its place again.
Act RenameGallery(int32_t gallery, const QString& title);
// A second one beside it, with all that lies below it.
Act DuplicateGalleryAct(const CGalleryProject& project, int32_t gallery);
