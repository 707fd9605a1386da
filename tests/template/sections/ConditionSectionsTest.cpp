#include "template/sections/ConditionSections.h"

#include "PageRun.h"
#include "template/parser/CompoundTemplateSection.h"

TEST(TemplateCondition, IfTakesTheBranchThatItsFirstChildDecides)
{
    const struct {
        const char* page;
        const char* expected;
    } rows[] = {
        {"<%if %>", ""},
        {"<%if%>", ""},
        {"<%if <%=gallery.title%>A%>", "A"},
        {"<%if <%=gallery.missing%>A%>", ""},
        {"<%if <%=gallery.empty%>A<%else B%>%>", "B"},
        {"<%if <%=nobody.x%>A<%else B%>%>", "A"}, // the message of an unknown object is a text
        {"<%if <%=gallery.zero%>A<%else B%>%>", "A"},
        {"<%if <%=gallery.blank%>A<%else B%>%>", "A"},
        {"<%if <%=gallery.false%>A<%else B%>%>", "A"},
        {R"(<%if <%isequal property1="a" property2="b"%><%else no%>%>)", "no"},
        {R"(<%if <%isequal property1="a" property2="a"%>yes<%else no%>%>)", "yes"},
        {R"(<%if <%isequal property1="<%=page.index%>" property2="0"%>first%>)", "first"},
        // Text in front of the test is the condition, and true.
        {"<%if x<%=gallery.title%>%>", "T"},
        {"<%if x<%=gallery.missing%>A<%else B%>%>", "A"},
        {"<%if  <%=gallery.missing%>A<%else B%>%>", "A"},
        {"<%if x%>", ""},
        // Text after the else belongs to the then branch.
        {"<%if <%=gallery.title%>A<%else B%>C%>", "AC"},
        {"<%if <%=gallery.missing%>A<%else B%>C%>", "B"},
        {"<%if <%=gallery.missing%>A<%else%>B%>", ""},
        {"<%if <%=gallery.title%>A<%else%>B%>", "AB"},
        // An else that comes first is the condition.
        {"<%if <%else x%>A%>", "A"},
        {"<%if <%else%>A<%else B%>%>", "B"},
        {"<%if <%pageheader%>A%>", "A"},
        // Nested.
        {"<%if <%=gallery.title%>(<%if <%=gallery.missing%>A<%else B%>%>)%>", "(B)"},
        {"<%if <%=gallery.missing%>A<%else <%if <%=gallery.title%>B<%else C%>%>%>%>", "B"},
        {"<%if <%if <%=gallery.title%>x%>A%>", "A"},
        {"<%if <%if <%=gallery.missing%>x%>A<%else B%>%>", "B"},
        {"<%if <%=gallery.title%>A<%else B%><%else C%>%>", "ERROR Unexpected <%else%> element found."},
        // Outside an if, an else is just its content.
        {"a<%else b%>c", "abc"},
    };
    for (const auto& row : rows) {
        CTestIterator iterator;
        iterator.gallery.Set(QStringLiteral("title"), QStringLiteral("T"));
        iterator.gallery.Set(QStringLiteral("empty"), QStringLiteral(""));
        iterator.gallery.Set(QStringLiteral("zero"), 0);
        iterator.gallery.Set(QStringLiteral("blank"), QStringLiteral(" "));
        iterator.gallery.Set(QStringLiteral("false"), QStringLiteral("false"));
        EXPECT_EQ(Generated(row.page, iterator), row.expected) << row.page;
    }
}

TEST(TemplateCondition, TheNameOfAnElseGoesWithoutCase)
{
    CTemplateSectionIf section;
    section.AddSection("variable", nullptr); // still no condition
    section.AddSection("", std::make_unique<CTemplateSectionText>("", 0));
    section.AddSection("ELSE", std::make_unique<CTemplateSectionText>("B", 1));
    section.AddSection(nullptr, std::make_unique<CTemplateSectionText>("A", 1));
    CTestIterator iterator;
    CRecordingGenerator generator;
    EXPECT_EQ(section.GenerateToString(iterator, generator), "B");
    EXPECT_THROW(section.AddSection("eLsE", nullptr), CTemplateParsingException);
    section.Clear();
    EXPECT_EQ(section.GenerateToString(iterator, generator), "");
}

TEST(TemplateCondition, TheConditionIsEvaluatedInEachPassAndNeverBound)
{
    const std::string picture = R"(<%picture id="p" width="1" height="1" href=""%>)";
    CTestIterator iterator;
    const Page page = ParsePage("<%if " + picture + "A<%else B%>%>");
    EXPECT_EQ(GeneratePage(*page, iterator), "B"); // nothing is bound, so the picture writes nothing
    EXPECT_TRUE(iterator.bound.empty());

    const Page variable = ParsePage("<%if <%=gallery.x%>A%>");
    iterator.asked.clear();
    GeneratePage(*variable, iterator);
    EXPECT_EQ(iterator.asked, std::vector<QString>(2, QStringLiteral("gallery.x")));
}

TEST(TemplateCondition, BindGoesIntoTheBranchThatHolds)
{
    CTestIterator iterator;
    const auto picture = [](const std::string& id) {
        return "<%picture id=\"" + id + R"(" width="1" height="1" href=""%>)";
    };
    const Page page =
        ParsePage("<%if <%=gallery.x%>" + picture("yes") + "<%else " + picture("no") + "%>" + "%>");
    GeneratePage(*page, iterator);
    EXPECT_EQ(iterator.bound, std::vector<QString>{QStringLiteral("no")});
    iterator.gallery.Set(QStringLiteral("x"), 1);
    GeneratePage(*page, iterator);
    EXPECT_EQ(iterator.bound, std::vector<QString>{QStringLiteral("yes")});
}

TEST(TemplateCondition, IsEqualComparesBytes)
{
    const struct {
        const char* first;
        const char* second;
        const char* expected;
    } rows[] = {
        {"a", "a", "1"},
        {"", "", "1"},
        {"a", "A", ""},
        {"a", "a ", ""},
        {"1", "01", ""},
        {"gallery.title", "T", ""}, // a text, not a path
        {"<%=gallery.title%>", "T", "1"},
        {"<%=GALLERY.TITLE%>", "<%=gallery.title%>", "1"},
        {"<%=page.index%>", "0", "1"},
        {"\xc3\xa9", "\xc3\xa9", "1"},
        {"\xc3\xa9", "e", ""},
    };
    for (const auto& row : rows) {
        CTestIterator iterator;
        iterator.gallery.Set(QStringLiteral("title"), QStringLiteral("T"));
        EXPECT_EQ(Generated("<%isequal property1=\"" + std::string(row.first) + "\" property2=\"" +
                                row.second + "\"%>",
                            iterator),
                  row.expected)
            << row.first << ' ' << row.second;
    }
}

TEST(TemplateCondition, IsVisibleAsksTheIteratorForTheName)
{
    CTestIterator iterator;
    iterator.hiddenElements.insert(QStringLiteral("menu"));
    EXPECT_EQ(Generated(R"(<%isvisible layout="header"%>)", iterator), "1");
    EXPECT_EQ(Generated(R"(<%isvisible layout="menu"%>)", iterator), "");
    EXPECT_EQ(Generated(R"(<%isvisible layout="col<%=page.number%>"%>)", iterator), "1");
    EXPECT_EQ(Generated(R"(<%if <%isvisible layout="menu"%>shown<%else hidden%>%>)", iterator), "hidden");
    EXPECT_EQ(iterator.askedLayout,
              (std::vector<QString>{QStringLiteral("header"), QStringLiteral("menu"), QStringLiteral("col1"),
                                    QStringLiteral("menu"), QStringLiteral("menu")}));
}
