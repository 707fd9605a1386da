#include "shell/panes/galleries/GalleriesPage.h"

#include <algorithm>
#include <sstream>

#include "common/Text.h"
#include "content/PictureMenu.h"
#include "resources/Resources.h"
#include "shell/panes/galleries/GalleryTreeNode.h"

namespace {

// With these a cell's narrowest part and its picture are one pixel wide, or high.
constexpr QSize leastCell(37, 23);

std::string Resource(const char* name, const char* type)
{
    return FindResource(QString::fromLatin1(name), QString::fromLatin1(type)).toStdString();
}

int FlagsOf(const CGalleryTreeNode& node)
{
    int flags = node.firstChild ? GalleryCell::HasChildren : 0;
    if (node.previous) {
        flags |= GalleryCell::HasPrevious;
    } else if (node.parent) {
        flags |= GalleryCell::BeginsRow;
    }
    if (node.next) {
        flags |= GalleryCell::HasNext;
    } else if (node.parent) {
        flags |= GalleryCell::EndsRow;
    }
    return flags;
}

std::optional<GalleryCell> CellOf(const CGalleryTreeNode* node, const CGalleryTreeNode& root)
{
    if (!node) {
        return std::nullopt;
    }
    const bool hasOneChild = node->firstChild && !node->firstChild->next;
    return GalleryCell{.galleryId = node->galleryId,
                       .name = node->name,
                       .flags = FlagsOf(*node),
                       .menu = node == &root && !hasOneChild ? 1 : 0,
                       .picture = std::string()};
}

void WriteRow(std::ostream& out, const std::array<std::optional<GalleryCell>, 3>& row,
              const CGalleryCellWriter& writer)
{
    for (const std::optional<GalleryCell>& cell : row) {
        writer.Write(out, cell ? &*cell : nullptr);
    }
}

} // namespace

QSize GetGalleryCellSize(QSize client, int scrollBarExtent)
{
    const QSize size((client.width() - 20 - scrollBarExtent) / 3,
                     (client.height() - scrollBarExtent - 40) / 3);
    return size.expandedTo(leastCell);
}

QSize GetCoverBox(QSize cellSize)
{
    return cellSize - QSize(22, 22);
}

std::string GetCoverStandIn(QSize box)
{
    const QSize size = QSize(4, 3).scaled(box, Qt::KeepAspectRatio);
    return Narrow(QStringLiteral("data:image/svg+xml,<svg xmlns='http://www.w3.org/2000/svg' width='%1' "
                                 "height='%2'><rect width='100%25' height='100%25' fill='white' "
                                 "fill-opacity='.35'/></svg>")
                      .arg(size.width())
                      .arg(size.height()));
}

GalleriesPage ArrangeGalleries(const CGalleryTree& tree, int32_t currentGallery, int galleryCount)
{
    GalleriesPage page;
    page.galleryCount = galleryCount;
    const CGalleryTreeNode* const root = tree.GetRoot();
    const CGalleryTreeNode* const found = tree.Find(currentGallery);
    const CGalleryTreeNode* const current = found ? found : root;
    if (!current) {
        return page;
    }
    const auto cell = [root](const CGalleryTreeNode* node) {
        return CellOf(node, *root);
    };
    page.rows[0] = {std::nullopt, cell(current->parent), std::nullopt};
    page.rows[1] = {cell(current->previous), cell(current), cell(current->next)};
    page.rows[1][1]->isSelected = true;
    const CGalleryTreeNode* const child = current->firstChild;
    if (!child || !child->next) {
        page.rows[2] = {std::nullopt, cell(child), std::nullopt};
    } else {
        page.rows[2] = {cell(child), cell(child->next), cell(child->next->next)};
    }
    return page;
}

GalleryMenus MakeGalleryMenus(const QString& temporaryFolder)
{
    const CPictureMenu::Row addParent{299, 297, StringId::InsertContentSection};
    // Of this button alone the lit bitmap has the higher number.
    const CPictureMenu::Row addChild{298, 300, StringId::InsertChildSection};
    const CPictureMenu::Row remove{280, 287, StringId::Delete};
    return {CPictureMenu(temporaryFolder, {addParent, addChild, remove}),
            CPictureMenu(temporaryFolder, {addParent, addChild})};
}

std::string WriteGalleriesPage(const GalleriesPage& page, const GalleryMenus& menus)
{
    const int width = page.cellSize.width();
    const int height = page.cellSize.height();
    const CGalleryCellWriter writer(page.cellSize, menus);
    std::ostringstream out;
    out << Resource("226", "html") << "<script type=\"text/javascript\" >" << Resource("preview", "js")
        << "</script>"
        << "</head>\n"
        << "<body>\n"
        << "<table cellpadding=0 cellspacing=0 border=0 width=" << 3 * width << " height=" << 3 * height
        << " bgcolor="
        << "#cbd5e4"
        << ">\n"
        << "<tr><th colspan=3 align=left>" << Narrow(Text(StringId::GalleryTree)) << " ( "
        << page.galleryCount << ' '
        << Narrow(Text(page.galleryCount == 1 ? StringId::Section : StringId::Sections)) << " )</th></tr>\n";
    out << "\n<tr height=" << height << '>';
    WriteRow(out, page.rows[0], writer);
    out << "</tr>\n<tr height=" << height << '>';
    WriteRow(out, page.rows[1], writer);
    out << "</tr>\n<tr height=" << height << '>';
    WriteRow(out, page.rows[2], writer);
    out << "</tr>"
        << "</table></body></html>\n";
    return out.str();
}
