#include "content/ContentGeneratorBase.h"

#include <sstream>

#include <QFileInfo>

#include "PlainGenerator.h"
#include "common/FileSystem.h"
#include "common/Platform.h"
#include "common/Text.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryIterator.h"
#include "effects/FileNames.h"
#include "effects/GeometricEffects.h"
#include "effects/ImageEffect.h"
#include "imaging/Image.h"
#include "support/ProjectFixture.h"
#include "template/parser/TemplateParsingException.h"

namespace {

class ContentGeneratorBase : public testing::Test {
protected:
    ContentGeneratorBase()
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "");
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.NewProject();
        generator.imageFolder = fixture.scratch.Path(QStringLiteral("images/"));
        MakeDirectoryPath(generator.imageFolder);
    }

    CGallery& Gallery() { return fixture.GetRoot(); }

    // An iterator on the first picture, which is bound as "photo1".
    CGalleryIterator& Iterator()
    {
        iterator.Init(Gallery());
        iterator.Reset();
        iterator.BindPicture(QStringLiteral("photo1"));
        iterator.SetPageIndex(0);
        return iterator;
    }

    void SetVariable(const char* name, const CVariant& value)
    {
        Gallery().SetObjectVariable(QStringLiteral("gallery"), QString::fromLatin1(name), value);
    }

    std::string Picture(const PictureAttributes& picture)
    {
        std::ostringstream out;
        generator.GeneratePicture(Iterator(), picture, out);
        return out.str();
    }

    std::string Span(const TextSpanAttributes& span)
    {
        std::ostringstream out;
        generator.GenerateTextSpan(Iterator(), span, out);
        return out.str();
    }

    CProjectFixture fixture;
    CGalleryIterator iterator;
    CPlainGenerator generator;
};

} // namespace

TEST_F(ContentGeneratorBase, WritesThePageHeader)
{
    std::ostringstream out;
    generator.GeneratePageHeader(Iterator(), out);
    EXPECT_EQ(out.str(),
              "\n<meta http-equiv=\"imagetoolbar\" content=\"no\">"
              "<script type=\"text/javascript\" >function no_right_click(e) {\r\n"
              "  try { if (event.button==2||event.button==3) return false; }  \r\n"
              "  catch (e) { if (e.which == 3) return false; } \r\n"
              "}\r\n"
              "document.oncontextmenu = function() { return false; }\r\n"
              "document.ondragstart   = function() { return false; }\r\n"
              "document.onmousedown   = no_right_click;</script>"
              "\n<script type=\"text/javascript\">\nfunction GetCurrentURL( ) {\n\t\treturn HERE;\n}\n"
              "</script>\n");
}

TEST_F(ContentGeneratorBase, WritesAPictureAsALinkedImage)
{
    Gallery().AddPicture(fixture.WritePicture(QStringLiteral("Winter day.jpg")));
    const std::string url = fixture.scratch.Path(QStringLiteral("images/Winter10day2015.jpg")).toStdString();
    const struct {
        std::optional<std::string> alt;
        std::string expected;
    } rows[] = {
        {std::nullopt, ""},
        {"", " alt=\"\""},
        {"A day", " alt=\"A day\""},
    };
    for (const auto& row : rows) {
        PictureAttributes picture{.id = "photo1", .href = "p.html", .height = "15", .width = "20"};
        picture.alt = row.alt;
        EXPECT_EQ(Picture(picture), "<div align=\"center\" valign=\"center\" width=\"20\" height=\"15\" >"
                                    "<a href=\"p.html\"><img id=\"photo1\" src=\"" +
                                        url + "\"" + row.expected + "/></a></div>");
    }
}

TEST_F(ContentGeneratorBase, AnEmptyLinkTargetStillWritesItsLink)
{
    Gallery().AddPicture(fixture.WritePicture(QStringLiteral("a.jpg")));
    const std::string html = Picture({.id = "photo1", .href = "", .height = "15", .width = "20"});
    EXPECT_NE(html.find("<a href=\"\"><img"), std::string::npos);
}

TEST_F(ContentGeneratorBase, ASizeThatIsNoNumberIsZeroForThePictureAndStandsAsItIsInThePage)
{
    Gallery().AddPicture(fixture.WritePicture(QStringLiteral("a.jpg")));
    const std::string html = Picture({.id = "photo1", .href = "", .height = "15px", .width = "abc"});
    EXPECT_NE(html.find("width=\"abc\" height=\"15px\" >"), std::string::npos);
    ASSERT_EQ(generator.requests.size(), 1u);
    EXPECT_EQ(ExtractLastName(generator.requests[0].resultPath), QStringLiteral("a015.jpg"));
}

TEST_F(ContentGeneratorBase, ATurnedPictureIsTurnedBeforeItIsFitted)
{
    Gallery().AddPicture(fixture.WritePicture(QStringLiteral("a.png"), QSize(40, 30)));
    Gallery().RotatePicture(0, true);
    generator.makesImages = true;
    Picture({.id = "photo1", .href = "", .height = "20", .width = "20"});
    ASSERT_EQ(generator.requests.size(), 1u);
    EXPECT_EQ(ExtractLastName(generator.requests[0].resultPath), QStringLiteral("a_r12020.png"));
    EXPECT_EQ(CImage::FromFile(generator.requests[0].resultPath).GetSize(), QSize(15, 20));
}

TEST_F(ContentGeneratorBase, AnImageIsMadeOnlyWhenItsFileIsMissing)
{
    const QString source = fixture.WritePicture(QStringLiteral("a.jpg"), QSize(40, 30));
    auto chain = std::make_shared<CImageEffectCompound>();
    chain->Add(std::make_shared<CImageEffectRename>());
    chain->Add(std::make_shared<CImageEffectResize>(QSize(20, 20), CImageEffectResize::Options{}));
    generator.makesImages = true;
    const QString result = generator.GetImageName(source, chain);
    EXPECT_EQ(result, fixture.scratch.Path(QStringLiteral("images/a2020.jpg")));
    EXPECT_EQ(CImage::FromFile(result).GetSize(), QSize(20, 15));
    EXPECT_EQ(generator.GetImageName(source, chain), result);
    EXPECT_EQ(generator.requests.size(), 1u);
}

TEST_F(ContentGeneratorBase, AnImageThatCannotBeReadFailsWithItsPath)
{
    const QString source = fixture.scratch.Write(QStringLiteral("photos/text.jpg"), "no picture");
    generator.makesImages = true;
    try {
        generator.GetImageName(source, std::make_shared<CImageEffectRename>());
        FAIL();
    } catch (const CExceptionBase& error) {
        EXPECT_TRUE(error.GetDescription().contains(source)) << qPrintable(error.GetDescription());
    }
}

TEST_F(ContentGeneratorBase, ImagesOfTheViewsGoToTheirCache)
{
    qputenv("XDG_CACHE_HOME", fixture.scratch.Path(QStringLiteral("cache")).toUtf8());
    generator.imageFolder.clear();
    const auto rename = std::make_shared<CImageEffectRename>();
    const QString one = generator.GetImageName(QStringLiteral("/x/Summer/a.jpg"), rename);
    EXPECT_EQ(ExtractFolder(one), FindImageCacheFolder() + QLatin1Char('/'));
    // Two folders of the same last name.
    EXPECT_NE(generator.GetImageName(QStringLiteral("/y/Summer/a.jpg"), rename), one);
    EXPECT_EQ(generator.GetImageUrl(QStringLiteral("/x/a.jpg")), QStringLiteral("/x/a.jpg"));
    qunsetenv("XDG_CACHE_HOME");
}

TEST_F(ContentGeneratorBase, ATextSpanShowsItsTextOrItsDefault)
{
    const struct {
        const char* value; // null: no value
        int maxChars;
        const char* expected;
    } rows[] = {
        {"abcd", 3, "abc..."},
        {"abc", 3, "abc"},
        {"abcd", 0, "abcd"},
        {"abcd", -1, "..."},
        {"<b>a</br>b</b>", 0, "<b>a</br>b</b>"},
        {"", 0, "none"},
        {nullptr, 0, "none"},
        {"   ", 0, "&nbsp&nbsp&nbsp"},
        {"   ", 2, "  ..."},
        {"\xc3\xa4\xc3\xb6\xc3\xbc", 2, "\xc3\xa4\xc3\xb6..."},
        {"a\xf0\x9f\x8c\x84", 2, "a..."},
    };
    for (const auto& row : rows) {
        SetVariable("title", row.value ? CVariant(QString::fromUtf8(row.value)) : CVariant());
        EXPECT_EQ(Span({.name = "Title",
                        .property = "gallery.title",
                        .defaultText = "none",
                        .maxChars = row.maxChars}),
                  std::string("<span id=\"gallery_title\">") + row.expected + "</span>")
            << (row.value ? row.value : "no value");
    }
}

TEST_F(ContentGeneratorBase, ATextSpanOfAnUnknownObjectOrPictureShowsItsDefault)
{
    EXPECT_EQ(Span({.name = "", .property = "nobody.title", .defaultText = "none"}),
              "<span id=\"nobody_title\">none</span>");
    // Bound, but the gallery has no picture.
    EXPECT_EQ(Span({.name = "", .property = "photo1.title", .defaultText = "none"}),
              "<span id=\"photo1_title\">none</span>");
}

TEST_F(ContentGeneratorBase, ATextSpanNeedsAPropertyWithAPoint)
{
    EXPECT_THROW(Span({.name = "", .property = "title", .defaultText = ""}), CTemplateParsingException);
}

TEST_F(ContentGeneratorBase, AnImageReferenceTakesItsTextsFromProperties)
{
    const ImageReferenceAttributes reference{.id = "logo",
                                             .name = "Logo",
                                             .src = "logo.png",
                                             .hrefProperty = "gallery.logo_href",
                                             .defaultHref = "http://example.org/",
                                             .altProperty = "gallery.logo_alt",
                                             .defaultAlt = "Home"};
    std::ostringstream missing;
    generator.GenerateImageReference(Iterator(), reference, missing);
    EXPECT_EQ(missing.str(), "<a href=\"http://example.org/\"><img src=\"logo.png\" alt=\"Home\" /></a>");

    SetVariable("logo_href", QStringLiteral("index.html"));
    SetVariable("logo_alt", QString(QStringLiteral("")));
    std::ostringstream given;
    generator.GenerateImageReference(Iterator(), reference, given);
    // An empty string is a value and wins over the default, unlike in a text span.
    EXPECT_EQ(given.str(), "<a href=\"index.html\"><img src=\"logo.png\" alt=\"\" /></a>");
}

TEST_F(ContentGeneratorBase, ATextReferenceTakesItsTextsFromProperties)
{
    const TextReferenceAttributes reference{.id = "home",
                                            .name = "Home",
                                            .hrefProperty = "gallery.home_href",
                                            .defaultHref = "index.html",
                                            .text = "gallery.home_text",
                                            .defaultText = "Home"};
    std::ostringstream missing;
    generator.GenerateTextReference(Iterator(), reference, missing);
    EXPECT_EQ(missing.str(), "<a href=\"index.html\"  >Home</a>");

    SetVariable("home_href", QStringLiteral("../"));
    SetVariable("home_text", CVariant(7));
    std::ostringstream given;
    generator.GenerateTextReference(Iterator(), reference, given);
    EXPECT_EQ(given.str(), "<a href=\"../\"  >7</a>");
}

TEST_F(ContentGeneratorBase, TheHooksStandBeforeEachElementAndInItsTag)
{
    Gallery().AddPicture(fixture.WritePicture(QStringLiteral("a.jpg")));
    generator.showsHooks = true;
    const std::string html = Picture({.id = "photo1", .href = "", .height = "15", .width = "20"});
    EXPECT_NE(html.find("height=\"15\" >{before photo1}<a href"), std::string::npos) << html;
    EXPECT_NE(html.find(".jpg\"{in photo1}/></a></div>"), std::string::npos) << html;
    EXPECT_EQ(Span({.name = "Title", .property = "gallery.t", .defaultText = "x"}),
              "{before gallery_t Title}<span id=\"gallery_t\"{in gallery_t}>x</span>");

    std::ostringstream image;
    generator.GenerateImageReference(Iterator(), SampleImageReference(), image);
    EXPECT_EQ(image.str(), "{before i n}<a href=\"d\"><img src=\"s\" alt=\"e\" {in i}/></a>");

    std::ostringstream text;
    generator.GenerateTextReference(Iterator(), SampleTextReference(), text);
    EXPECT_EQ(text.str(), "{before i n}<a href=\"d\" {in i} >e</a>");
}

TEST_F(ContentGeneratorBase, AnAdvertisementIsWrittenAlsoWhenItsBlockIsEmpty)
{
    std::ostringstream out;
    generator.GenerateAdvertisement(Iterator(), "top", out);
    EXPECT_EQ(out.str(), "[ad ]");
}

TEST_F(ContentGeneratorBase, ABannerIsLeftToDeployedPages)
{
    std::ostringstream out;
    generator.GenerateBanner("468", "60", out);
    EXPECT_EQ(out.str(), "");
}

TEST_F(ContentGeneratorBase, AScriptThatDoesNotExistIsAnEmptyElement)
{
    std::ostringstream out;
    generator.WriteResourceScript(QStringLiteral("missing"), out);
    EXPECT_EQ(out.str(), "<script type=\"text/javascript\" ></script>");
}

TEST_F(ContentGeneratorBase, TheSizeOfASourceIsStoredInItsVariables)
{
    Gallery().AddPicture(fixture.WritePicture(QStringLiteral("a.jpg"), QSize(40, 30)));
    EXPECT_EQ(generator.StoreSourceSize(Iterator(), QStringLiteral("photo1")), QSize(40, 30));
    CVariant width;
    CVariant height;
    EXPECT_TRUE(iterator.GetVariable(QStringLiteral("photo1"), QStringLiteral("source_width"), width));
    EXPECT_TRUE(iterator.GetVariable(QStringLiteral("photo1"), QStringLiteral("source_height"), height));
    EXPECT_EQ(width, CVariant(40));
    EXPECT_EQ(height, CVariant(30));
}

TEST_F(ContentGeneratorBase, AReferenceToAnUnknownObjectOrAMissingPictureUsesItsDefaults)
{
    ImageReferenceAttributes image{.id = "i",
                                   .name = "n",
                                   .src = "s",
                                   .hrefProperty = "nobody.h",
                                   .defaultHref = "d",
                                   .altProperty = "photo1.title", // bound, but the gallery has no picture
                                   .defaultAlt = "e"};
    std::ostringstream imageOut;
    generator.GenerateImageReference(Iterator(), image, imageOut);
    EXPECT_EQ(imageOut.str(), "<a href=\"d\"><img src=\"s\" alt=\"e\" /></a>");

    TextReferenceAttributes text{.id = "i",
                                 .name = "n",
                                 .hrefProperty = "photo1.h",
                                 .defaultHref = "d",
                                 .text = "nobody.t",
                                 .defaultText = "e"};
    std::ostringstream textOut;
    generator.GenerateTextReference(Iterator(), text, textOut);
    EXPECT_EQ(textOut.str(), "<a href=\"d\"  >e</a>");

    std::ostringstream out;
    image.altProperty = "nopoint";
    EXPECT_THROW(generator.GenerateImageReference(Iterator(), image, out), CTemplateParsingException);
    image.altProperty = "gallery.a";
    image.hrefProperty = "nopoint";
    EXPECT_THROW(generator.GenerateImageReference(Iterator(), image, out), CTemplateParsingException);
    text.text = "nopoint";
    EXPECT_THROW(generator.GenerateTextReference(Iterator(), text, out), CTemplateParsingException);
    text.text = "gallery.t";
    text.hrefProperty = "";
    EXPECT_THROW(generator.GenerateTextReference(Iterator(), text, out), CTemplateParsingException);
}

TEST_F(ContentGeneratorBase, ATextSpanShowsANumberAsItsText)
{
    SetVariable("count", CVariant(12345));
    EXPECT_EQ(Span({.name = "", .property = "gallery.count", .defaultText = "none"}),
              "<span id=\"gallery_count\">12345</span>");
    EXPECT_EQ(Span({.name = "", .property = "gallery.count", .defaultText = "none", .maxChars = 3}),
              "<span id=\"gallery_count\">123...</span>");
    SetVariable("share", CVariant::Real(0.0));
    EXPECT_EQ(Span({.name = "", .property = "gallery.share", .defaultText = "none"}),
              "<span id=\"gallery_share\">0</span>");
}
