#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include <QSize>
#include <QString>

#include "shell/panes/galleries/GalleryCellWriter.h"

class CGalleryTree;

// The page of the galleries view: the three-by-three neighbourhood of the current gallery, its parent above,
// its siblings beside it, its children below. Values only; the screen's thread.

struct GalleriesPage {
    QSize cellSize;
    int galleryCount = 0;
    std::array<std::array<std::optional<GalleryCell>, 3>, 3> rows;
};

// The size of a cell, the same for all nine. client: of the view. In a view that is too small for nine frames
// the cells keep the least size that can be drawn, and the page is scrolled.
QSize GetGalleryCellSize(QSize client, int scrollBarExtent);
// What a cover is scaled into.
QSize GetCoverBox(QSize cellSize);
// The address of a light card of a cover's proportions, for a cover that is still in the making.
std::string GetCoverStandIn(QSize box);

// The page without pictures. A current gallery that the tree doesn't hold is no reason for an empty page: the
// root stands in its place.
GalleriesPage ArrangeGalleries(const CGalleryTree& tree, int32_t currentGallery, int galleryCount);

// temporaryFolder: where the strips are kept, with a trailing separator.
GalleryMenus MakeGalleryMenus(const QString& temporaryFolder);

std::string WriteGalleriesPage(const GalleriesPage& page, const GalleryMenus& menus);
