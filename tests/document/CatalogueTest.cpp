#include <QDir>
#include <QFile>

#include "TestProject.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "document/catalogue/DefinitionFolder.h"
#include "template/parser/CompoundTemplateSection.h"
#include "template/parser/TemplateParsingException.h"

namespace {

QStringList Scanned(const QString& folder)
{
    QStringList names;
    ScanFolder(folder, [&](const QString& path) {
        EXPECT_TRUE(QDir::isAbsolutePath(path));
        names += ExtractLastName(path);
    });
    return names;
}

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

TEST(ScanFolder, FindsDefinitionsInNameOrderWithoutRegardToCase)
{
    CScratchFolder scratch;
    for (const char* name : {"b.XML", "a.xml", "C.Xml", "d.xml.bak", "xml", "._a.xml"}) {
        scratch.Write(QString::fromUtf8(name), "");
    }
    scratch.Write(QStringLiteral("folder.xml/inside.xml"), "");
    EXPECT_EQ(Scanned(scratch.Path().chopped(1)).join(QLatin1Char(' ')), QStringLiteral("a.xml b.XML C.Xml"));
    EXPECT_EQ(Scanned(scratch.Path()).size(), 3);
    EXPECT_TRUE(Scanned(scratch.Path(QStringLiteral("missing"))).isEmpty());
}

TEST(ScanFolder, APathOfMoreThan1024CharactersIsAnError)
{
    CScratchFolder scratch;
    const QString longName(240, QLatin1Char('d'));
    QString folder = scratch.Path();
    while (folder.size() + longName.size() <= 1010) {
        folder += longName + QLatin1Char('/');
    }
    // The full path of the first file has 1024 characters, that of the second one more.
    const QString base(1024 - folder.size() - 4, QLatin1Char('x'));
    scratch.Write(QString(folder + base + QStringLiteral(".xml")).mid(scratch.Path().size()), "");
    EXPECT_EQ(Scanned(folder).size(), 1);
    scratch.Write(QString(folder + base + QStringLiteral("y.xml")).mid(scratch.Path().size()), "");
    EXPECT_EQ(TextsOf<CUnexpectedException>([&] { Scanned(folder); }),
              QStringLiteral("Unexpected error occured.\nSource file: GalleryProject(260)|Buffer "
                             "insufficient.|Please send detailed information to customer support service."));
}

TEST(GalleryTemplate, ReadsItsDefinition)
{
    CScratchFolder scratch;
    const CGalleryTemplate layout(scratch.Write(
        QStringLiteral("Templates/a.xml"),
        R"(<any><template name="N" folder="F" group="G"><page file="i.html"/>)"
        R"(<page file="p.html" multipage="2" add_order="FRONT"/><page multipage="1"/><page file=""/>)"
        R"(<page file="q.html" multipage="0" add_order="back"/><page file="../x.html"/></template></any>)"));
    EXPECT_EQ(layout.GetName(), QStringLiteral("N"));
    EXPECT_EQ(layout.GetGroup(), QStringLiteral("G"));
    EXPECT_EQ(layout.GetFolder(), scratch.Path(QStringLiteral("Templates/F/")));
    QStringList pages;
    for (const CGalleryTemplatePage& page : layout.GetPages()) {
        pages += QStringLiteral("%1 %2 %3 %4")
                     .arg(page.file)
                     .arg(page.multipage)
                     .arg(page.addAtFront)
                     .arg(page.picturesPerPage);
    }
    EXPECT_EQ(pages.join(QLatin1Char(',')), QStringLiteral("i.html 0 0 0,p.html 1 1 0,q.html 0 0 0"));
}

TEST(GalleryTemplate, WithoutAFolderItsFolderStaysEmpty)
{
    CScratchFolder scratch;
    const CGalleryTemplate layout(
        scratch.Write(QStringLiteral("a.xml"), "<template><page file=\"i.html\"/></template>"));
    EXPECT_TRUE(layout.GetFolder().isEmpty());
    EXPECT_TRUE(layout.GetName().isEmpty());
    EXPECT_EQ(layout.GetPageFilePath(QStringLiteral("i.html")), QStringLiteral("i.html"));
}

TEST(GalleryTemplate, AFolderWithBackslashesIsFoundHereToo)
{
    CScratchFolder scratch;
    const CGalleryTemplate layout(scratch.Write(
        QStringLiteral("a.xml"), "<template folder=\"x\\y\\\"><page file=\"i.html\"/></template>"));
    EXPECT_EQ(layout.GetFolder(), scratch.Path(QStringLiteral("x/y/")));
}

TEST(GalleryTemplate, PagesCompareExactlyAndAMissGivesTheFirstPage)
{
    CScratchFolder scratch;
    const CGalleryTemplate layout(
        scratch.Write(QStringLiteral("a.xml"),
                      R"(<template folder="F"><page file="i.html"/><page file="p.html"/></template>)"));
    EXPECT_TRUE(layout.HasPage(QStringLiteral("p.html")));
    EXPECT_FALSE(layout.HasPage(QStringLiteral("P.html")));
    EXPECT_FALSE(layout.HasPage(QString()));
    EXPECT_EQ(layout.GetPage(QStringLiteral("p.html")).file, QStringLiteral("p.html"));
    EXPECT_EQ(layout.GetPage(QStringLiteral("P.html")).file, QStringLiteral("i.html"));
    EXPECT_EQ(layout.GetPage(QString()).file, QStringLiteral("i.html"));
    EXPECT_EQ(layout.GetPageFilePath(QStringLiteral("none")), scratch.Path(QStringLiteral("F/i.html")));
}

TEST(GalleryTemplate, AskingALayoutWithoutPagesForAPageIsAnError)
{
    CScratchFolder scratch;
    const CGalleryTemplate layout(scratch.Write(QStringLiteral("a.xml"), "<template folder=\"F\"/>"));
    EXPECT_EQ(TextsOf<CGenericException>([&] { layout.GetPage(QStringLiteral("p.html")); }),
              QStringLiteral("Could not access template.|Required template kind p.html was not find.|Please "
                             "contact template developer."));
}

TEST(GalleryTemplate, APageFileThatIsNoFileIsAnErrorThatNamesIt)
{
    CScratchFolder scratch;
    const CGalleryTemplate layout(scratch.Write(
        QStringLiteral("a.xml"),
        R"(<template folder="F"><page file="missing.html"/><page file="folder.html"/></template>)"));
    scratch.Write(QStringLiteral("F/folder.html/x"), "");
    for (const char* name : {"missing.html", "folder.html"}) {
        CCompoundTemplateSection tree;
        const QString file = QString::fromUtf8(name);
        EXPECT_EQ(
            TextsOf<CFileException>([&] { layout.LoadPage(file, tree); }),
            QStringLiteral("Could not open file %1.|Probably the file does not exist.|Please inform your "
                           "gallery template developer.")
                .arg(scratch.Path(QStringLiteral("F/") + file)));
    }
}

TEST(Definitions, WithoutTheirElementAreAnErrorThatNamesIt)
{
    CScratchFolder scratch;
    const QString path = scratch.Write(QStringLiteral("a.xml"), "<other/>");
    const auto texts = [](const char* tag) {
        return QStringLiteral("Template parsing error occured.|Could not find template element '%1'.|Please "
                              "contact template developer.")
            .arg(QString::fromUtf8(tag));
    };
    EXPECT_EQ(TextsOf<CTemplateParsingException>([&] { CGalleryTemplate layout(path); }), texts("template"));
    EXPECT_EQ(TextsOf<CTemplateParsingException>([&] { CGalleryStyle style(path); }), texts("style"));
}

TEST(GalleryStyle, ReadsItsDefinition)
{
    CScratchFolder scratch;
    const CGalleryStyle style(scratch.Write(
        QStringLiteral("Styles/s.xml"), R"(<style css="c.css" name="N" folder="F" group="G" default="3"/>)"));
    EXPECT_EQ(style.css, QStringLiteral("c.css"));
    EXPECT_EQ(style.name, QStringLiteral("N"));
    EXPECT_EQ(style.folder, QStringLiteral("F"));
    EXPECT_EQ(style.directory, scratch.Path(QStringLiteral("Styles/F")));
    EXPECT_EQ(style.group, QStringLiteral("G"));
    EXPECT_TRUE(style.isDefault);
    EXPECT_FALSE(CGalleryStyle(scratch.Write(QStringLiteral("t.xml"), "<style default=\"0\"/>")).isDefault);
    EXPECT_FALSE(CGalleryStyle(scratch.Write(QStringLiteral("u.xml"), "<style/>")).isDefault);
}

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
