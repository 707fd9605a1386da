#include "shell/panes/galleries/GalleriesPage.h"

#include <sstream>

#include <gtest/gtest.h>

#include "common/Text.h"
#include "content/PictureMenu.h"
#include "resources/Resources.h"
#include "shell/panes/galleries/GalleryCellWriter.h"
#include "shell/panes/galleries/GalleryTreeNode.h"
#include "support/ProjectFixture.h"

namespace {

class GalleriesTable : public testing::Test {
protected:
    GalleriesTable()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "");
        fixture.WriteStyle(QStringLiteral("plain"));
        fixture.NewProject();
    }

    CGalleryProject& Project() { return fixture.GetProject(); }

    // "- 0 -|1 *2 3|- 4 -", the selected one marked.
    std::string Arranged(int32_t current)
    {
        std::string text;
        for (const auto& row : ArrangeGalleries(CGalleryTree(Project()), current, 0).rows) {
            text += text.empty() ? "" : "|";
            for (size_t i = 0; i < row.size(); ++i) {
                text += i == 0 ? "" : " ";
                text += row[i] ? (row[i]->isSelected ? "*" : "") + std::to_string(row[i]->galleryId) : "-";
            }
        }
        return text;
    }

    // The cell of the current gallery.
    GalleryCell CellOf(int32_t gallery)
    {
        return *ArrangeGalleries(CGalleryTree(Project()), gallery, 0).rows[1][1];
    }

    std::string Written(const GalleryCell* cell, QSize size)
    {
        std::ostringstream out;
        CGalleryCellWriter(size, menus).Write(out, cell);
        return out.str();
    }

    // The strips of a cover of gallery 7, at rest and with each button lit.
    std::string Strips(int menu) const
    {
        const std::string folder = Narrow(fixture.scratch.Path()) + "/";
        const auto image = [&](const std::string& name, const std::string& rest) {
            return "<img id=\"gl_7_menu\" src=\"" + folder + "menu" + name +
                   ".bmp\" style=\"position:absolute;display:none\" onmousemove=\"activateMenu(gl_7_menu);\""
                   " onmouseleave=\"hideMenu(gl_7_menu);\"" +
                   rest + ">\n";
        };
        const auto button = [](const std::string& method, const std::string& tip) {
            return " onclick=\"window.external." + method + "(7);\"  alt=\"" + tip + "\" ";
        };
        const std::string end = menu == 0 ? "_280" : "";
        std::string text = image("_299_298" + end, "") +
                           image("_297_298" + end, button("AddParentGallery", "Insert content section")) +
                           image("_299_300" + end, button("AddChildGallery", "Insert child section"));
        return menu == 0 ? text + image("_299_298_287", button("RemoveGallery", "Delete")) : text;
    }

    CProjectFixture fixture;
    GalleryMenus menus = MakeGalleryMenus(fixture.scratch.Path() + QLatin1Char('/'));
};

void ReplaceAll(std::string& text, const std::string& what, const std::string& by)
{
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
}

// The markup of a cell of 120 by 90 with a picture, each piece of the frame by the flag that it stands for.
std::string ExpectedCell(int flags, bool isSelected, const std::string& cover)
{
    const int offset = isSelected ? 34 : 0;
    const std::string colour = isSelected ? "bgcolor=#005afa" : "bgcolor=#9ab2d2";
    const auto bitmap = [&](int id) {
        return "res://vistorama/#2/#" + std::to_string(id + offset);
    };
    const std::string left = (flags & 8) != 0 ? colour : "";
    const std::string right = (flags & 4) != 0 ? colour : "";
    std::string text =
        "<td width=120 bgcolor=#cbd5e4><table cellpadding=0 cellspacing=0 border=0><tr height=4>"
        "<td width=4 {L}></td><td width=5 {L}></td><td width=9 rowspan=2 {LC} ></td>"
        "<td rowspan=2 width=84{M} ></td><td rowspan=2 width=9 {RC} ></td>"
        "<td width=5 {R}></td><td width=4 {R}></td></tr>\n"
        "<tr height=5><td></td><td>{LF}</td><td>{RF}</td><td></td></tr>"
        "\n<tr height=72><td></td><td></td><td colspan=3 {S}>"
        "<div align=\"center\" valign=\"middle\" width=\"102\" height=\"72\">{COVER}</div>"
        "</td><td></td><td></td></tr>\n<tr height=9><td></td><td></td><td colspan=3>{TAIL}"
        "<td></td><td></td></tr></table></td>";
    const std::string tail =
        "<table cellpadding=0 cellspacing=0 border=0 ><tr height=4><td width=42></td><td width=5></td>"
        "<td width=8 {S}></td><td width=5></td></td><td width=42></td></tr>\n"
        "<tr height=5><td></td><td><img src=\"" +
        bitmap(273) + "\"></td><td width=8 {S}></td><td><img src=\"" + bitmap(274) +
        "\"></td><td></td></tr></table>\n";
    const std::string corner271 = " ><img width=9 src=\"" + bitmap(271) + "\"";
    const std::string corner272 = " ><img width=9 src=\"" + bitmap(272) + "\"";
    ReplaceAll(text, "{LC}", (flags & 8) != 0 ? colour : (flags & 2) != 0 ? corner271 : "");
    ReplaceAll(text, "{RC}", (flags & 4) != 0 ? colour : (flags & 1) != 0 ? corner272 : "");
    ReplaceAll(text, "{LF}", (flags & 8) != 0 ? "<img src=\"" + bitmap(275) + "\">" : "");
    ReplaceAll(text, "{RF}", (flags & 4) != 0 ? "<img src=\"" + bitmap(270) + "\">" : "");
    ReplaceAll(text, "{M}", (flags & 15) != 0 ? " " + colour : "");
    ReplaceAll(text, "{TAIL}", (flags & 16) != 0 ? tail : "");
    ReplaceAll(text, "{L}", left);
    ReplaceAll(text, "{R}", right);
    ReplaceAll(text, "{S}", colour);
    ReplaceAll(text, "{COVER}", cover);
    return text;
}

} // namespace

TEST_F(GalleriesTable, DividesTheViewByThree)
{
    const struct {
        QSize view;
        int scrollBar;
        QSize cell;
        QSize box;
    } rows[] = {
        {{320, 240}, 17, {94, 61}, {72, 39}},
        {{340, 386}, 14, {102, 110}, {80, 88}},
        {{341, 387}, 14, {102, 111}, {80, 89}},
        {{342, 388}, 14, {102, 111}, {80, 89}},
        {{343, 389}, 14, {103, 111}, {81, 89}},
        {{1000, 1000}, 0, {326, 320}, {304, 298}},
        // There is always a pixel of everything.
        {{80, 80}, 17, {37, 23}, {15, 1}},
        {{0, 0}, 17, {37, 23}, {15, 1}},
        {{1, 5000}, 17, {37, 1647}, {15, 1625}},
        {{5000, 1}, 17, {1654, 23}, {1632, 1}},
    };
    for (const auto& row : rows) {
        const QSize cell = GetGalleryCellSize(row.view, row.scrollBar);
        EXPECT_EQ(cell, row.cell) << row.view.width() << 'x' << row.view.height();
        EXPECT_EQ(GetCoverBox(cell), row.box);
    }
}

TEST_F(GalleriesTable, ShowsTheNeighbourhoodOfTheCurrentGallery)
{
    EXPECT_EQ(Arranged(0), "- - -|- *0 -|- - -");
    Project().AddChildGallery(0);
    EXPECT_EQ(Arranged(0), "- - -|- *0 -|- 1 -");
    EXPECT_EQ(Arranged(1), "- 0 -|- *1 -|- - -");
    Project().AddChildGallery(0);
    EXPECT_EQ(Arranged(0), "- - -|- *0 -|1 2 -");
    EXPECT_EQ(Arranged(2), "- 0 -|1 *2 -|- - -");
    Project().AddChildGallery(0);
    EXPECT_EQ(Arranged(0), "- - -|- *0 -|1 2 3");
    EXPECT_EQ(Arranged(2), "- 0 -|1 *2 3|- - -");
    // Of four children three show.
    Project().AddChildGallery(0);
    EXPECT_EQ(Arranged(0), "- - -|- *0 -|1 2 3");
    EXPECT_EQ(Arranged(3), "- 0 -|2 *3 4|- - -");
    Project().AddChildGallery(3);
    EXPECT_EQ(Arranged(3), "- 0 -|2 *3 4|- 5 -");
    EXPECT_EQ(Arranged(5), "- 3 -|- *5 -|- - -");
}

TEST_F(GalleriesTable, ShowsTheRootForAGalleryThatIsNotInTheTree)
{
    Project().AddChildGallery(0);
    Project().AddGallery();
    EXPECT_EQ(Arranged(2), "- - -|- *0 -|- 1 -");
    EXPECT_EQ(Arranged(99), "- - -|- *0 -|- 1 -");
    Project().Clear();
    EXPECT_EQ(Arranged(0), "- - -|- - -|- - -");
}

TEST_F(GalleriesTable, TellsByFlagsWhatAFrameIsJoinedTo)
{
    for (const int parent : {0, 0, 0, 2}) {
        Project().AddChildGallery(parent);
    }
    EXPECT_EQ(CellOf(0).flags, 16);
    EXPECT_EQ(CellOf(1).flags, 2 + 4);
    EXPECT_EQ(CellOf(2).flags, 8 + 4 + 16);
    EXPECT_EQ(CellOf(3).flags, 8 + 1);
    EXPECT_EQ(CellOf(4).flags, 2 + 1);
}

TEST_F(GalleriesTable, TheRootCanBeDeletedWhenOneChildCanTakeItsPlace)
{
    EXPECT_EQ(CellOf(0).menu, 1);
    Project().AddChildGallery(0);
    EXPECT_EQ(CellOf(0).menu, 0);
    EXPECT_EQ(CellOf(1).menu, 0);
    Project().AddChildGallery(0);
    EXPECT_EQ(CellOf(0).menu, 1);
    EXPECT_EQ(CellOf(1).menu, 0);
    Project().AddChildGallery(1);
    Project().AddChildGallery(1);
    EXPECT_EQ(CellOf(1).menu, 0);
}

TEST_F(GalleriesTable, WritesEveryKindOfCell)
{
    for (int flags = 0; flags < 32; ++flags) {
        for (const bool isSelected : {false, true}) {
            for (const int menu : {0, 1}) {
                const GalleryCell cell{.galleryId = 7,
                                       .name = QStringLiteral("not written"),
                                       .flags = flags,
                                       .isSelected = isSelected,
                                       .menu = menu,
                                       .picture = "/tmp/cover.png"};
                const std::string cover =
                    Strips(menu) +
                    "<a href=\"gl_7\"><img id=\"gl_7\" src=\"/tmp/cover.png\"  "
                    "onmouseenter=\"showMenu(gl_7_menu);\" onmouseleave=\"hideMenu(gl_7_menu);\"/></a>";
                EXPECT_EQ(Written(&cell, QSize(120, 90)), ExpectedCell(flags, isSelected, cover))
                    << flags << isSelected << menu;
            }
        }
    }
}

TEST_F(GalleriesTable, WritesAnEmptyCell)
{
    EXPECT_EQ(Written(nullptr, QSize(94, 61)),
              "<td width=94 bgcolor=#cbd5e4><table cellpadding=0 cellspacing=0 border=0><tr height=4>"
              "<td width=4 ></td><td width=5 ></td><td width=9 rowspan=2  ></td><td rowspan=2 width=58 ></td>"
              "<td rowspan=2 width=9  ></td><td width=5 ></td><td width=4 ></td></tr>\n"
              "<tr height=5><td></td><td></td><td></td><td></td></tr>"
              "\n<tr height=43><td></td><td></td><td colspan=3>"
              "<div align=\"center\" valign=\"middle\" width=\"76\" height=\"43\"></div></td>"
              "<td></td><td></td></tr>\n<tr height=9><td></td><td></td><td colspan=3>"
              "<td></td><td></td></tr></table></td>");
}

TEST_F(GalleriesTable, TheTailIsInTheMiddleOfEveryWidth)
{
    for (int width = 40; width < 60; ++width) {
        const GalleryCell cell{.galleryId = 7, .name = {}, .flags = 16, .picture = ""};
        const std::string text = Written(&cell, QSize(width, 60));
        const int inner = width - 18;
        const int bar = inner % 2 == 0 ? 8 : 9;
        const int edge = (inner - bar - 10) / 2;
        EXPECT_EQ(2 * edge + 10 + bar, inner);
        EXPECT_NE(text.find("<tr height=4><td width=" + std::to_string(edge) +
                            "></td><td width=5></td><td width=" + std::to_string(bar) + " bgcolor"),
                  std::string::npos)
            << text;
    }
}

TEST_F(GalleriesTable, IsOneTable)
{
    GalleriesPage page = ArrangeGalleries(CGalleryTree(Project()), 0, 1);
    page.cellSize = QSize(94, 61);
    page.rows[1][1]->picture = "a.png";
    const std::string text = WriteGalleriesPage(page, menus);
    const auto resource = [](const char* name, const char* type) {
        return FindResource(QString::fromLatin1(name), QString::fromLatin1(type)).toStdString();
    };
    const std::string empty = Written(nullptr, page.cellSize);
    EXPECT_EQ(text, resource("226", "html") + "<script type=\"text/javascript\" >" +
                        resource("preview", "js") +
                        "</script></head>\n<body>\n"
                        "<table cellpadding=0 cellspacing=0 border=0 width=282 height=183 bgcolor=#cbd5e4>\n"
                        "<tr><th colspan=3 align=left>Gallery tree ( 1 section )</th></tr>\n"
                        "\n<tr height=61>" +
                        empty + empty + empty + "</tr>\n<tr height=61>" + empty +
                        Written(&*page.rows[1][1], page.cellSize) + empty + "</tr>\n<tr height=61>" + empty +
                        empty + empty + "</tr></table></body></html>\n");
}

TEST_F(GalleriesTable, CountsTheSections)
{
    for (const auto& [count, words] : {std::pair(0, "( 0 sections )"),
                                       {1, "( 1 section )"},
                                       {2, "( 2 sections )"},
                                       {200, "( 200 sections )"}}) {
        GalleriesPage page;
        page.cellSize = QSize(94, 61);
        page.galleryCount = count;
        EXPECT_NE(WriteGalleriesPage(page, menus).find(words), std::string::npos) << words;
    }
}

TEST_F(GalleriesTable, ThePiecesOfTheFrameAreDrawn)
{
    for (const int id : {270, 271, 272, 273, 274, 275}) {
        for (const int offset : {0, 34}) {
            const QByteArray drawing = FindResource(QString::number(id + offset), QStringLiteral("svg"));
            EXPECT_TRUE(drawing.contains(offset == 0 ? "#9ab2d2" : "#005afa")) << id + offset;
            const QByteArray side = id == 271 || id == 272 ? "9" : "5";
            EXPECT_TRUE(drawing.contains("width=\"" + side + "\" height=\"" + side + "\"")) << id + offset;
        }
    }
}
