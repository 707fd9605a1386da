#include "template/sections/FurnitureSections.h"

#include "PageRun.h"

TEST(TemplateFurniture, PageHeaderIgnoresWordsAndTakesNoElements)
{
    EXPECT_EQ(Generated("<%pageheader%>"), "{pageheader}");
    EXPECT_EQ(Generated("<%pageheader %>"), "{pageheader}");
    EXPECT_EQ(Generated("<%pageheader some words=\"lost\" %>x"), "{pageheader}x");
    EXPECT_EQ(Generated("<%pageheader <%=a.b%>%>"), "ERROR Unexpected nested template section.");
    EXPECT_EQ(Generated("<%pageheader x"), "ERROR Could not find element closing bracket '%>'.");
    EXPECT_EQ(Generated("<%pageheaderx"), ""); // the keyword itself is cut off
    CTemplateSectionPageHeader header;
    header.Clear();
    CTestIterator iterator;
    CRecordingGenerator generator;
    EXPECT_EQ(header.GenerateToString(iterator, generator), "{pageheader}");
}

TEST(TemplateFurniture, ElementsWriteWhatTheGeneratorMakesOfThem)
{
    const struct {
        const char* page;
        const char* expected;
    } rows[] = {
        {R"(<%banner width="468" height="60"%>)", "{banner 468|60}"},
        {R"(<%banner width="abc" height="" extra="x"%>)", "{banner abc|}"},
        {R"(<%banner width="468"%>)", "ERROR Required attribute not found 'height'."},
        {R"(<%advertisement name="top"%>)", "{advertisement top}"},
        {R"(<%advertisement name=""%>)", "{advertisement }"},
        {R"(<%advertisement name="top" extra="x"%>)", "ERROR Unknown attribute 'extra'."},
        {R"(<%javastring value="a\b\\c"%>)", R"(a\\b\\\\c)"},
        {R"(<%javastring value="\"%>)", R"(\\)"},
        {R"(<%javastring value="\\\"%>)", R"(\\\\\\)"},
        {R"(<%javastring value='"quoted"'%>)", R"("quoted")"},
        {R"(<%javastring value="" extra="x"%>)", ""},
        {R"(<%javastring value="<%=gallery.path%>\"%>)", R"(C:\\x\\)"},
    };
    for (const auto& row : rows) {
        CTestIterator iterator;
        iterator.gallery.Set(QStringLiteral("path"), QStringLiteral("C:\\x"));
        EXPECT_EQ(Generated(row.page, iterator), row.expected) << row.page;
    }
}

TEST(TemplateFurniture, AGeneratorThatOnlyConvertsWritesNothing)
{
    const Page page = ParsePage(
        R"(<%pageheader%><%banner width="1" height="2"%><%advertisement name="a"%>)"
        R"(<%picture id="a" width="1" height="1" href="<%=gallery.x%>"%>)"
        R"(<%textspan property="a.b" default="c" name="d"%>)"
        R"(<%imgref name="a" href_property="b.c" src="d" alt_property="e.f" default_href="g")"
        R"( default_alt="h" id="i"%>)"
        R"(<%textref name="a" href_property="b.c" default_href="d" id="e" text="f.g" default_text="h"%>)"
        R"(<%navigationtable max_pages_count="1" page_image_selected="" previous_image="")"
        R"( next_image="" page_image="" first_image="" last_image="" previous_page_alt="")"
        R"( next_page_alt="" page_alt="" first_page_alt="" last_page_alt=""%>)");
    CTestIterator iterator;
    CContentGeneratorStringConverter generator;
    iterator.Reset();
    page->Bind(iterator, generator);
    EXPECT_EQ(iterator.GetPicturesPerPage(), 1);
    EXPECT_EQ(page->GenerateToString(iterator, generator), "");
}
