#include "common/StopSignal.h"
#include "content/PageGeneration.h"
#include "document/galleries/Gallery.h"
#include "support/ProjectFixture.h"
#include "template/parser/TemplateParsingException.h"

// The loop of the template language over a real gallery and its published pages.

namespace {

constexpr char Entries[] = "<%blog <%=page.blog_index%> %>";
constexpr char Distances[] = "<%blog <%=page.blog_reference%> %>";
constexpr char OwnInBody[] =
    R"(<%blog <%picture id="own<%=page.blog_index%>" width="8" height="6" href=""%>%>)"
    R"(<%=page.total_pages_count%>)";

class BlogPages : public testing::Test, protected CGenerationProgress {
protected:
    BlogPages() { fixture.WriteStyle(QStringLiteral("Blue")); }

    void OnPageDone(int32_t, int32_t) override {}

    // A project of one multipage page "p.html" that begins with one picture.
    CGallery& NewGallery(const QByteArray& page, int pictureCount)
    {
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"p.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("p.html"),
                          "<%picture id=\"main\" width=\"8\" height=\"6\" href=\"\"%>:" + page);
        fixture.NewProject();
        for (int i = 0; i < pictureCount; ++i) {
            fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("%1.png").arg(i)));
        }
        return fixture.GetRoot();
    }

    int32_t Generate()
    {
        const CStopSignal stop;
        return GeneratePages(fixture.GetProject(), {fixture.scratch.Path(QStringLiteral("site"))}, stop,
                             *this)
            .pages;
    }

    // What stands after the page's own picture.
    QByteArray PublishedPage(int32_t number) const
    {
        const QString name = number == 0 ? QString() : QString::number(number);
        const QByteArray page = fixture.scratch.Read(QStringLiteral("site/p%1.html").arg(name));
        return page.mid(page.lastIndexOf(':') + 1);
    }

    QByteArray SavedProject()
    {
        fixture.GetProject().Save(fixture.scratch.Path(QStringLiteral("saved.gallery")));
        return fixture.scratch.Read(QStringLiteral("saved.gallery"));
    }

    CProjectFixture fixture;
};

} // namespace

TEST_F(BlogPages, RunOverElevenPicturesAroundThePage)
{
    const struct {
        const char* page;
        int pictures;
        int32_t number;
        const char* expected;
    } rows[] = {
        {Entries, 3, 0, "0 1 2 "},
        {Entries, 3, 1, "0 1 2 "},
        {Entries, 3, 2, "0 1 2 "},
        {Entries, 20, 5, "0 1 2 3 4 5 6 7 8 9 10 "},
        {Entries, 20, 6, "1 2 3 4 5 6 7 8 9 10 11 "},
        {Entries, 20, 19, "14 15 16 17 18 19 "},
        {Distances, 20, 2, "-2 -1 0 1 2 3 4 5 6 7 8 "},
        {Distances, 20, 19, "-5 -4 -3 -2 -1 0 "},
        {Entries, 0, 0, ""},
    };
    for (const auto& row : rows) {
        NewGallery(row.page, row.pictures);
        EXPECT_EQ(Generate(), std::max(1, row.pictures));
        EXPECT_EQ(PublishedPage(row.number).toStdString(), row.expected)
            << row.pictures << " pictures, page " << row.number;
    }
}

TEST_F(BlogPages, GetLongerByTheOwnPicturesOfTheBody)
{
    const struct {
        int pictures;
        int32_t perPage;
        const char* pages;
    } rows[] = {{0, 1, "0"}, {3, 4, "1"}, {11, 12, "1"}, {20, 12, "2"}};
    for (const auto& row : rows) {
        CGallery& gallery = NewGallery(OwnInBody, row.pictures);
        EXPECT_EQ(gallery.GetPicturesPerPage(*gallery.GetLayout().GetTemplate(), QStringLiteral("p.html")),
                  row.perPage);
        EXPECT_EQ(Generate(), std::max(1, QByteArray(row.pages).toInt()));
        const QByteArray page = PublishedPage(0);
        EXPECT_TRUE(page.endsWith(row.pages)) << page.toStdString();
    }
}

TEST_F(BlogPages, LeaveTheProjectAsItWas)
{
    CGallery& gallery = NewGallery(Entries, 3);
    gallery.SetPageVariable(QStringLiteral("p"), 1, QStringLiteral("blog_number"),
                            CVariant(QStringLiteral("own")));
    const QByteArray before = SavedProject();
    Generate();
    EXPECT_EQ(SavedProject(), before);
    EXPECT_EQ(before.count("<page "), 1);
}

TEST_F(BlogPages, RestoreTheirVariablesWhenTheBodyFails)
{
    CGallery& gallery = NewGallery("<%blog <%blog <%=broken%>%>%>", 3);
    gallery.SetPageVariable(QStringLiteral("p"), 0, QStringLiteral("blog_number"), CVariant(77));
    EXPECT_THROW(Generate(), CTemplateParsingException);
    EXPECT_EQ(gallery.GetPageVariable(QStringLiteral("p"), 0, QStringLiteral("blog_number")), CVariant(77));
    EXPECT_EQ(gallery.GetPageVariable(QStringLiteral("p"), 0, QStringLiteral("blog_index")), CVariant());
}
