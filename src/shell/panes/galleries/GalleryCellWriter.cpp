#include "shell/panes/galleries/GalleryCellWriter.h"

#include "content/PictureMenu.h"
#include "content/PictureMenuCommandGenerator.h"

// The address of the program's own bitmap; 2 is the type of bitmaps among its resources.
std::string CGalleryCellWriter::Frame::Bitmap(int id) const
{
    return "res://vistorama/#2/#" + std::to_string(id + bitmapOffset);
}

void CGalleryCellWriter::Write(std::ostream& out, const GalleryCell* cell) const
{
    const bool isSelected = cell && cell->isSelected;
    const Frame frame{.flags = cell ? cell->flags : 0,
                      .colour = isSelected ? "bgcolor=#005afa" : "bgcolor=#9ab2d2",
                      .bitmapOffset = isSelected ? 34 : 0};
    const int innerWidth = size.width() - 18;
    const int innerHeight = size.height() - 18;
    WriteTop(out, frame);
    out << "\n<tr height=" << innerHeight << "><td></td><td></td><td colspan=3"
        << (cell ? ' ' + frame.colour : std::string()) << '>';
    out << "<div align=\"center\" valign=\"middle\" width=\"" << innerWidth << "\" height=\"" << innerHeight
        << "\">";
    if (cell) {
        WriteCover(out, *cell);
    }
    out << "</div>"
        << "</td><td></td><td></td></tr>\n"
        << "<tr height=9><td></td><td></td><td colspan=3>";
    if (frame.Has(GalleryCell::HasChildren)) {
        WriteTail(out, frame);
    }
    // The cell over three columns is left open.
    out << "<td></td><td></td></tr></table>"
        << "</td>";
}

// The bar that leads to the neighbours, or the rounded corners where there are none, and the fillets below
// the bar.
void CGalleryCellWriter::WriteTop(std::ostream& out, const Frame& frame) const
{
    constexpr int anyFlag =
        GalleryCell::HasPrevious | GalleryCell::HasNext | GalleryCell::BeginsRow | GalleryCell::EndsRow;
    const std::string previous = frame.ColourIf(GalleryCell::HasPrevious);
    const std::string next = frame.ColourIf(GalleryCell::HasNext);
    const auto corner = [&frame](const std::string& bar, int flag, int bitmap) {
        return bar.empty() && frame.Has(flag) ? " ><img width=9 src=\"" + frame.Bitmap(bitmap) + '"' : bar;
    };
    out << "<td width=" << size.width() << " bgcolor=#cbd5e4>";
    out << "<table cellpadding=0 cellspacing=0 border=0><tr height=4><td width=4 ";
    out << previous << "></td><td width=5 " << previous << "></td><td width=9 rowspan=2 ";
    out << corner(previous, GalleryCell::BeginsRow, 271);
    out << " ></td><td rowspan=2 width=" << size.width() - 36;
    out << (frame.Has(anyFlag) ? ' ' + frame.colour : std::string());
    out << " ></td><td rowspan=2 width=9 " << corner(next, GalleryCell::EndsRow, 272);
    out << " ></td><td width=5 " << next << "></td><td width=4 " << next << "></td></tr>\n";
    out << "<tr height=5><td></td><td>";
    if (frame.Has(GalleryCell::HasPrevious)) {
        out << "<img src=\"" << frame.Bitmap(275) << "\">";
    }
    out << "</td><td>";
    if (frame.Has(GalleryCell::HasNext)) {
        out << "<img src=\"" << frame.Bitmap(270) << "\">";
    }
    out << "</td><td></td></tr>";
}

void CGalleryCellWriter::WriteCover(std::ostream& out, const GalleryCell& cell) const
{
    const std::string id = cell.GetUrlId();
    const CPictureMenu& menu = menus.at(static_cast<size_t>(cell.menu));
    menu.WriteMenuImages(out, id, CGalleriesPictureMenuCommandGenerator(cell.galleryId));
    out << "<a href=\"" << id << "\">"
        << "<img id=\"" << id << "\" src=\"" << cell.picture << "\" ";
    CPictureMenu::WriteMenuAttributes(out, id);
    out << "/></a>";
}

void CGalleryCellWriter::WriteTail(std::ostream& out, const Frame& frame) const
{
    const int width = size.width() - 18;
    // As wide as leaves an even rest, so that both sides are equal.
    const int bar = width % 2 == 0 ? 8 : 9;
    const int edge = (width - bar - 10) / 2;
    out << "<table cellpadding=0 cellspacing=0 border=0 ><tr height=4><td width=" << edge
        << "></td><td width=5></td><td width=" << bar << ' ' << frame.colour
        << "></td><td width=5></td></td><td width=" << edge << "></td></tr>\n"
        << "<tr height=5><td></td><td><img src=\"" << frame.Bitmap(273) << "\"></td>"
        << "<td width=" << bar << ' ' << frame.colour << "></td><td><img src=\"" << frame.Bitmap(274)
        << "\"></td><td></td></tr></table>\n";
}
