#include "document/Gallery.h"

#include <QFile>

#include "TestProject.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "document/GalleryIterator.h"
#include "document/GalleryPictureInfo.h"
#include "template/TemplateParsingException.h"

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
    gallery.GetLayout().ClearTemplatePage();
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

    gallery.GetLayout().ClearTemplatePage();
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
    EXPECT_NE(gallery.AddPicture(test.MakePicture(QStringLiteral("a.jpg"))), nullptr);
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

TEST(PicturesPerPage, AreCountedOnceForEachPage)
{
    CTestProject test;
    test.AddStandard();
    CGallery& gallery = test.NewGallery();
    CGalleryTemplate& layout = *gallery.GetLayout().GetTemplate();
    EXPECT_EQ(gallery.GetPicturesPerPage(layout, QStringLiteral("index.html")), 4);
    test.AddPage(QStringLiteral("plain"), QStringLiteral("index.html"), 7);
    EXPECT_EQ(gallery.GetPicturesPerPage(layout, QStringLiteral("index.html")), 4);
    EXPECT_EQ(gallery.GetPicturesPerPage(layout, QStringLiteral("picture.html")), 1);
    EXPECT_EQ(gallery.GetPicturesPerPage(layout, QStringLiteral("unknown.html")), 4);
}

TEST(PicturesPerPage, OfABrokenPageAreNoneUntilItIsMended)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"p.html\"/>");
    test.AddPageText(QStringLiteral("a"), QStringLiteral("p.html"), "<%nonsense%>");
    CGallery& gallery = test.NewGallery();
    CGalleryTemplate& layout = *gallery.GetLayout().GetTemplate();
    EXPECT_EQ(gallery.GetPicturesPerPage(layout, QStringLiteral("p.html")), 0);
    test.AddPage(QStringLiteral("a"), QStringLiteral("p.html"), 2);
    EXPECT_EQ(gallery.GetPicturesPerPage(layout, QStringLiteral("p.html")), 2);
}

TEST(PicturesPerPage, OfAMissingPageFileAreAnError)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"p.html\"/>");
    CGallery& gallery = test.NewGallery();
    CGalleryTemplate& layout = *gallery.GetLayout().GetTemplate();
    EXPECT_THROW(gallery.GetPicturesPerPage(layout, QStringLiteral("p.html")), CFileException);
    test.AddPage(QStringLiteral("a"), QStringLiteral("p.html"), 2);
    EXPECT_EQ(gallery.GetPicturesPerPage(layout, QStringLiteral("p.html")), 2);
}

TEST(PicturesPerPage, APageThatAsksForItsOwnCountIsCountedAllTheSame)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"p.html\"/>");
    test.AddPageText(QStringLiteral("a"), QStringLiteral("p.html"),
                     "<%picture id=\"a\" image_reference=\"1\" width=\"1\" height=\"1\" href=\"\"%>"
                     "<%picture id=\"b<%=a.#p.html%>\" width=\"1\" height=\"1\" href=\"\"%>");
    CGallery& gallery = test.NewGallery(3);
    EXPECT_EQ(gallery.GetPicturesPerPage(*gallery.GetLayout().GetTemplate(), QStringLiteral("p.html")), 1);
}

TEST(PicturesPerPage, LeadToThePageOfAPicture)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"four.html\"/><page file=\"none.html\"/>");
    test.AddPage(QStringLiteral("a"), QStringLiteral("four.html"), 4);
    test.AddPage(QStringLiteral("a"), QStringLiteral("none.html"), 0);
    CGallery& gallery = test.NewGallery();
    for (const auto& [position, page] : std::map<int, int>{{0, 0}, {3, 0}, {4, 1}, {11, 2}, {-4, 0}}) {
        gallery.SetCurrentPicture(position);
        EXPECT_EQ(gallery.GetLayout().GetPageNumber(), page) << position;
    }
    gallery.SetTemplatePage(QStringLiteral("none.html"));
    gallery.GetLayout().SetPageNumber(5);
    gallery.SetCurrentPicture(11);
    EXPECT_EQ(gallery.GetLayout().GetPageNumber(), 0);
}

TEST(GalleryPictures, AreAddedByTheOrderOfTheCurrentPage)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"),
                   "<page file=\"end.html\"/><page file=\"front.html\" add_order=\"Front\"/>");
    CGallery& gallery = test.NewGallery(2);
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("1.jpg 2.jpg"));
    gallery.SetTemplatePage(QStringLiteral("front.html"));
    gallery.AddPicture(test.MakePicture(QStringLiteral("3.jpg")));
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("3.jpg 1.jpg 2.jpg"));
    gallery.AddPicture(test.Path(QStringLiteral("pictures/2.JPG")));
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("3.jpg 1.jpg 2.JPG"));
    EXPECT_EQ(gallery.GetPictures().GetAt(0)->GetAngle(), 0);
}

TEST(GalleryPictures, MoveBySwapping)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(3);
    gallery.MovePicture(0, 2);
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("3.jpg 2.jpg 1.jpg"));
    gallery.MovePicture(1, 3);
    gallery.MovePicture(-1, 1);
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("3.jpg 2.jpg 1.jpg"));
}

TEST(GalleryPictures, TurnByQuartersAndWrap)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(1);
    const CPictureInfo& picture = *gallery.GetPictures().GetAt(0);
    for (const int expected : {1, 2, 3, 0}) {
        gallery.RotatePicture(0, true);
        EXPECT_EQ(picture.GetAngle(), expected);
    }
    for (const int expected : {3, 2, 1, 0}) {
        gallery.RotatePicture(0, false);
        EXPECT_EQ(picture.GetAngle(), expected);
    }
    gallery.RotatePicture(1, true);
    gallery.RotatePicture(-1, true);
}

TEST(GalleryPictures, APlainPictureLeavesTheListAChildLeavesTheProject)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(2);
    const int32_t child = test.project.AddChildGallery(-1);
    gallery.RemovePicture(0);
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("2.jpg <1>"));
    gallery.RemovePicture(1);
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("2.jpg"));
    EXPECT_EQ(test.project.FindGallery(child), nullptr);
    gallery.RemovePicture(1);
    EXPECT_EQ(gallery.GetPictures().GetCount(), 1);
}

TEST(GalleryPictures, APictureBecomesAGalleryAtItsPlaceOnAFrontPageAndAtTheEndElsewhere)
{
    const struct {
        const char* page;
        const char* expected;
    } rows[] = {{"end.html", "1.jpg 3.jpg <1>"}, {"front.html", "1.jpg <1> 3.jpg"}};
    for (const auto& row : rows) {
        CTestProject test;
        test.AddLayout(QStringLiteral("a"),
                       "<page file=\"end.html\"/><page file=\"front.html\" add_order=\"front\"/>");
        CGallery& gallery = test.NewGallery(3);
        gallery.GetPictures().GetAt(1)->SetVariable(QStringLiteral("title"), CVariant(QStringLiteral("t")));
        gallery.SetTemplatePage(QString::fromUtf8(row.page));
        gallery.MakeChildFromPicture(1);
        EXPECT_EQ(CTestProject::Entries(gallery), QString::fromUtf8(row.expected));
        CGallery& child = *test.project.FindGallery(1);
        EXPECT_EQ(CTestProject::Entries(child), QStringLiteral("2.jpg"));
        CVariant title;
        EXPECT_TRUE(child.GetPictures().GetAt(0)->GetVariable(QStringLiteral("title"), title));
        EXPECT_EQ(child.GetParent(), &gallery);
        EXPECT_EQ(test.project.GetCurrentGalleryIndex(), 0);
    }
}

TEST(GalleryPictures, OnlyAPlainPictureBecomesAGallery)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    test.project.AddChildGallery(-1);
    gallery.MakeChildFromPicture(0);
    gallery.MakeChildFromPicture(1);
    gallery.MakeChildFromPicture(-1);
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("<1>"));
    EXPECT_EQ(test.project.GetGalleries().size(), 2u);
}

TEST(GalleryCover, IsMadeWhenItIsFirstAskedForAndNotBefore)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(1);
    test.project.AddChildGallery(-1);
    const QString folder = ExtractLastName(test.tempFolder.GetPath().chopped(1));
    const QString expected = test.tempFolder.GetPath() + QStringLiteral("vsm1.png");
    EXPECT_EQ(test.project.FindGallery(1)->GetCoverName(), expected);
    EXPECT_FALSE(FileExists(expected));

    test.scratch.Write(folder + QStringLiteral("/vsm1.png"), "left over");
    EXPECT_EQ(gallery.GetPictures().GetAt(1)->GetPath(), expected);
    EXPECT_TRUE(test.scratch.Read(folder + QStringLiteral("/vsm1.png")).startsWith("\x89PNG"));
    EXPECT_FALSE(FileExists(test.tempFolder.GetPath() + QStringLiteral("vsm0.png")));
    EXPECT_EQ(gallery.GetCoverPath(), test.tempFolder.GetPath() + QStringLiteral("vsm0.png"));
    EXPECT_TRUE(FileExists(test.tempFolder.GetPath() + QStringLiteral("vsm0.png")));
}

TEST(GalleryCover, AChildIsListedUnderThePathOfItsCover)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(1);
    test.project.AddChildGallery(-1);
    const QString cover = test.project.FindGallery(1)->GetCoverName();
    EXPECT_EQ(gallery.GetPictures().Find(cover), 1);
    gallery.OnChildCoverChanged(cover);
    gallery.OnChildCoverChanged(QStringLiteral("unknown"));
    EXPECT_EQ(gallery.GetPictures().Find(cover), 1);
}

TEST(GalleryCover, APictureOfACoversPathDoesNotPushTheChildOut)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    test.project.AddChildGallery(-1);
    EXPECT_EQ(gallery.AddPicture(test.project.FindGallery(1)->GetCoverPath()), nullptr);
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("<1>"));
}

TEST(GalleryVisibility, ElementsAreEnteredAsVisibleAndNotedAsSeen)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    gallery.SetTemplatePage(QStringLiteral("p.html"));
    EXPECT_TRUE(gallery.IsElementVisibleOnPage(QStringLiteral("a")));
    EXPECT_TRUE(gallery.IsElementVisibleOnPage(QStringLiteral("b")));
    gallery.SetVisibilityMap({{QStringLiteral("a"), false}});
    EXPECT_EQ(gallery.GetVisibilityMap(), (CPageVisibility::Elements{{QStringLiteral("a"), false}}));
    EXPECT_FALSE(gallery.IsElementVisibleOnPage(QStringLiteral("a")));
    EXPECT_TRUE(gallery.IsElementVisibleOnPage(QStringLiteral("b")));
    EXPECT_EQ(gallery.GetVisibilityMap().size(), 2u);
    gallery.SetTemplatePage(QStringLiteral("q.html"));
    EXPECT_TRUE(gallery.IsElementVisibleOnPage(QStringLiteral("a")));
    CGalleryIterator iterator;
    iterator.Init(gallery);
    EXPECT_TRUE(gallery.GetVisibilityMap().empty());
    EXPECT_EQ(gallery.GetVisibility().GetPages().size(), 2u);
}
