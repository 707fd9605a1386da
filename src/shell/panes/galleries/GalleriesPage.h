#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include <QSize>
#include <QString>

class CGalleryTree;
class CPictureMenu;

// The page of the galleries view: the three-by-three neighbourhood of the current gallery, its parent above,
// its siblings beside it, its children below. Values only; the screen's thread.

// A gallery's cell. The flags say what its frame is joined to.
struct GalleryCell {
    static constexpr int HasPrevious = 8;
    static constexpr int HasNext = 4;
    static constexpr int BeginsRow = 2; // below a parent, and the first there
    static constexpr int EndsRow = 1;   // below a parent, and the last there
    static constexpr int HasChildren = 16;

    int32_t galleryId = 0;
    QString name;
    int flags = 0;
    bool isSelected = false;
    int menu = 0;        // see MakeGalleryMenus
    std::string picture; // address of the cover in its box

    // "gl_5": of the link and of the picture.
    std::string GetUrlId() const { return "gl_" + std::to_string(galleryId); }
};

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

// The page without pictures. A current gallery that the tree doesn't hold is no reason for an empty page: the
// root stands in its place.
GalleriesPage ArrangeGalleries(const CGalleryTree& tree, int32_t currentGallery, int galleryCount);

// Menu 0 has all buttons; menu 1, without the one that deletes, is for a root whose place no child could
// take.
using GalleryMenus = std::array<CPictureMenu, 2>;
// temporaryFolder: where the strips are kept, with a trailing separator.
GalleryMenus MakeGalleryMenus(const QString& temporaryFolder);

std::string WriteGalleriesPage(const GalleriesPage& page, const GalleryMenus& menus);
