#include "content/ContentGeneratorViews.h"

#include <sstream>

#include <QDir>
#include <QFile>

#include "PlainGenerator.h"
#include "common/Platform.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryIterator.h"
#include "resources/Resources.h"
#include "support/ProjectFixture.h"
#include "template/parser/CompoundTemplateSection.h"

namespace {

class ViewGenerators : public testing::Test {
protected:
    ViewGenerators()
    {
        qputenv("XDG_CACHE_HOME", fixture.scratch.Path(QStringLiteral("cache")).toUtf8());
        strips = fixture.scratch.Path(QStringLiteral("strips/"));
        QDir().mkpath(strips);
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "");
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.NewProject();
    }
    ~ViewGenerators() override { qunsetenv("XDG_CACHE_HOME"); }

    CGalleryIterator& Iterator()
    {
        iterator.Init(fixture.GetRoot());
        iterator.Reset();
        iterator.BindPicture(QStringLiteral("photo1"));
        iterator.SetPageIndex(0);
        return iterator;
    }

    std::string Picture(CContentGenerator& generator, const PictureAttributes& picture)
    {
        std::ostringstream out;
        generator.GeneratePicture(Iterator(), picture, out);
        return out.str();
    }

    static size_t Count(const std::string& text, const std::string& part)
    {
        size_t count = 0;
        for (size_t place = text.find(part); place != std::string::npos; place = text.find(part, place + 1)) {
            ++count;
        }
        return count;
    }

    CProjectFixture fixture;
    CGalleryIterator iterator;
    QString strips;
};

} // namespace

TEST_F(ViewGenerators, ThePageHeaderBeginsWithTheScriptOfTheStrips)
{
    CContentGeneratorPreview generator(strips);
    std::ostringstream out;
    generator.GeneratePageHeader(Iterator(), out);
    const std::string script = FindResource(QStringLiteral("Preview"), QStringLiteral("js")).toStdString();
    ASSERT_FALSE(script.empty());
    EXPECT_EQ(script.find("</script"), std::string::npos);
    EXPECT_EQ(out.str().rfind("<script type=\"text/javascript\" >" + script +
                                  "</script>\n<meta http-equiv=\"imagetoolbar\" content=\"no\">",
                              0),
              0u);
    EXPECT_NE(out.str().find("function GetCurrentURL( ) {\n\t\treturn \"index0.html\";\n}\n</script>\n"),
              std::string::npos)
        << out.str();
}

TEST_F(ViewGenerators, BannersAndAdvertisementsAreLeftToDeployedPages)
{
    CContentGeneratorPreview generator(strips);
    std::ostringstream out;
    generator.GenerateBanner("468", "60", out);
    generator.GenerateAdvertisement(Iterator(), "top", out);
    EXPECT_EQ(out.str(), "");
}

TEST_F(ViewGenerators, APictureOfAPageHasSixImagesBeforeItsLink)
{
    fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("a.jpg")));
    CContentGeneratorPreview generator(strips);
    const std::string html =
        Picture(generator, {.id = "photo1", .href = "p.html", .height = "15", .width = "20"});
    EXPECT_EQ(Count(html, "<img id=\"photo1_menu\""), 6u);
    const char* const commands[] = {
        "menu_295_281_280_285_286.bmp\"|window.external.MoveImageUp('photo1');\"  alt=\"Move up\" ",
        "menu_278_288_280_285_286.bmp\"|window.external.MoveImageDown('photo1');\"  alt=\"Move down\" ",
        "menu_278_281_287_285_286.bmp\"|window.external.DeleteImage('photo1');\"  alt=\"Delete\" ",
        "menu_278_281_280_292_286.bmp\"|window.external.RotateImageRight('photo1');\"  "
        "alt=\"Rotate clockwise\" ",
        "menu_278_281_280_285_293.bmp\"|window.external.RotateImageLeft('photo1');\"  "
        "alt=\"Rotate counter-clockwise\" ",
    };
    size_t place = html.find("menu_278_281_280_285_286.bmp");
    ASSERT_NE(place, std::string::npos);
    for (const std::string command : commands) {
        const size_t bar = command.find('|');
        const size_t strip = html.find(command.substr(0, bar), place);
        ASSERT_NE(strip, std::string::npos) << command << html;
        place = html.find(command.substr(bar + 1), strip);
        ASSERT_NE(place, std::string::npos) << command << html;
    }
    EXPECT_LT(place, html.find("<a href=\"p.html\"><img id=\"photo1\" src=\""));
    EXPECT_NE(html.find(".jpg\" onmouseenter=\"showMenu(photo1_menu);\" "
                        "onmouseleave=\"hideMenu(photo1_menu);\"/></a></div>"),
              std::string::npos)
        << html;
}

TEST_F(ViewGenerators, APictureThatIsNotThereCanBeFoundButNotTurned)
{
    fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("a.jpg")));
    ASSERT_TRUE(QFile::remove(fixture.scratch.Path(QStringLiteral("photos/a.jpg"))));
    CContentGeneratorPreview generator(strips);
    const std::string html =
        Picture(generator, {.id = "photo1", .href = "p.html", .height = "15", .width = "20"});
    EXPECT_EQ(Count(html, "<img id=\"photo1_menu\""), 5u);
    EXPECT_NE(html.find("onclick=\"window.external.FindImage('photo1');\"  alt=\"Find...\" "),
              std::string::npos)
        << html;
    EXPECT_EQ(Count(html, "Rotate"), 0u) << html;
}

TEST_F(ViewGenerators, ATextSpanHasOneButton)
{
    CContentGeneratorPreview generator(strips);
    std::ostringstream out;
    generator.GenerateTextSpan(
        Iterator(), {.name = "Title", .property = "gallery.title", .defaultText = "none", .multiline = true},
        out);
    const std::string path = strips.toStdString();
    const std::string middle =
        "\" style=\"position:absolute;display:none\" onmousemove=\"activateMenu(gallery_title_menu);\" "
        "onmouseleave=\"hideMenu(gallery_title_menu);\"";
    EXPECT_EQ(out.str(),
              "<img id=\"gallery_title_menu\" src=\"" + path + "menu_277.bmp" + middle +
                  ">\n"
                  "<img id=\"gallery_title_menu\" src=\"" +
                  path + "menu_294.bmp" + middle +
                  " onclick=\"window.external.EditText('gallery.title','Title',gallery_title.innerHTML, "
                  "window.event.screenX,window.event.screenY,true);\"  alt=\"Edit text\" >\n"
                  "<span id=\"gallery_title\" onmouseenter=\"showMenu(gallery_title_menu);\" "
                  "onmouseleave=\"hideMenu(gallery_title_menu);\">none</span>");
}

TEST_F(ViewGenerators, BothKindsOfReferencesUseOneButtonInTwoCollections)
{
    CContentGeneratorPreview generator(strips);
    std::ostringstream image;
    generator.GenerateImageReference(Iterator(),
                                     {.id = "logo",
                                      .name = "Logo",
                                      .src = "logo.png",
                                      .hrefProperty = "gallery.h",
                                      .defaultHref = "d",
                                      .altProperty = "gallery.a",
                                      .defaultAlt = "e"},
                                     image);
    std::ostringstream text;
    generator.GenerateTextReference(Iterator(),
                                    {.id = "home",
                                     .name = "Home",
                                     .hrefProperty = "gallery.h",
                                     .defaultHref = "d",
                                     .text = "gallery.t",
                                     .defaultText = "e"},
                                    text);
    const std::string tip = "alt=\"Edit hypertext reference URL and text\"";
    EXPECT_EQ(Count(image.str(), "<img id=\"logo_menu\""), 2u);
    EXPECT_NE(image.str().find("menu_284.bmp"), std::string::npos);
    EXPECT_NE(image.str().find("menu_291.bmp"), std::string::npos);
    EXPECT_NE(image.str().find(
                  " onclick=\"window.external.EditReference('Logo','gallery.h','gallery.a');\"  " + tip),
              std::string::npos);
    EXPECT_NE(
        image.str().find("<a href=\"d\"><img src=\"logo.png\" alt=\"e\"  "
                         "onmouseenter=\"showMenu(logo_menu);\" onmouseleave=\"hideMenu(logo_menu);\"/></a>"),
        std::string::npos)
        << image.str();
    EXPECT_EQ(Count(text.str(), "<img id=\"home_menu\""), 2u);
    EXPECT_NE(text.str().find(
                  " onclick=\"window.external.EditReference('Home','gallery.h','gallery.t');\"  " + tip),
              std::string::npos);
    EXPECT_NE(text.str().find("<a href=\"d\"  onmouseenter=\"showMenu(home_menu);\" "
                              "onmouseleave=\"hideMenu(home_menu);\" >e</a>"),
              std::string::npos)
        << text.str();
}

TEST_F(ViewGenerators, ARowOfTheFolderViewHidesItselfWhenItIsFollowed)
{
    const QString picture = fixture.WritePicture(QStringLiteral("a.jpg"));
    fixture.GetRoot().AddPicture(picture);
    CContentGeneratorFolderView generator(strips);
    const std::string html =
        Picture(generator,
                {.id = "photo1", .href = "addpicture0", .height = "15", .width = "20", .alt = "Add picture"});
    const std::string path = strips.toStdString();
    const std::string middle =
        "\" style=\"position:absolute;display:none\" onmousemove=\"activateMenu(photo1_menu);\" "
        "onmouseleave=\"hideMenu(photo1_menu);\"";
    EXPECT_EQ(html, "<tr id=\"photo1_row\"><td colspan=2>"
                    "<img id=\"photo1_menu\" src=\"" +
                        path + "menu_282_283.bmp" + middle +
                        ">\n"
                        "<img id=\"photo1_menu\" src=\"" +
                        path + "menu_289_283.bmp" + middle +
                        " onclick=\"window.external.AddImage('photo1');hideObject(photo1_row);\"  "
                        "alt=\"Add picture\" >\n"
                        "<img id=\"photo1_menu\" src=\"" +
                        path + "menu_282_290.bmp" + middle +
                        " onclick=\"window.external.AddAllImages();\"  alt=\"Add all pictures\" >\n"
                        "<a  onclick=\"hideObject(photo1_row);\" href=\"addpicture0\" id=\"photo1_href\"\">"
                        "<img id=\"photo1\" src=\"" +
                        picture.toStdString() +
                        "\" alt=\"Add picture\" onmouseenter=\"showMenu(photo1_menu);\" "
                        "onmouseleave=\"hideMenu(photo1_menu);\"/></a></td></tr>");
}

TEST_F(ViewGenerators, ARowWithoutALinkIsNotLinked)
{
    fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("a.jpg")));
    CContentGeneratorFolderView generator(strips);
    const std::string html = Picture(generator, {.id = "photo1", .href = "", .height = "15", .width = "20"});
    EXPECT_EQ(html.find("<a "), std::string::npos);
    EXPECT_EQ(html.find("</a>"), std::string::npos);
    EXPECT_EQ(html.find("<img id=\"photo1\" src=\"\""), std::string::npos);
    EXPECT_EQ(html.find(".jpg\" alt="), std::string::npos);
}

TEST_F(ViewGenerators, TheFolderViewHasNoMenusForTexts)
{
    CContentGeneratorFolderView generator(strips);
    std::ostringstream out;
    generator.GenerateTextSpan(Iterator(), {.name = "T", .property = "gallery.t", .defaultText = "x"}, out);
    EXPECT_EQ(out.str(), "<span id=\"gallery_t\">x</span>");
    std::ostringstream references;
    generator.GenerateImageReference(Iterator(), SampleImageReference(), references);
    generator.GenerateTextReference(Iterator(), SampleTextReference(), references);
    EXPECT_EQ(references.str(), "<a href=\"d\"><img src=\"s\" alt=\"e\" /></a><a href=\"d\"  >e</a>");
}

TEST_F(ViewGenerators, APictureInAFolderWithOddCharactersHasItsAddress)
{
    QDir().mkpath(fixture.scratch.Path(QStringLiteral("photos/50% #1? a&b 'c'")));
    const QString picture = fixture.WritePicture(QStringLiteral("50% #1? a&b 'c'/50%#1.jpg"));
    fixture.GetRoot().AddPicture(picture);
    CContentGeneratorPreview generator(strips);
    const std::string html = Picture(generator, {.id = "photo1", .href = "", .height = "15", .width = "20"});
    // The name of its image has nothing of the folder, and that of the source cleaned.
    EXPECT_NE(html.find("/vistorama/images/50151312015_"), std::string::npos) << html;
}

TEST_F(ViewGenerators, APictureThatCannotBeReadDoesNotEndThePage)
{
    fixture.GetRoot().AddPicture(fixture.scratch.Write(QStringLiteral("photos/a.jpg"), "no picture"));
    CContentGeneratorPreview generator(strips);
    const std::string html = Picture(generator, {.id = "photo1", .href = "", .height = "15", .width = "20"});
    EXPECT_NE(html.find("/a2015_"), std::string::npos);
    EXPECT_EQ(Count(html, "<img id=\"photo1_menu\""), 6u);
}

TEST_F(ViewGenerators, TheAddressOfAPageCannotEndItsScript)
{
    fixture.GetRoot().SetQueryString(QStringLiteral("?a\"b\\</script>\n"));
    CContentGeneratorPreview generator(strips);
    std::ostringstream out;
    generator.GeneratePageHeader(Iterator(), out);
    EXPECT_NE(out.str().find("return \"index0.html?a\\\"b\\\\\\x3C/script>\\n\";"), std::string::npos)
        << out.str().substr(out.str().find("function GetCurrentURL"));
}

TEST_F(ViewGenerators, AnAdvertisementWithATextIsLeftToDeployedPagesToo)
{
    CGallery& root = fixture.GetRoot();
    root.GetTexts().advertisements[root.GetLayout().GetTemplatePage()][QStringLiteral("top")] =
        QStringLiteral("<b>Buy</b>");
    CVariant text;
    ASSERT_TRUE(Iterator().GetVariable(QStringLiteral("advertisement"), QStringLiteral("top"), text));
    ASSERT_EQ(text, CVariant(QStringLiteral("<b>Buy</b>")));
    std::ostringstream out;
    CContentGeneratorPreview(strips).GenerateAdvertisement(Iterator(), "top", out);
    CContentGeneratorFolderView(strips).GenerateAdvertisement(Iterator(), "top", out);
    EXPECT_EQ(out.str(), "");
}
