#include "document/content/GalleryLayout.h"

#include <QFile>

#include "TestProject.h"
#include "common/Exceptions.h"
#include "template/parser/TemplateParsingException.h"

namespace {

QString PageOf(const CGallery& gallery)
{
    const CGalleryLayout& layout = gallery.GetLayout();
    return QStringLiteral("%1|%2|%3")
        .arg(layout.GetTemplatePage(), layout.GetPageBaseName(), layout.GetPageExtension());
}

// Layouts "first" and "second" with one page each, of so many places.
void AddTwoLayouts(CTestProject& test, int firstSlots, int secondSlots)
{
    test.AddLayout(QStringLiteral("first"), "<page file=\"one.html\"/>");
    test.AddPage(QStringLiteral("first"), QStringLiteral("one.html"), firstSlots);
    test.AddLayout(QStringLiteral("second"), "<page file=\"two.html\"/>");
    test.AddPage(QStringLiteral("second"), QStringLiteral("two.html"), secondSlots);
}

} // namespace

TEST(GalleryLayout, APageNameIsCutAtItsFirstDot)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    EXPECT_TRUE(gallery.SetTemplatePage(QStringLiteral("a.b.html")));
    EXPECT_EQ(PageOf(gallery), QStringLiteral("a.b.html|a|.b.html"));
    EXPECT_FALSE(gallery.SetTemplatePage(QStringLiteral("a.b.html")));
    EXPECT_TRUE(gallery.SetTemplatePage(QStringLiteral("A.b.html")));
}

TEST(GalleryLayout, APageNameWithoutDotIsAnErrorAndThePageStays)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    gallery.SetTemplatePage(QStringLiteral("a.html"));
    EXPECT_EQ(
        TextsOf<CTemplateParsingException>([&] { gallery.SetTemplatePage(QStringLiteral("page")); }),
        QStringLiteral("Template parsing error occured.|Invalid template page file name 'page'. The name "
                       "of a page needs an extension.|Please contact template developer."));
    EXPECT_THROW(gallery.SetTemplatePage(QString()), CTemplateParsingException);
    EXPECT_THROW(gallery.SetTemplatePage(QStringLiteral("")), CTemplateParsingException);
    EXPECT_EQ(PageOf(gallery), QStringLiteral("a.html|a|.html"));
    gallery.GetLayout().RestoreTemplatePage(QString());
    EXPECT_EQ(PageOf(gallery), QStringLiteral("||"));
    EXPECT_THROW(gallery.SetTemplatePage(QString()), CTemplateParsingException);
}

TEST(GalleryLayout, ALayoutIsFoundByKeyThenByFileNameThenTheFirst)
{
    CTestProject test;
    const QString second = test.AddLayout(QStringLiteral("b"), "<page file=\"i.html\"/>");
    test.AddLayout(QStringLiteral("a"), "<page file=\"i.html\"/>");
    test.AddPage(QStringLiteral("a"), QStringLiteral("i.html"), 1);
    test.AddPage(QStringLiteral("b"), QStringLiteral("i.html"), 1);
    CGallery& gallery = test.NewGallery();
    const struct {
        QString path;
        const char* expected;
    } rows[] = {
        {second, "Layout b"},
        {QStringLiteral("c:\\old\\A.xml"), "Layout a"},
        {QStringLiteral("/old/B.XML"), "Layout b"},
        {QStringLiteral("/old/gone.xml"), "Layout a"},
        {QString(), "Layout a"},
    };
    for (const auto& row : rows) {
        gallery.SetTemplate(row.path);
        EXPECT_EQ(gallery.GetLayout().GetTemplate()->GetName(), QString::fromUtf8(row.expected))
            << qPrintable(row.path);
    }
}

TEST(GalleryLayout, ANewLayoutKeepsThePageOfTheSameNameElseTakesItsFirstPage)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"one.html\"/><page file=\"common.html\"/>");
    test.AddLayout(QStringLiteral("b"), "<page file=\"two.html\"/><page file=\"common.html\"/>");
    for (const char* page : {"one.html", "common.html"}) {
        test.AddPage(QStringLiteral("a"), QString::fromUtf8(page), 1);
        test.AddPage(QStringLiteral("b"), QString::fromUtf8(page), 1);
    }
    test.AddPage(QStringLiteral("b"), QStringLiteral("two.html"), 1);
    CGallery& gallery = test.NewGallery();
    gallery.SetTemplatePage(QStringLiteral("common.html"));
    gallery.SetTemplate(QStringLiteral("b.xml"));
    EXPECT_EQ(gallery.GetLayout().GetTemplatePage(), QStringLiteral("common.html"));
    gallery.SetTemplatePage(QStringLiteral("two.html"));
    gallery.SetTemplate(QStringLiteral("a.xml"));
    EXPECT_EQ(PageOf(gallery), QStringLiteral("one.html|one|.html"));
}

TEST(GalleryLayout, ANewLayoutKeepsThePictureOnScreen)
{
    const struct {
        int oldPerPage;
        int oldPage;
        int newPerPage;
        int expected;
    } rows[] = {
        {10, 2, 5, 4}, {5, 4, 10, 2}, {10, 0, 5, 0}, {3, 1, 2, 2}, {1, 1, 3, 0},
        {1, 2, 3, 1},  {2, 1, 4, 1},  {4, 7, 0, 7},  {0, 7, 4, 0}, {5, 2000000000, 1, 2147483647},
    };
    for (const auto& row : rows) {
        CTestProject test;
        AddTwoLayouts(test, row.oldPerPage, row.newPerPage);
        CGallery& gallery = test.NewGallery();
        gallery.SetTemplatePage(QStringLiteral("one.html"));
        gallery.GetLayout().SetPageNumber(row.oldPage);
        gallery.SetTemplate(QStringLiteral("second.xml"));
        EXPECT_EQ(gallery.GetLayout().GetPageNumber(), row.expected)
            << row.oldPerPage << " " << row.oldPage << " " << row.newPerPage;
    }
}

TEST(GalleryLayout, WithoutAnOldPageTheNewLayoutBeginsAtItsFirst)
{
    CTestProject test;
    AddTwoLayouts(test, 10, 5);
    CGallery& gallery = test.NewGallery();
    gallery.SetTemplatePage(QStringLiteral("unknown.html"));
    gallery.GetLayout().SetPageNumber(2);
    gallery.SetTemplate(QStringLiteral("second.xml"));
    EXPECT_EQ(gallery.GetLayout().GetPageNumber(), 0);
}

TEST(GalleryLayout, ALayoutWhosePageFileIsMissingIsRefusedButCanAlwaysBeLeft)
{
    CTestProject test;
    AddTwoLayouts(test, 2, 2);
    ASSERT_TRUE(QFile::remove(test.Path(QStringLiteral("program/Templates/second/two.html"))));
    CGallery& gallery = test.NewGallery();
    gallery.SetTemplatePage(QStringLiteral("one.html"));
    gallery.GetLayout().SetPageNumber(3);
    EXPECT_THROW(gallery.SetTemplate(QStringLiteral("second.xml")), CFileException);
    EXPECT_EQ(PageOf(gallery), QStringLiteral("one.html|one|.html"));
    EXPECT_EQ(gallery.GetLayout().GetTemplate()->GetName(), QStringLiteral("Layout first"));
    EXPECT_EQ(gallery.GetLayout().GetPageNumber(), 3);

    gallery.GetLayout().RestoreTemplatePage(QString());
    gallery.SetTemplate(QStringLiteral("second.xml"));
    gallery.SetTemplate(QStringLiteral("first.xml"));
    EXPECT_EQ(PageOf(gallery), QStringLiteral("one.html|one|.html"));
    EXPECT_EQ(gallery.GetLayout().GetPageNumber(), 0);
}

TEST(GalleryLayout, ALayoutWithoutPagesLeavesThePageAlone)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"one.html\"/>");
    test.AddPage(QStringLiteral("a"), QStringLiteral("one.html"), 1);
    test.AddLayout(QStringLiteral("none"), "");
    CGallery& gallery = test.NewGallery();
    gallery.SetTemplatePage(QStringLiteral("one.html"));
    gallery.SetTemplate(QStringLiteral("none.xml"));
    EXPECT_EQ(gallery.GetLayout().GetTemplatePage(), QStringLiteral("one.html"));
    EXPECT_TRUE(gallery.AddPicture(test.MakePicture(QStringLiteral("a.jpg"))));
}

TEST(GalleryLayout, AStyleStaysWithThePageThatItWasChosenFor)
{
    CTestProject test;
    const QString a = test.AddStyle(QStringLiteral("a"));
    const QString b = test.AddStyle(QStringLiteral("b"));
    CGallery& gallery = test.NewGallery();
    gallery.SetStyle(b);
    EXPECT_TRUE(gallery.GetLayout().GetPageStyles().empty());
    EXPECT_EQ(gallery.GetLayout().GetStyleKey(), b);
    gallery.SetTemplatePage(QStringLiteral("p.html"));
    gallery.SetStyle(QStringLiteral("/elsewhere/A.xml"));
    EXPECT_EQ(gallery.GetLayout().GetStyleKey(), a);
    EXPECT_EQ(gallery.GetLayout().GetPageStyles(), (std::map<QString, QString>{{QStringLiteral("p"), a}}));
    gallery.SetStyle(QStringLiteral("gone.xml"));
    EXPECT_EQ(gallery.GetLayout().GetStyleKey(), a);
}

TEST(GalleryLayout, TheStylesToDeployAreListedOnceThoseOfPagesFirst)
{
    CTestProject test;
    const QString a = test.AddStyle(QStringLiteral("a"));
    const QString b = test.AddStyle(QStringLiteral("b"));
    test.AddStyle(QStringLiteral("c"));
    test.scratch.Write(QStringLiteral("program/Styles/same.xml"), "<style folder=\"B\"/>");
    CGallery& gallery = test.NewGallery();
    gallery.GetLayout().SetPageStyle(QStringLiteral("1"), b);
    gallery.GetLayout().SetPageStyle(QStringLiteral("2"), QStringLiteral("/gone.xml"));
    gallery.GetLayout().SetPageStyle(QStringLiteral("3"), a);
    gallery.GetLayout().SetPageStyle(QStringLiteral("4"),
                                     Lower(test.Path(QStringLiteral("program/Styles/same.xml"))));
    gallery.SetStyle(QStringLiteral("c.xml"));
    std::vector<QString> expected;
    for (const char* name : {"b", "a", "c", "Common"}) {
        expected.push_back(test.Path(QStringLiteral("program/Styles/") + QString::fromUtf8(name)));
    }
    EXPECT_EQ(gallery.GetStyleDirectories(), expected);
}

TEST(GalleryLayout, TheFirstLayoutWithAMultipagePageIsSelected)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"one.html\"/>");
    test.AddLayout(QStringLiteral("b"), "<page file=\"two.html\"/><page file=\"set.html\" multipage=\"1\"/>");
    test.AddLayout(QStringLiteral("c"), "<page file=\"set.html\" multipage=\"1\"/>");
    CGallery& gallery = test.NewGallery();
    gallery.SelectMultipageTemplate();
    EXPECT_EQ(gallery.GetLayout().GetTemplate()->GetName(), QStringLiteral("Layout b"));
    EXPECT_EQ(gallery.GetLayout().GetTemplatePage(), QStringLiteral("two.html"));
}

TEST(GalleryLayout, WithoutAnyMultipagePageNoLayoutIsSelected)
{
    CTestProject test;
    AddTwoLayouts(test, 1, 1);
    CGallery& gallery = test.NewGallery();
    gallery.SetTemplate(QStringLiteral("second.xml"));
    gallery.SelectMultipageTemplate();
    EXPECT_EQ(gallery.GetLayout().GetTemplate()->GetName(), QStringLiteral("Layout second"));
    EXPECT_EQ(gallery.GetLayout().GetTemplatePage(), QStringLiteral("two.html"));
}
