#include "content/PictureMenu.h"

#include <sstream>

#include <QFile>

#include "common/FileSystem.h"
#include "content/PictureMenuCommandGenerator.h"
#include "imaging/Image.h"
#include "support/ScratchFolder.h"

namespace {

const std::vector<CPictureMenu::Row>& TwoRows()
{
    static const std::vector<CPictureMenu::Row> rows = {{278, 295, StringId::MoveUp},
                                                        {281, 288, StringId::MoveDown}};
    return rows;
}

QString Command(const CPictureMenuCommandGenerator& generator, int32_t command,
                const std::string& id = "pic_3")
{
    QString out = QStringLiteral("=");
    generator.GenerateCommand(command, id, out);
    return out.mid(1);
}

std::string Images(const CPictureMenu& menu, const std::string& id)
{
    std::ostringstream out;
    menu.WriteMenuImages(out, id, CPreviewCommandGenerator());
    return out.str();
}

} // namespace

TEST(PictureMenu, AMenuOfSoManyButtonsHasOneStripMore)
{
    const CScratchFolder scratch;
    const CPictureMenu menu(scratch.Path(), TwoRows());
    EXPECT_EQ(scratch.ListFiles(),
              QStringList({QStringLiteral("menu_278_281.bmp"), QStringLiteral("menu_278_288.bmp"),
                           QStringLiteral("menu_295_281.bmp")}));
    EXPECT_TRUE(scratch.Read(QStringLiteral("menu_278_281.bmp")).startsWith("BM"));
}

TEST(PictureMenu, AStripShowsItsButtonsBesideEachOtherAtFourTimesTheirSize)
{
    const CScratchFolder scratch;
    const CPictureMenu menu(scratch.Path(), TwoRows());
    const CImage rest = CImage::FromFile(scratch.Path(QStringLiteral("menu_278_281.bmp")));
    const CImage lit = CImage::FromFile(scratch.Path(QStringLiteral("menu_278_288.bmp")));
    ASSERT_EQ(rest.GetSize(), QSize(2 * 96, 96));
    ASSERT_EQ(lit.GetSize(), rest.GetSize());
    const QByteArray restPixels = rest.GetRgba();
    const QByteArray litPixels = lit.GetRgba();
    const auto half = [](const QByteArray& pixels, int from) {
        QByteArray columns;
        for (int row = 0; row < 96; ++row) {
            columns += pixels.mid((row * 2 * 96 + from) * 4, 96 * 4);
        }
        return columns;
    };
    EXPECT_EQ(half(restPixels, 0), half(litPixels, 0)); // the first button rests in both
    EXPECT_NE(half(restPixels, 96), half(litPixels, 96));
}

TEST(PictureMenu, AStripThatIsThereIsUsedAsItIs)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("menu_278_281.bmp"), "mine");
    const CPictureMenu menu(scratch.Path(), TwoRows());
    EXPECT_EQ(scratch.Read(QStringLiteral("menu_278_281.bmp")), "mine");
}

TEST(PictureMenu, AStripThatCannotBeMadeIsNoFailure)
{
    const CScratchFolder scratch;
    const QString folder = scratch.Path(QStringLiteral("missing/"));
    const CPictureMenu menu(folder, {{278, 295, StringId::MoveUp}, {999999, 999998, StringId::MoveDown}});
    EXPECT_FALSE(FolderExists(folder));
    EXPECT_NE(Images(menu, "a").find("menu_278_999999.bmp"), std::string::npos);
}

TEST(PictureMenu, WritesTheStripAtRestAndOneForEachButtonWithOneId)
{
    const CScratchFolder scratch;
    const std::string folder = scratch.Path().toStdString();
    const std::string middle =
        "\" style=\"position:absolute;display:none\" onmousemove=\"activateMenu(pic_3_menu);\" "
        "onmouseleave=\"hideMenu(pic_3_menu);\"";
    const CPictureMenu menu(scratch.Path(), TwoRows());
    EXPECT_EQ(Images(menu, "pic_3"),
              "<img id=\"pic_3_menu\" src=\"" + folder + "menu_278_281.bmp" + middle +
                  ">\n"
                  "<img id=\"pic_3_menu\" src=\"" +
                  folder + "menu_295_281.bmp" + middle +
                  " onclick=\"window.external.MoveImageUp('pic_3');\"  alt=\"Move up\" >\n"
                  "<img id=\"pic_3_menu\" src=\"" +
                  folder + "menu_278_288.bmp" + middle +
                  " onclick=\"window.external.MoveImageDown('pic_3');\"  alt=\"Move down\" >\n");
}

TEST(PictureMenu, AnObjectShowsAndHidesItsMenu)
{
    std::ostringstream out;
    CPictureMenu::WriteMenuAttributes(out, "pic_3");
    EXPECT_EQ(out.str(), " onmouseenter=\"showMenu(pic_3_menu);\" onmouseleave=\"hideMenu(pic_3_menu);\"");
}

TEST(PictureMenu, AFolderWithOddCharactersIsWrittenAsAnAddress)
{
    const CScratchFolder scratch;
    MakeDirectoryPath(scratch.Path(QStringLiteral("50% #1 \"a\"")));
    const CPictureMenu menu(scratch.Path(QStringLiteral("50% #1 \"a\"/")), TwoRows());
    EXPECT_NE(Images(menu, "a").find("50%25 %231 %22a%22/menu_278_281.bmp"), std::string::npos);
    EXPECT_TRUE(FileExists(scratch.Path(QStringLiteral("50% #1 \"a\"/menu_278_281.bmp"))));
}

TEST(PictureMenuCommands, OfTheFolderView)
{
    const CFolderViewCommandGenerator generator;
    EXPECT_EQ(Command(generator, 282, "i7"), QStringLiteral("AddImage('i7');hideObject(i7_row)"));
    EXPECT_EQ(Command(generator, 283, "i7"), QStringLiteral("AddAllImages()"));
    EXPECT_EQ(Command(generator, 278, "i7"), QString());
}

TEST(PictureMenuCommands, OfThePreview)
{
    const std::string first = "Title";
    const std::string second = "photo.title";
    const std::string third = "photo.alt";
    CPreviewCommandGenerator generator;
    generator.argument1 = &first;
    generator.argument2 = &second;
    generator.argument3 = &third;
    const struct {
        int32_t command;
        const char* expected;
    } rows[] = {
        {277, "EditText('photo.title','Title',pic_3.innerHTML, "
              "window.event.screenX,window.event.screenY,false)"},
        {278, "MoveImageUp('pic_3')"},
        {279, "ChangeVisibility('Title')"},
        {280, "DeleteImage('pic_3')"},
        {281, "MoveImageDown('pic_3')"},
        {284, "EditReference('Title','photo.title','photo.alt')"},
        {285, "RotateImageRight('pic_3')"},
        {286, "RotateImageLeft('pic_3')"},
        {276, ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Command(generator, row.command), QString::fromLatin1(row.expected)) << row.command;
    }
}

TEST(PictureMenuCommands, APictureHasNoArgumentsButItsId)
{
    EXPECT_EQ(Command(CPreviewCommandGenerator(), 278), QStringLiteral("MoveImageUp('pic_3')"));
}

TEST(PictureMenuCommands, ATextOfSeveralLinesSaysSo)
{
    const std::string name = "N";
    const std::string property = "gallery.text";
    CPreviewCommandGenerator generator;
    generator.argument1 = &name;
    generator.argument2 = &property;
    generator.multiline = true;
    EXPECT_TRUE(Command(generator, 277).endsWith(QStringLiteral(",window.event.screenY,true)")));
}

TEST(PictureMenuCommands, ArgumentsAreNotEscapedAndMissingOnesAreEmpty)
{
    const std::string name = "Author's";
    CPreviewCommandGenerator generator;
    generator.argument1 = &name;
    EXPECT_EQ(Command(generator, 284), QStringLiteral("EditReference('Author's','','')"));
    const std::string umlauts = "\xc3\x9c"
                                "ber";
    generator.argument1 = &umlauts;
    EXPECT_EQ(Command(generator, 279), QString::fromUtf8("ChangeVisibility('\xc3\x9c"
                                                         "ber')"));
}

TEST(PictureMenuCommands, OfTheGalleriesView)
{
    const CGalleriesPictureMenuCommandGenerator generator(12);
    EXPECT_EQ(Command(generator, 280), QStringLiteral("RemoveGallery(12)"));
    EXPECT_EQ(Command(generator, 298), QStringLiteral("AddChildGallery(12)"));
    EXPECT_EQ(Command(generator, 299), QStringLiteral("AddParentGallery(12)"));
    EXPECT_EQ(Command(generator, 277), QString());
    EXPECT_EQ(Command(CGalleriesPictureMenuCommandGenerator(-1), 280), QStringLiteral("RemoveGallery(-1)"));
}
