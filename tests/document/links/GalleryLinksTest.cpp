#include "document/links/GalleryLinks.h"

#include "TestProject.h"
#include "common/Exceptions.h"
#include "document/content/GalleryContent.h"

namespace {

QString UrlOf(CGallery& gallery, int32_t position, const char* page)
{
    return gallery.GetPageUrl(position, QString::fromUtf8(page)).value_or(QStringLiteral("false"));
}

// 0 lists 1, 1 lists 2; the current page of gallery N is "pN.html".
void MakeLine(CTestProject& test)
{
    CGallery& root = test.NewGallery(7);
    test.project.AddChildGallery(0);
    test.project.AddChildGallery(1);
    for (const int32_t index : {0, 1, 2}) {
        test.project.FindGallery(index)->SetTemplatePage(QStringLiteral("p%1.html").arg(index));
    }
    root.GetLayout().SetPageNumber(3);
}

} // namespace

TEST(ParentUrl, NamesThePictureThatTheGalleryIsInItsParent)
{
    CTestProject test;
    MakeLine(test);
    EXPECT_EQ(GetParentUrl(*test.project.FindGallery(0), test.project), QStringLiteral("p0.html"));
    // The position in the parent's pictures, whatever page the parent shows and how many pictures it takes.
    EXPECT_EQ(GetParentUrl(*test.project.FindGallery(1), test.project), QStringLiteral("../p07.html"));
    EXPECT_EQ(GetParentUrl(*test.project.FindGallery(2), test.project), QStringLiteral("../1/p1.html"));
    test.project.FindGallery(1)->AddPicture(test.MakePicture(QStringLiteral("x.jpg")));
    test.project.FindGallery(1)->MovePicture(0, 1);
    EXPECT_EQ(GetParentUrl(*test.project.FindGallery(2), test.project), QStringLiteral("../1/p11.html"));
}

TEST(ParentPath, IsABreadcrumbFromTheRootDown)
{
    CTestProject test;
    MakeLine(test);
    const QString object = QStringLiteral("gallery");
    const QString name = QStringLiteral("name");
    test.project.FindGallery(0)->SetObjectVariable(object, name, CVariant(QStringLiteral("Top")));
    test.project.FindGallery(1)->SetObjectVariable(object, name, CVariant(QStringLiteral("Mid")));
    EXPECT_EQ(test.project.FindGallery(0)->GetParentPath(), QString());
    EXPECT_EQ(test.project.FindGallery(1)->GetParentPath(),
              QStringLiteral("<a href=\"../p07.html\">Top</a> \\ "));
    EXPECT_EQ(test.project.FindGallery(2)->GetParentPath(),
              QStringLiteral("<a href=\"../p07.html\">Top</a> \\ <a href=\"../1/p1.html\">Mid</a> \\ "));
    test.project.FindGallery(1)->SetObjectVariable(object, name, CVariant(QString()));
    EXPECT_EQ(test.project.FindGallery(2)->GetParentPath(), QString());
}

TEST(PageUrl, LeadsToThePageOfAPictureOrToAChildGallery)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"three.html\"/><page file=\"none.html\"/>"
                                        "<page file=\"12.html\"/><page file=\"two5.html\"/>");
    for (const auto& [page, slotCount] : std::map<QString, int>{{QStringLiteral("three.html"), 3},
                                                                {QStringLiteral("none.html"), 0},
                                                                {QStringLiteral("12.html"), 1},
                                                                {QStringLiteral("two5.html"), 2}}) {
        test.AddPage(QStringLiteral("a"), page, slotCount);
    }
    MakeLine(test);
    CGallery& root = *test.project.FindGallery(0);
    const struct {
        int position;
        const char* page;
        const char* expected;
    } rows[] = {
        {0, "three.html", "three.html"},  {3, "three.html", "three1.html"}, {6, "three.html", "three2.html"},
        {1, "three.html", "three0.html"}, {4, "two5.html", "two2.html"},    {3, "none.html", ""},
        {0, "12.html", "12.html"},        {3, "12.html", "false"},          {3, "Three.html", "false"},
        {7, "three.html", "1/p1.html"},   {7, "whatever", "1/p1.html"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(UrlOf(root, row.position, row.page), QString::fromUtf8(row.expected))
            << row.position << " " << row.page;
    }
    EXPECT_EQ(UrlOf(*test.project.FindGallery(1), 0, "three.html"), QStringLiteral("../2/p2.html"));
}

TEST(PageUrl, WithoutLayoutsLeadsNowhere)
{
    CTestProject test;
    EXPECT_EQ(UrlOf(test.NewGallery(1), 0, "a.html"), QStringLiteral("false"));
}

TEST(NavigateToGallery, TakesTheIndexOutOfTheUrl)
{
    const struct {
        const char* url;
        bool navigates;
        int current; // of galleries 0 to 2, with 1 the current one before
    } rows[] = {
        {"2/p.html", true, 2},
        {"../2/p.html", true, 2},
        {"../p.html", true, 0},
        {"p.html", false, 1},
        {"", false, 1},
        {"a/p.html", false, 1},
        {"/p.html", false, 1},
        {"..//p.html", false, 1},
        {"../2a/p.html", false, 1},
        {"../-1/p.html", false, 1},
        {"http://host/2/p.html", false, 1},
        {"../../2/p.html", false, 1},
        {"..2/p.html", false, 1},
        {"\u0662/p.html", false, 1},
        {"77/p.html", true, 1},
        {"99999999999999999999/p.html", true, 1},
    };
    for (const auto& row : rows) {
        CTestProject test;
        MakeLine(test);
        test.project.SetCurrentGallery(1);
        EXPECT_EQ(test.project.GetRootGallery()->NavigateToGallery(QString::fromUtf8(row.url)), row.navigates)
            << row.url;
        EXPECT_EQ(test.project.GetCurrentGalleryIndex(), row.current) << row.url;
        EXPECT_EQ(test.project.GetGalleries().size(), 3u);
    }
}

namespace {

struct FollowRow {
    const char* url;
    const char* expected; // answer, style changed, gallery changed, page, number, query
};

QString Followed(CGallery& gallery, const char* url)
{
    bool styleChanged = true;
    bool galleryChanged = false;
    const bool followed = gallery.FollowLink(QString::fromUtf8(url), styleChanged, galleryChanged);
    return QStringLiteral("%1 %2 %3 %4 %5 %6")
        .arg(followed)
        .arg(styleChanged)
        .arg(galleryChanged)
        .arg(gallery.GetLayout().GetTemplatePage())
        .arg(gallery.GetLayout().GetPageNumber())
        .arg(gallery.GetQueryString());
}

} // namespace

TEST(FollowLink, GoesToPagesAndGalleries)
{
    const FollowRow rows[] = {
        {"picture.html", "1 0 0 picture.html 0 "},
        {"picture12.html", "1 0 0 picture.html 12 "},
        {"picture2.html?a=b?c", "1 0 0 picture.html 2 ?a=b?c"},
        {"index5.html", "1 0 0 index.html 5 "},
        {"unknown.html", "0 0 0 index.html 3 "},
        {"unknown.html?q", "0 0 0 index.html 3 ?q"},
        {"picture.html?x=1/2", "1 0 0 picture.html 0 ?x=1/2"},
        {"12.html", "0 0 0 index.html 3 "},
        {"Picture.html", "0 0 0 index.html 3 "},
        {"#top", "0 0 0 index.html 3 "},
        {"", "0 0 0 index.html 3 "},
        {"http://elsewhere/x.html", "0 0 0 index.html 3 "},
        {"../index.html", "1 1 1 index.html 3 ?old"},
        {"0/index.html", "1 1 1 index.html 3 ?old"},
        {"picture99999999999.html", "1 0 0 picture.html 2147483647 "},
    };
    for (const FollowRow& row : rows) {
        CTestProject test;
        test.AddStandard();
        CGallery& gallery = test.NewGallery();
        gallery.SetTemplatePage(QStringLiteral("index.html"));
        gallery.GetLayout().SetPageNumber(3);
        gallery.SetQueryString(QStringLiteral("?old"));
        EXPECT_EQ(Followed(gallery, row.url), QString::fromUtf8(row.expected)) << row.url;
    }
}

TEST(FollowLink, TheStyleChangesWhereThePagesHaveDifferentOnes)
{
    const struct {
        const char* oldStyle;
        const char* newStyle;
        const char* url;
        const char* expected;
        const char* style;
    } rows[] = {
        {"", "", "picture.html", "1 0 0 picture.html 0 ", "blue"},
        {"blue", "", "picture.html", "1 0 0 picture.html 0 ", "blue"},
        {"", "red", "picture.html", "1 1 0 picture.html 0 ", "red"},
        {"red", "red", "picture.html", "1 0 0 picture.html 0 ", "red"},
        {"blue", "red", "picture.html", "1 1 0 picture.html 0 ", "red"},
        {"red", "", "index2.html", "1 0 0 index.html 2 ", "blue"},
    };
    for (const auto& row : rows) {
        CTestProject test;
        test.AddStandard();
        std::map<QString, QString> keys = {{QStringLiteral("blue"), test.AddStyle(QStringLiteral("blue"))},
                                           {QStringLiteral("red"), test.AddStyle(QStringLiteral("red"))}};
        CGallery& gallery = test.NewGallery();
        gallery.SetTemplatePage(QStringLiteral("index.html"));
        if (*row.oldStyle) {
            gallery.GetLayout().SetPageStyle(QStringLiteral("index"), keys[QString::fromUtf8(row.oldStyle)]);
        }
        if (*row.newStyle) {
            gallery.GetLayout().SetPageStyle(QStringLiteral("picture"),
                                             keys[QString::fromUtf8(row.newStyle)]);
        }
        EXPECT_EQ(Followed(gallery, row.url), QString::fromUtf8(row.expected));
        EXPECT_EQ(gallery.GetLayout().GetStyleKey(), keys[QString::fromUtf8(row.style)]);
    }
}

TEST(FollowLink, WithoutLayoutsLeadsNowhere)
{
    CTestProject test;
    EXPECT_EQ(Followed(test.NewGallery(), "a.html"), QStringLiteral("0 0 0  0 "));
}

TEST(FollowLink, WithinTheGalleryLeavesTheAnswerAboutGalleriesAsItWas)
{
    for (const char* url : {"picture.html", "unknown.html"}) {
        CTestProject test;
        test.AddStandard();
        bool styleChanged = true;
        bool galleryChanged = true;
        test.NewGallery().FollowLink(QString::fromUtf8(url), styleChanged, galleryChanged);
        EXPECT_FALSE(styleChanged) << url;
        EXPECT_TRUE(galleryChanged) << url;
    }
}

namespace {

// A site of galleries that nobody has opened a project for: 0 lists 1.
class CBareSite final : public CGallerySite {
public:
    CBareSite() { root.SetObjectVariable(QStringLiteral("gallery"), QStringLiteral("name"), CVariant(name)); }

    bool IsPreviewMode() const override { return true; }
    QString GetName() const override { return QStringLiteral("project"); }
    int32_t GetRootGalleryIndex() const override { return 0; }
    const CGalleryContent* FindContent(int32_t index) const override { return index == 0 ? &root : &child; }
    const CGalleryContent* FindParentContent(int32_t index) const override
    {
        return index == 1 ? &root : nullptr;
    }
    QString GetProgramFolder() const override { return QString(); }
    QString GetBannerServer() const override { return QString(); }
    QString GetBannerFeed() const override { return QString(); }

    const QString name = QStringLiteral("Top");
    const CScratchFolder scratch;
    const CGalleryCatalogue catalogue{scratch.Path()};
    CGalleryContent root{catalogue, 0};
    CGalleryContent child{catalogue, 1};
};

} // namespace

TEST(GalleryLinks, NeedNoMoreThanContentAndTheContractOfTheSite)
{
    CBareSite site;
    site.root.SetTemplatePage(QStringLiteral("index.html"));
    site.child.SetTemplatePage(QStringLiteral("c.html"));
    EXPECT_EQ(GetDisplayName(site.child, site), QStringLiteral("project"));
    EXPECT_EQ(GetParentUrl(site.child, site), QStringLiteral("../index.html"));
    EXPECT_EQ(GetParentPath(site.child, site), QStringLiteral("<a href=\"../index.html\">Top</a> \\ "));
    EXPECT_EQ(GetChildUrl(site.root, site, 1), QStringLiteral("1/c.html"));
    EXPECT_EQ(GetChildUrl(site.child, site, 0), QStringLiteral("../0/index.html"));
    EXPECT_EQ(FindPictureUrl(site.root.GetLayout(), {.position = 3,
                                                     .pageName = QStringLiteral("index.html"),
                                                     .countPicturesPerPage =
                                                         [] {
                                                             return 2;
                                                         }}),
              std::nullopt);
}
