#include "document/catalogue/Definitions.h"

#include <QDir>
#include <QFile>

#include "TestProject.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
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

TEST(GalleryStyle, OnlyAFolderBelowTheDefinitionIsItsOwn)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("Styles/Blue/Main.css"), "");
    const struct {
        const char* folder;
        const char* directory; // below Styles; null for none
        const char* published;
    } rows[] = {
        {"Blue", "Blue", "Blue"},
        {"Blue/", "Blue", "Blue/"},
        {"Missing", "Missing", "Missing"},
        {"BLUE", "Blue", "Blue"},
        {"", nullptr, ""},
        {".", nullptr, "."},
        {"..", nullptr, ".."},
        {"Blue/..", nullptr, "Blue/.."},
        {"../Styles", nullptr, "../Styles"},
        {"..\\x", nullptr, "..\\x"},
        {"/etc", nullptr, "/etc"},
    };
    for (const auto& row : rows) {
        const CGalleryStyle style(
            scratch.Write(QStringLiteral("Styles/s.xml"),
                          QByteArray("<style css=\"main.CSS\" folder=\"") + row.folder + "\"/>"));
        EXPECT_EQ(style.directory,
                  row.directory ? scratch.Path(QStringLiteral("Styles/%1").arg(row.directory)) : QString())
            << row.folder;
        EXPECT_EQ(style.folder, QString::fromUtf8(row.published)) << row.folder;
        if (style.directory.endsWith(QStringLiteral("Blue"))) {
            EXPECT_EQ(style.css, QStringLiteral("Main.css"));
        }
    }
}

TEST(GalleryTemplate, APageOutsideOfTheDefinitionsFolderIsMissingAndOneInOtherCapitalsIsFound)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("secret.html"), "secret");
    scratch.Write(QStringLiteral("Templates/F/Index.html"), "x");
    QFile::link(scratch.Path(QStringLiteral("secret.html")),
                scratch.Path(QStringLiteral("Templates/F/link.html")));
    const CGalleryTemplate layout(scratch.Write(
        QStringLiteral("Templates/a.xml"),
        R"(<template folder="f"><page file="index.html"/><page file="link.html"/></template>)"));
    CCompoundTemplateSection tree;
    EXPECT_NO_THROW(layout.LoadPage(QStringLiteral("index.html"), tree));
    EXPECT_EQ(layout.GetPageFilePath(QStringLiteral("index.html")),
              scratch.Path(QStringLiteral("Templates/F/Index.html")));
    EXPECT_THROW(layout.LoadPage(QStringLiteral("link.html"), tree), CFileException);
    const CGalleryTemplate outside(scratch.Write(
        QStringLiteral("Templates/b.xml"), R"(<template folder=".."><page file="secret.html"/></template>)"));
    EXPECT_THROW(outside.LoadPage(QStringLiteral("secret.html"), tree), CFileException);
}
