#pragma once

#include <array>
#include <cstdint>
#include <ostream>
#include <string>

#include <QSize>
#include <QString>

class CPictureMenu;

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

// Menu 0 has all buttons; menu 1, without the one that deletes, is for a root whose place no
// child could take.
using GalleryMenus = std::array<CPictureMenu, 2>;

// Writes the cells of the galleries' table: a cover in a frame whose bars and small bitmaps join those of its
// neighbours, so that the cells read as a tree. The script of the view and its tests find their way by this
// markup, doubled and surplus tags included; a browser repairs it. Lives on the stack of one page.
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
