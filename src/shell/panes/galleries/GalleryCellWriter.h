#pragma once

#include <ostream>
#include <string>

#include "shell/panes/galleries/GalleriesPage.h"

// Writes the cells of the galleries' table: a cover in a frame whose bars and small bitmaps join those of its
// neighbours, so that the cells read as a tree. The markup with its doubled and surplus tags is settled, and
// stays as it is: a browser repairs it. Lives on the stack of one page.
class CGalleryCellWriter {
public:
    // menus: borrowed.
    CGalleryCellWriter(QSize cellSize, const GalleryMenus& menus) : size(cellSize), menus(menus) {}

    // Null for an empty cell.
    void Write(std::ostream& out, const GalleryCell* cell) const;

private:
    struct Frame {
        int flags = 0;
        std::string colour;   // as an attribute
        int bitmapOffset = 0; // of the bitmaps in that colour

        bool Has(int flag) const { return (flags & flag) != 0; }
        std::string ColourIf(int flag) const { return Has(flag) ? colour : std::string(); }
        std::string Bitmap(int id) const;
    };

    void WriteTop(std::ostream& out, const Frame& frame) const;
    void WriteCover(std::ostream& out, const GalleryCell& cell) const;
    void WriteTail(std::ostream& out, const Frame& frame) const;

    const QSize size;
    const GalleryMenus& menus;
};
