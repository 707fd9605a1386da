#include "template/sections/TemplateSectionBlog.h"

#include <limits>

#include "PageRun.h"
#include "common/Exceptions.h"
#include "support/ScratchFolder.h"

namespace {

constexpr int32_t FarthestPage = std::numeric_limits<int32_t>::max();

const char* const OneEntry = "<%blog <%=page.blog_index%> %>";

// The pictures of the page: "id" and "id offset modulo" as they were bound.
std::string Bound(const std::string& page, CTestIterator& iterator, int32_t pageIndex = 0)
{
    iterator.bound.clear();
    Generated(page, iterator, pageIndex);
    std::string result;
    for (const QString& id : iterator.bound) {
        result += Narrow(id) + ";";
    }
    return result;
}

std::string PageVariable(CTestIterator& iterator, const char* name)
{
    CVariant value;
    if (!iterator.GetVariable(QStringLiteral("page"), QString::fromLatin1(name), value)) {
        return "none";
    }
    return value.IsEmpty() ? "empty" : Narrow(CRecordingGenerator().VariantToString(value));
}

} // namespace

TEST(TemplateBlog, RunsOverElevenPicturesAroundThePage)
{
    const struct {
        int32_t pictures;
        int32_t page;
        const char* expected;
    } rows[] = {
        {3, 0, "0 1 2 "},
        {3, 1, "0 1 2 "},
        {3, 2, "0 1 2 "},
        {0, 0, ""},
        {1, 0, "0 "},
        {10, 0, "0 1 2 3 4 5 6 7 8 9 "},
        {11, 0, "0 1 2 3 4 5 6 7 8 9 10 "},
        {12, 0, "0 1 2 3 4 5 6 7 8 9 10 "},
        {20, 4, "0 1 2 3 4 5 6 7 8 9 10 "},
        {20, 5, "0 1 2 3 4 5 6 7 8 9 10 "},
        {20, 6, "1 2 3 4 5 6 7 8 9 10 11 "},
        {20, 7, "2 3 4 5 6 7 8 9 10 11 12 "},
        {20, 14, "9 10 11 12 13 14 15 16 17 18 19 "},
        {20, 15, "10 11 12 13 14 15 16 17 18 19 "},
        {20, 19, "14 15 16 17 18 19 "}, // no shift back at the end
        // Pages that a link named though they aren't there.
        {20, 24, "19 "},
        {20, 25, ""},
        {3, FarthestPage, ""},
        {3, -1, "0 1 2 "},
        {3, std::numeric_limits<int32_t>::min(), "0 1 2 "},
    };
    for (const auto& row : rows) {
        CTestIterator iterator(row.pictures);
        EXPECT_EQ(Generated(OneEntry, iterator, row.page), row.expected)
            << row.pictures << " pictures, page " << row.page;
    }
}

TEST(TemplateBlog, CountsThePicturesOfTheGalleryAndNotItsPages)
{
    CTestIterator iterator(8);
    const std::string place = R"(<%picture id="a" width="1" height="1" href=""%>)";
    const std::string places = place + R"(<%picture id="b" width="1" height="1" href=""%>)";
    EXPECT_TRUE(Generated(places + OneEntry, iterator, 3).ends_with("0 1 2 3 4 5 6 7 "));
    EXPECT_EQ(iterator.GetPageCount(), 4);
}

TEST(TemplateBlog, SetsPositionDistanceAndNumberOfEachEntry)
{
    const std::string page =
        "<%blog <%=page.blog_index%>|<%=page.blog_reference%>|<%=PAGE.Blog_Number%> <%=page.index%>; %>";
    const struct {
        int32_t pictures;
        int32_t page;
        const char* expected;
    } rows[] = {
        {3, 0, "0|0|1 0; 1|1|2 0; 2|2|3 0; "},
        {3, 1, "0|-1|1 1; 1|0|2 1; 2|1|3 1; "},
        {7, 6, "1|-5|2 6; 2|-4|3 6; 3|-3|4 6; 4|-2|5 6; 5|-1|6 6; 6|0|7 6; "},
        {1, std::numeric_limits<int32_t>::min(), "0|2147483647|1 -2147483648; "},
    };
    for (const auto& row : rows) {
        CTestIterator iterator(row.pictures);
        EXPECT_EQ(Generated(page, iterator, row.page), row.expected) << row.page;
    }
}

TEST(TemplateBlog, AnythingBehindTheKeywordIsBody)
{
    const struct {
        const char* page;
        const char* expected;
    } rows[] = {
        {"<%blog%>", ""},
        {"<%blog %>", ""},
        {"a<%blog -%>b", "a--b"},
        {R"(<%blog id="x"%>)", R"(id="x"id="x")"},
        {"<%blog <%else x%>%>", "xx"},
        {R"(<%blog <%if <%isequal property1="<%=page.blog_number%>" property2="2"%>here<%else there%>%> %>)",
         "there here "},
    };
    for (const auto& row : rows) {
        CTestIterator iterator(2);
        EXPECT_EQ(Generated(row.page, iterator), row.expected) << row.page;
    }
}

TEST(TemplateBlog, MustBeClosed)
{
    const struct {
        const char* page;
        const char* expected;
    } rows[] = {
        {"<%blog", "no error"}, // like any keyword at the end of a page
        {"<%blog ", "Could not find element closing bracket '%>'. []"},
        {"<%blog body", "Could not find element closing bracket '%>'. [body]"},
        {"<%blog <%blog x%>", "Could not find element closing bracket '%>'. [<%blog x%>]"},
        {"<%blog <%blog x", "Could not find element closing bracket '%>'. [x]"},
        {"<%Blog x%>", "Unknown template section 'Blog'. [<%Blog ]"},
        {"<%blog<%=page.index%>%>", "Unknown template section 'blog<%=page.index'. [<%blog<%=page.index]"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ParseError(row.page), row.expected) << row.page;
    }
}

TEST(TemplateBlog, BindsEachPictureOncePerEntryInTheOrderOfGeneration)
{
    const std::string strip =
        R"(<%blog <%picture id="blog<%=page.blog_index%>" image_reference="<%=page.blog_reference%>" )"
        R"(width="8" height="6" href="<%=page.file_name%>"%>%>)";
    CTestIterator iterator(3);
    EXPECT_EQ(Bound(strip, iterator, 1), "blog0 -1 0;blog1 0 0;blog2 1 0;");
    EXPECT_EQ(iterator.GetPicturesPerPage(), 0);
    const std::string own = R"(<%picture id="main" width="8" height="6" href=""%>)";
    EXPECT_EQ(Bound(strip + own, iterator, 1), "blog0 -1 0;blog1 0 0;blog2 1 0;main;");
    EXPECT_EQ(iterator.GetPicturesPerPage(), 1);
}

TEST(TemplateBlog, AReferenceByDistanceIsTheEntryItselfWithOnePictureToAPage)
{
    const std::string page =
        R"(<%picture id="main" width="8" height="6" href=""%>)"
        R"(<%blog <%picture id="blog<%=page.blog_index%>" image_reference="<%=page.blog_reference%>" )"
        R"(width="8" height="6" href=""%> <%=page.blog_index%>=<%=blog<%=page.blog_index%>.index%>;%>)";
    CTestIterator iterator(20);
    for (const int32_t index : {0, 3, 6, 19}) {
        const std::string generated = Generated(page, iterator, index);
        int entries = 0;
        for (int32_t i = 0; i < 20; ++i) {
            const std::string number = std::to_string(i);
            std::string pair = " ";
            pair += number + "=" + number + ";";
            entries += generated.find(pair) != std::string::npos ? 1 : 0;
        }
        EXPECT_EQ(entries, index == 19 ? 6 : 11) << index;
    }
}

TEST(TemplateBlog, AnIdThatDoesNotDifferKeepsItsFirstEntry)
{
    const std::string page =
        R"(<%picture id="main" width="8" height="6" href=""%>)"
        R"(<%blog <%picture id="same" image_reference="<%=page.blog_reference%>" width="8" height="6" )"
        R"(href=""%><%=same.index%> %>)";
    CTestIterator iterator(3);
    EXPECT_EQ(Bound(page, iterator, 1), "main;same -1 0;same 0 0;same 1 0;");
    const std::string generated = Generated(page, iterator, 1);
    EXPECT_NE(generated.find("0 {"), std::string::npos) << generated;
    EXPECT_TRUE(generated.ends_with("0 ")) << generated;
}

TEST(TemplateBlog, AnOwnPictureInTheBodyCountsOncePerEntry)
{
    const std::string page =
        R"(<%blog <%picture id="own<%=page.blog_index%>" width="8" height="6" href=""%>%>)"
        R"(<%picture id="main" width="8" height="6" href=""%>)";
    const struct {
        int32_t pictures;
        int32_t perPage;
        int32_t pages;
    } rows[] = {{0, 1, 0}, {3, 4, 1}, {11, 12, 1}, {20, 12, 2}, {30, 12, 3}};
    for (const auto& row : rows) {
        CTestIterator iterator(row.pictures);
        Generated(page, iterator);
        EXPECT_EQ(iterator.GetPicturesPerPage(), row.perPage) << row.pictures;
        EXPECT_EQ(iterator.GetPageCount(), row.pages) << row.pictures;
    }
}

TEST(TemplateBlog, ABlogInABlogRestoresTheOuterValue)
{
    CTestIterator iterator(2);
    EXPECT_EQ(Generated("<%blog <%=page.blog_number%>(<%blog <%=page.blog_number%>%>)"
                        "<%=page.blog_number%> %>",
                        iterator),
              "1(12)1 2(12)2 ");
    EXPECT_EQ(Bound(R"(<%blog <%blog <%picture id="a<%=page.blog_index%>" width="1" height="1" href=""%>%>)"
                    R"(<%picture id="b<%=page.blog_index%>" width="1" height="1" href=""%>%>)",
                    iterator),
              "a0;a1;b0;a0;a1;b1;");
}

TEST(TemplateBlog, LeavesTheStoreAsItWasAndNewVariablesEmpty)
{
    CTestIterator iterator(3);
    iterator.SetPageIndex(1);
    iterator.SetVariable(QStringLiteral("page"), QStringLiteral("blog_index"),
                         QStringLiteral("the author's own"));
    EXPECT_EQ(Generated("<%=page.blog_index%> <%blog <%=page.blog_index%>%> <%=page.blog_index%>"
                        "<%=page.blog_number%>",
                        iterator, 1),
              "the author's own 012 the author's own");
    EXPECT_EQ(PageVariable(iterator, "blog_index"), "the author's own");
    EXPECT_EQ(PageVariable(iterator, "blog_reference"), "empty");
    EXPECT_EQ(PageVariable(iterator, "blog_number"), "empty");
    EXPECT_EQ(iterator.pages.size(), 1u); // no other page was touched
}

TEST(TemplateBlog, AnErrorOfTheBodyStopsTheLoopAndRestoresTheVariables)
{
    CTestIterator iterator(3);
    iterator.SetVariable(QStringLiteral("page"), QStringLiteral("blog_number"), 77);
    const Page page = ParsePage("<%blog <%blog x<%=broken%>%>%>");
    CRecordingGenerator generator;
    iterator.Reset();
    page->Bind(iterator, generator);
    std::ostringstream out;
    EXPECT_THROW(page->Generate(iterator, generator, out), CTemplateParsingException);
    EXPECT_EQ(out.str(), "x");
    EXPECT_EQ(PageVariable(iterator, "blog_number"), "77");
    EXPECT_EQ(PageVariable(iterator, "blog_index"), "empty");
    EXPECT_EQ(PageVariable(iterator, "blog_reference"), "empty");
    // In the other pass the attributes of a picture are the part that can fail.
    const Page bad = ParsePage(R"(<%blog <%picture id="<%=broken%>" width="1" height="1" href=""%>%>)");
    EXPECT_THROW(bad->Bind(iterator, generator), CTemplateParsingException);
    EXPECT_EQ(PageVariable(iterator, "blog_number"), "77");
}

TEST(TemplateBlog, AScopedVariableHoldsForItsLife)
{
    CTestIterator iterator;
    {
        const CScopedPageVariable outer(iterator, QStringLiteral("Name"), 1);
        EXPECT_EQ(PageVariable(iterator, "name"), "1");
        {
            const CScopedPageVariable inner(iterator, QStringLiteral("name"), QStringLiteral("two"));
            EXPECT_EQ(PageVariable(iterator, "NAME"), "two");
        }
        EXPECT_EQ(PageVariable(iterator, "name"), "1");
    }
    EXPECT_EQ(PageVariable(iterator, "name"), "empty");
}

TEST(TemplateBlog, TheTwoProcessorsRunOnePassEach)
{
    CTestIterator iterator;
    CRecordingGenerator generator;
    iterator.Reset();
    const Page body = ParsePage(R"(text<%picture id="a" width="1" height="1" href=""%>)");
    CBlogBinder().Process(iterator, generator, *body);
    EXPECT_EQ(iterator.bound.size(), 1u);
    iterator.SetPageIndex(0);
    std::ostringstream out;
    CBlogGenerator(out).Process(iterator, generator, *body);
    EXPECT_TRUE(out.str().starts_with("text{")) << out.str();
    EXPECT_EQ(iterator.bound.size(), 1u);
}

TEST(TemplateBlog, ClearLeavesNoBody)
{
    CTemplateSectionBlog section;
    section.AddText("x", 1);
    CTestIterator iterator(2);
    CRecordingGenerator generator;
    EXPECT_EQ(section.GenerateToString(iterator, generator), "xx");
    section.Clear();
    EXPECT_EQ(section.GenerateToString(iterator, generator), "");
}

TEST(TemplateBlog, AnIncludeInTheBodyIsLoadedOnceAndWrittenForEachEntry)
{
    const CScratchFolder layout;
    layout.Write(QStringLiteral("entry0.html"), "[<%=page.blog_index%>]");
    layout.Write(QStringLiteral("entry1.html"), "never");
    CTestIterator iterator(3);
    iterator.gallery.Set(QStringLiteral("template_directory"), layout.Path());
    EXPECT_EQ(Generated(R"(<%blog <%include file="entry<%=page.blog_index%>.html"%>%>)", iterator),
              "[0][1][2]");
}

TEST(TemplateBlog, LoopsInLoopsEndAtALimit)
{
    const auto nested = [](int depth) {
        std::string page = "x";
        for (int i = 0; i < depth; ++i) {
            page = "<%blog " + page + "%>";
        }
        return page;
    };
    CTestIterator iterator(2);
    EXPECT_EQ(Generated(nested(CTemplateSectionBlog::MaxDepth), iterator), std::string(16, 'x'));
    const std::string error =
        "Blog sections are nested more than 4 levels deep, those of included files counted.";
    EXPECT_EQ(Generated(nested(CTemplateSectionBlog::MaxDepth + 1), iterator), "ERROR " + error);
    // Loops that stand side by side are no loops in loops.
    EXPECT_EQ(Generated("<%blog a%><%blog b%><%blog c%><%blog d%><%blog e%><%blog f%>", iterator),
              "aabbccddeeff");
    // A file that includes itself in a loop.
    const CScratchFolder layout;
    layout.Write(QStringLiteral("loop.html"), R"(<%blog <%include file="loop.html"%>%>)");
    iterator.gallery.Set(QStringLiteral("template_directory"), layout.Path());
    EXPECT_EQ(Generated(R"(<%include file="loop.html"%>)", iterator), "ERROR " + error);
}
