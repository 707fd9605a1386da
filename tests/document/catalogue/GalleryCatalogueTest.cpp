#include "document/catalogue/GalleryCatalogue.h"

#include <QFile>

#include "TestProject.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "template/parser/TemplateParsingException.h"

namespace {

template <class Map>
QStringList FoldersOfKeys(const Map& map, const CTestProject& test)
{
    QStringList keys;
    for (const auto& entry : map) {
        keys += QString(entry.first).remove(Lower(test.Path(QString())));
    }
    return keys;
}

} // namespace

TEST(Catalogue, DefinitionsBesideTheProjectAndBesideTheProgramLieSideBySide)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"i.html\"/>");
    test.AddStyle(QStringLiteral("s"));
    const QByteArray own = "<template name=\"own\" folder=\".\"><page file=\"i.html\"/></template>";
    test.scratch.Write(QStringLiteral("site/Templates/a.xml"), own);
    test.scratch.Write(QStringLiteral("site/Styles/s.xml"), "<style name=\"own\"/>");
    test.LoadXml("<project/>");
    auto& templates = test.project.GetCatalogue().GetTemplates();
    EXPECT_EQ(FoldersOfKeys(templates, test), (QStringList{QStringLiteral("program/templates/a.xml"),
                                                           QStringLiteral("site/templates/a.xml")}));
    EXPECT_EQ(FoldersOfKeys(test.project.GetCatalogue().GetStyles(), test),
              (QStringList{QStringLiteral("program/styles/s.xml"), QStringLiteral("site/styles/s.xml")}));
    test.AddPage(QStringLiteral("a"), QStringLiteral("i.html"), 1);
    test.scratch.Write(QStringLiteral("site/Templates/i.html"), "");
    // By key the one that is named, by file name the first in key order.
    CGallery& gallery = *test.project.GetRootGallery();
    gallery.SetTemplate(Lower(test.Path(QStringLiteral("site/Templates/a.xml"))));
    EXPECT_EQ(gallery.GetLayout().GetTemplate()->GetName(), QStringLiteral("own"));
    gallery.SetTemplate(QStringLiteral("D:\\elsewhere\\A.XML"));
    EXPECT_EQ(gallery.GetLayout().GetTemplate()->GetName(), QStringLiteral("Layout a"));
}

TEST(Catalogue, ADefinitionThatIsThereAlreadyIsNotReadAgain)
{
    CTestProject test;
    const QString key = test.AddLayout(QStringLiteral("a"), "<page file=\"i.html\"/>");
    test.project.LoadTemplates();
    const CGalleryTemplate* const first = &test.project.FindTemplate(key);
    test.AddLayout(QStringLiteral("a"), "<page file=\"other.html\"/>");
    test.project.LoadTemplates();
    EXPECT_EQ(&test.project.FindTemplate(key), first);
    EXPECT_TRUE(first->HasPage(QStringLiteral("i.html")));
}

TEST(Catalogue, FindTemplateFallsBackToTheFirstLayout)
{
    CTestProject test;
    EXPECT_EQ(TextsOf<CUnexpectedException>([&] { test.project.FindTemplate(QStringLiteral("k.xml")); }),
              QStringLiteral("Unexpected error occured.\nSource file: GalleryProject(317)|Template could not "
                             "be found k.xml|Please send detailed information to customer support service."));
    test.AddLayout(QStringLiteral("b"), "<page file=\"i.html\"/>");
    test.AddLayout(QStringLiteral("a"), "<page file=\"i.html\"/>");
    test.project.LoadTemplates();
    EXPECT_EQ(test.project.FindTemplate(QStringLiteral("k.xml")).GetName(), QStringLiteral("Layout a"));
    const QString b = Lower(test.Path(QStringLiteral("program/Templates/b.xml")));
    EXPECT_EQ(test.project.FindTemplate(b).GetName(), QStringLiteral("Layout b"));
    EXPECT_EQ(test.project.FindTemplate(b.toUpper()).GetName(), QStringLiteral("Layout a")); // keys are exact
}

TEST(Catalogue, OneBadDefinitionKeepsAProjectFromOpening)
{
    const struct {
        const char* path;
        const char* bytes;
    } rows[] = {
        {"program/Templates/bad.xml", "<template"},
        {"program/Templates/bad.xml", ""},
        {"program/Templates/bad.xml", "<layout/>"},
        {"program/Styles/bad.xml", "<style>"},
        {"program/Styles/bad.xml", "<style default=\"yes\"/>"},
        {"program/Templates/bad.xml", "<template><page file=\"a.html\" multipage=\"many\"/></template>"},
        {"site/Styles/bad.xml", "no xml at all"},
    };
    for (const auto& row : rows) {
        CTestProject test;
        test.AddStandard();
        test.scratch.Write(QString::fromUtf8(row.path), row.bytes);
        const QByteArray xml = "<project/>";
        test.scratch.Write(QStringLiteral("site/My.gallery"), xml);
        EXPECT_THROW(test.project.Open(test.ProjectPath()), CExceptionBase) << row.bytes;
        EXPECT_FALSE(test.project.IsLoaded());
        test.project.Save(test.ProjectPath());
        EXPECT_EQ(test.scratch.Read(QStringLiteral("site/My.gallery")), xml);
    }
}

TEST(Catalogue, ANewGalleryTakesTheFirstLayoutAndTheFirstDefaultStyle)
{
    const struct {
        const char* defaults; // names of the styles that are marked
        const char* expected;
    } rows[] = {{"", "Style a"}, {"b", "Style b"}, {"bc", "Style b"}, {"c", "Style c"}};
    for (const auto& row : rows) {
        CTestProject test;
        test.AddLayout(QStringLiteral("z"), "<page file=\"i.html\"/>");
        test.AddLayout(QStringLiteral("y"), "<page file=\"i.html\"/>");
        for (const char name : {'a', 'b', 'c'}) {
            const bool marked = QByteArray(row.defaults).contains(name);
            test.AddStyle(QString(QLatin1Char(name)), marked ? "default=\"1\"" : "default=\"0\"");
        }
        const CGallery& gallery = test.NewGallery();
        EXPECT_EQ(gallery.GetLayout().GetStyle()->name, QString::fromUtf8(row.expected));
        EXPECT_EQ(gallery.GetLayout().GetTemplate()->GetName(), QStringLiteral("Layout y"));
        EXPECT_TRUE(gallery.GetLayout().GetTemplatePage().isEmpty());
    }
}

TEST(Catalogue, WithoutLayoutsAndStylesAProjectOpensAllTheSame)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    EXPECT_EQ(gallery.GetLayout().GetTemplate(), nullptr);
    EXPECT_EQ(gallery.GetLayout().GetStyle(), nullptr);
    gallery.SetTemplate(QStringLiteral("a.xml"));
    gallery.SetStyle(QStringLiteral("a.xml"));
    gallery.SelectMultipageTemplate();
    gallery.SetCurrentPicture(3);
    EXPECT_EQ(gallery.GetLayout().GetPageNumber(), 0);
    EXPECT_TRUE(gallery.GetLayout().GetPageStyles().empty());
}
