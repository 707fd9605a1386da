#include "document/galleries/Gallery.h"

#include "TestProject.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "document/galleries/GalleryIterator.h"
#include "document/pictures/PictureInfo.h"

namespace {

// Of the page that is shown.
bool IsElementVisibleOnPage(CGallery& gallery, const QString& name)
{
    return gallery.IsElementVisible(gallery.GetLayout().GetTemplatePage(), name);
}

} // namespace

TEST(PicturesPerPage, AreCountedOnceForEachPage)
{
    CTestProject test;
    test.AddStandard();
    CGallery& gallery = test.NewGallery();
    const CGalleryTemplate& layout = *gallery.GetLayout().GetTemplate();
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
    const CGalleryTemplate& layout = *gallery.GetLayout().GetTemplate();
    EXPECT_EQ(gallery.GetPicturesPerPage(layout, QStringLiteral("p.html")), 0);
    test.AddPage(QStringLiteral("a"), QStringLiteral("p.html"), 2);
    EXPECT_EQ(gallery.GetPicturesPerPage(layout, QStringLiteral("p.html")), 2);
}

TEST(PicturesPerPage, CountingLeavesTheElementsOfThePageThatIsShownAlone)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"index.html\"/><page file=\"picture.html\"/>");
    test.AddPage(QStringLiteral("a"), QStringLiteral("index.html"), 4);
    test.AddPageText(QStringLiteral("a"), QStringLiteral("picture.html"),
                     "<%if <%isvisible layout=\"Neighbours\"%><%picture id=\"n\" width=\"1\" height=\"1\" "
                     "href=\"\"%>%><%picture id=\"p\" width=\"1\" height=\"1\" href=\"\"%>");
    CGallery& gallery = test.NewGallery();
    gallery.SetTemplatePage(QStringLiteral("index.html"));
    EXPECT_TRUE(IsElementVisibleOnPage(gallery, QStringLiteral("Captions")));
    const auto pages = gallery.GetVisibility().GetPages();
    EXPECT_EQ(gallery.GetPicturesPerPage(*gallery.GetLayout().GetTemplate(), QStringLiteral("picture.html")),
              2);
    EXPECT_EQ(gallery.GetVisibility().GetPages(), pages);
    EXPECT_EQ(gallery.GetVisibilityMap(), (CPageVisibility::Elements{{QStringLiteral("Captions"), true}}));
}

TEST(PicturesPerPage, OfAMissingPageFileAreAnError)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"p.html\"/>");
    CGallery& gallery = test.NewGallery();
    const CGalleryTemplate& layout = *gallery.GetLayout().GetTemplate();
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
    EXPECT_FALSE(gallery.AddPicture(test.Path(QStringLiteral("pictures/2.jpg"))).isNew);
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("3.jpg 1.jpg 2.jpg"));
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
        EXPECT_EQ(child.GetPictures().GetAt(0)->GetVariable(QStringLiteral("title")),
                  CVariant(QStringLiteral("t")));
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

TEST(GalleryPictures, AChildIsListedUnderThePathOfItsCover)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery(1);
    test.project.AddChildGallery(-1);
    const QString cover = test.project.FindGallery(1)->GetCover().GetName();
    EXPECT_EQ(gallery.GetPictures().Find(cover), 1);
    const int64_t before = gallery.GetCover().GetRevision();
    gallery.OnChildCoverChanged(QStringLiteral("unknown"));
    EXPECT_EQ(gallery.GetCover().GetRevision(), before);
    gallery.OnChildCoverChanged(cover);
    EXPECT_NE(gallery.GetCover().GetRevision(), before); // its own cover is chosen anew
    EXPECT_EQ(gallery.GetPictures().Find(cover), 1);
}

TEST(GalleryPictures, APictureOfACoversPathDoesNotPushTheChildOut)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    test.project.AddChildGallery(-1);
    EXPECT_FALSE(gallery.AddPicture(test.project.FindGallery(1)->GetCoverPath()));
    EXPECT_EQ(CTestProject::Entries(gallery), QStringLiteral("<1>"));
}

TEST(GalleryVisibility, ElementsAreEnteredAsVisibleAndNotedAsSeen)
{
    CTestProject test;
    CGallery& gallery = test.NewGallery();
    gallery.SetTemplatePage(QStringLiteral("p.html"));
    EXPECT_TRUE(IsElementVisibleOnPage(gallery, QStringLiteral("a")));
    EXPECT_TRUE(IsElementVisibleOnPage(gallery, QStringLiteral("b")));
    gallery.SetVisibilityMap({{QStringLiteral("a"), false}});
    EXPECT_EQ(gallery.GetVisibilityMap(), (CPageVisibility::Elements{{QStringLiteral("a"), false}}));
    EXPECT_FALSE(IsElementVisibleOnPage(gallery, QStringLiteral("a")));
    EXPECT_TRUE(IsElementVisibleOnPage(gallery, QStringLiteral("b")));
    EXPECT_EQ(gallery.GetVisibilityMap().size(), 2u);
    gallery.SetTemplatePage(QStringLiteral("q.html"));
    EXPECT_TRUE(IsElementVisibleOnPage(gallery, QStringLiteral("a")));
    CGalleryIterator iterator;
    iterator.Init(gallery);
    EXPECT_TRUE(gallery.GetVisibilityMap().empty());
    EXPECT_EQ(gallery.GetVisibility().GetPages().size(), 2u);
}
