#include "template/parser/TemplateSection.h"

#include <fstream>
#include <sstream>
#include <thread>

#include "PageRun.h"
#include "support/ScratchFolder.h"
#include "template/TemplateLanguage.h"
#include "template/parser/PageStream.h"

namespace {

// A root that shows its children: "T" for text, "N" for a missing section, otherwise the keyword in brackets.
class CListingSection final : public CCompoundTemplateSection {
public:
    void AddSection(const char* name, std::unique_ptr<CTemplateSection> section) override
    {
        list += !section ? "N" : name ? "[" + std::string(name) + "]" : "T";
        CCompoundTemplateSection::AddSection(name, std::move(section));
    }

    std::string list;
};

std::string ListChildren(const std::string& bytes)
{
    std::istringstream stream(bytes);
    CListingSection root;
    ParsePage(stream, root);
    return root.list;
}

std::string Repeated(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

} // namespace

TEST(TemplateParser, CutsAPageIntoTextsAndElements)
{
    const struct {
        const char* bytes;
        const char* children;
    } rows[] = {
        {"", "T"},
        {"plain", "T"},
        {"<%pageheader%>", "[pageheader]T"},
        {"a<%pageheader%>b", "T[pageheader]T"},
        {"<%pageheader%><%pageheader %>", "[pageheader][pageheader]T"},
        {"<%pageheader%>x<%pageheader%>", "[pageheader]T[pageheader]T"},
        {"<%=a.b%>", "[]T"},
        {"<%else never closed", "[else]"},
        {"a%>b<%pageheader%>", "T"},
        {"%>", ""},
        {"<%pageheader%>%>", "[pageheader]"},
        {"%", "T"},
        {"<", "T"},
        {"100% < 200 %", "T"},
        {"<%", "N"},
        {"x<%pageheader", "TN"},
        {"x<%pageheader%", "TN"},
        {"x<%NoSuchThing", "TN"},
        {"<%pageheader%>\n", "[pageheader]T"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ListChildren(row.bytes), row.children) << row.bytes;
    }
}

TEST(TemplateParser, CopiesTheBytesOfTextUnchanged)
{
    std::string all;
    for (int byte = 1; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    EXPECT_EQ(Generated(all), all);
    EXPECT_EQ(Generated("one\r\ntwo\rthree\n\n"), "one\r\ntwo\rthree\n\n");
    EXPECT_EQ(Generated("a < b % c > d %"), "a < b % c > d %");
    EXPECT_EQ(Generated(std::string(100'000, 'x')), std::string(100'000, 'x'));
}

TEST(TemplateParser, KnowsEveryKeywordAndOnlyInItsOwnCase)
{
    const char* const keywords[] = {
        "textspan", "textproperty", "picture",       "navigationtable", "pageheader",   "if",
        "else",     "isvisible",    "relative_page", "isequal",         "imgref",       "relative_page_block",
        "textref",  "banner",       "include",       "javastring",      "advertisement"};
    for (const std::string keyword : keywords) {
        EXPECT_EQ(ParseError("<%" + keyword + "%>").find("Unknown template section"), std::string::npos)
            << keyword;
        std::string upper = keyword;
        upper[0] = static_cast<char>(upper[0] - 'a' + 'A');
        EXPECT_EQ(ParseError("<%" + upper + " %>"),
                  "Unknown template section '" + upper + "'. [<%" + upper + " ]");
    }
}

TEST(TemplateParser, AKeywordEndsAtABlankOrAtTheClosingBracket)
{
    for (const char* blank : {"", " ", "\t", "\n", "\r", "\v", "\f", "\r\n"}) {
        EXPECT_EQ(Generated("<%pageheader" + std::string(blank) + "%>x"), "{pageheader}x") << blank;
    }
    const struct {
        const char* bytes;
        const char* error;
    } rows[] = {
        {"<%Picture id=\"a\"%>", "Unknown template section 'Picture'. [<%Picture ]"},
        {"<%%>", "Unknown template section ''. [<%]"},
        {"<% pageheader%>", "Unknown template section ''. [<% ]"},
        {"<%page%header %>", "Unknown template section 'page%header'. [<%page%header ]"},
        {"<%if<%=a.b%>%>", "Unknown template section 'if<%=a.b'. [<%if<%=a.b]"},
        {"<%pageheader\xc2\xa0 %>", "Unknown template section 'pageheader\xc2\xa0'. [<%pageheader\xc2\xa0 ]"},
        {"<%b\xff\xfe %>", "Unknown template section 'b\xef\xbf\xbd\xef\xbf\xbd'. [<%b\xff\xfe ]"},
        {"<%blogs %>", "Unknown template section 'blogs'. [<%blogs ]"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ParseError(row.bytes), row.error) << row.bytes;
    }
}

TEST(TemplateParser, MarksAnErrorWithTheBodyOfTheInnermostSection)
{
    const struct {
        const char* bytes;
        const char* error; // description and marked bytes
    } rows[] = {
        {"ab<%nothing x%>", "Unknown template section 'nothing'. [ab<%nothing ]"},
        {"ab<%else <%nothing%>%>", "Unknown template section 'nothing'. [<%nothing]"},
        {"ab<%pageheader <%=a.b%>%>", "Unexpected nested template section. [<%=a.b%>]"},
        {"<%textspan property=\"a\" property=\"b\"%>z", "Duplicate attribute found 'property'. "
                                                        "[property=\"a\" property=\"b\"%>]"},
        {"<%include x%>z", "Required attribute not found 'file'. [x%>]"},
        {"<%include f =\"x\"%>z", "Invalid character ' ' found in attribute name. [f =\"x\"%>]"},
        {"<%include f=x%>z", "Opening quotation mark not found in attribute f value. [f=x%>]"},
        {"<%include <%=a.b%>%>z", "Opening quotation mark not found in attribute  value. [<%=a.b%>]"},
        {"<%include f<%=a.b%>%>z", "Opening quotation mark not found in attribute f value. [f<%=a.b%>]"},
        {"<%advertisement name=\"a\" b=\"c\"%>z", "Unknown attribute 'b'. [name=\"a\" b=\"c\"%>]"},
        {"<%if <%=a.b%><%else%><%else%>%>z", "Unexpected <%else%> element found. [<%=a.b%><%else%><%else%>]"},
        {"a<%include file=\"x", "Could not find element closing bracket '%>'. [file=\"x]"},
        {"a<%=a.b", "Could not find element closing bracket '%>'. [=a.b]"},
        {"a<%if b", "Could not find element closing bracket '%>'. [b]"},
        {"a<%pageheader x", "Could not find element closing bracket '%>'. [x]"},
        {"a<%pageheader ", "Could not find element closing bracket '%>'. []"},
        // The element in the value sees the error first.
        {"a<%include file=\"<%javastring v=1%>\"%>",
         "Opening quotation mark not found in attribute v value. [v=1%>]"},
        {"a<%include file=\"<%javastring value=\"%>\"%>", "Required attribute not found 'value'. "
                                                          "[value=\"%>]"},
        {"a<%include file=\"<%bad %>\"%>", "Unknown template section 'bad'. [file=\"<%bad ]"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ParseError(row.bytes), row.error) << row.bytes;
    }
}

TEST(TemplateParser, AnErrorHasThreeTextsAndByteOffsets)
{
    try {
        ParsePage("\xc3\xa9\r\n<%include x");
        FAIL();
    } catch (const CTemplateParsingException& error) {
        EXPECT_EQ(error.GetCaption(), QStringLiteral("Template parsing error occured."));
        EXPECT_EQ(error.GetDescription(), QStringLiteral("Could not find element closing bracket '%>'."));
        EXPECT_EQ(error.GetAdvice(), QStringLiteral("Please contact template developer."));
        EXPECT_EQ(error.errorStart, 14u);
        EXPECT_EQ(error.errorEnd, 15u); // the size of the input
    }
}

TEST(TemplateParser, OffsetsInAFileCountItsBytesToTheVeryEnd)
{
    const CScratchFolder folder;
    const QByteArray bytes = QByteArray(20'000, 'x') + "\r\n<%include y";
    std::ifstream stream = OpenPageFile(folder.Write(QStringLiteral("page.html"), bytes));
    CCompoundTemplateSection root;
    try {
        ParsePage(stream, root);
        FAIL();
    } catch (const CTemplateParsingException& error) {
        EXPECT_EQ(error.errorStart, 20'012u);
        EXPECT_EQ(error.errorEnd, static_cast<uint64_t>(bytes.size()));
    }
}

TEST(TemplateParser, PutsABracketBackAcrossTheEdgeOfTheFileBuffer)
{
    const CScratchFolder folder;
    for (int padding = 8160; padding < 8200; ++padding) {
        const QByteArray bytes = QByteArray(padding, 'x') + "<%pageheader%>tail";
        std::ifstream stream = OpenPageFile(folder.Write(QStringLiteral("page.html"), bytes));
        CCompoundTemplateSection root;
        ParsePage(stream, root);
        CTestIterator iterator;
        EXPECT_EQ(GeneratePage(root, iterator),
                  std::string(static_cast<size_t>(padding), 'x') + "{pageheader}tail");
    }
}

TEST(TemplateParser, AStrayClosingBracketEndsThePageOrTheElse)
{
    EXPECT_EQ(Generated("a%>b<%pageheader%>"), "a");
    EXPECT_EQ(Generated("<%else a%>b"), "ab");
    EXPECT_EQ(Generated("<%else a %> b %> c"), "a  b ");
}

TEST(TemplateParser, LeavesTheRestOfTheStreamToTheCaller)
{
    std::istringstream stream("a%>rest");
    CCompoundTemplateSection root;
    ParsePage(stream, root);
    std::string rest;
    std::getline(stream, rest);
    EXPECT_EQ(rest, "rest");
}

TEST(TemplateParser, AnElseMayRunToTheEndOfThePage)
{
    EXPECT_EQ(Generated("a<%else b"), "ab");
    EXPECT_EQ(Generated("<%else b<%pageheader%>"), "b{pageheader}");
    // It takes the end of the input with it, so the "if" around it has no error either.
    EXPECT_EQ(Generated("<%if <%isequal property1=\"a\" property2=\"b\"%>yes<%else no"), "no");
}

TEST(TemplateParser, AnElementThatIsCutOffInItsKeywordGeneratesNothing)
{
    const struct {
        const char* bytes;
        const char* expected;
    } rows[] = {
        {"a<%", "a"},
        {"a<%pagehea", "a"},
        {"a<%pageheader", "a"},
        {"a<%=gallery.x<%", "a"}, // the variable has no value
        {"a<%if <%", "a"},
        {"a<%if x<%pic", "a"},
        {"a<%if <%=page.index%>x<%else y%>z<%else", "ERROR Unexpected <%else%> element found."},
        {"a<%else b<%", "ab"},
        {"a<%pageheader <%", "ERROR Unexpected nested template section."},
        {"a<%picture id<%", "ERROR Opening quotation mark not found in attribute id value."},
        {"a<%picture id=\"b<%", "a"},
        // What was read before counts as little as the rest.
        {"a<%picture id=\"b\" href=\"<%", "a"},
        {"a<%banner width=\"1\" height=\"<%", "a{banner |}"},
        {"a<%include file=\"<%", "a"},
        {"a<%javastring value=\"b<%", "a"},
        {"a<%textspan name=\"<%", "a{textspan |||0|line}"},
        {"a<%navigationtable max_pages_count=\"<%", "a{navigationtable 0|||||||||||}"},
        {"a<%relative_page position=\"<%", "aindex.html"},
        {"a<%relative_page_block position=\"<%", "aindex.html"},
        {"a<%imgref name=\"<%", "a{imgref ||||||}"},
        {"a<%textref name=\"<%", "a{textref |||||}"},
        {"a<%banner width=\"<%", "a{banner |}"},
        {"a<%advertisement name=\"<%", "a{advertisement }"},
        {"a<%isequal property1=\"<%", "a1"},
        {"a<%isvisible layout=\"<%", "a1"},
        {"a<%textproperty property=\"<%",
         "ERROR Invalid syntax of variable template section: . Variable section syntax: "
         "<%=object.variable_name%>."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Generated(row.bytes), row.expected) << row.bytes;
    }
}

TEST(TemplateParser, TakesElementsInElementsUpToItsLimit)
{
    // Variables in variables: the innermost name is wrong, so a page that was parsed says so.
    const auto nested = [](int levels) {
        return Repeated("<%=", levels) + Repeated("%>", levels);
    };
    EXPECT_EQ(ParseError(nested(MaxNestingDepth)), "no error");
    const std::string error = ParseError(nested(MaxNestingDepth + 1));
    EXPECT_EQ(error.substr(0, error.find(" [")),
              "Template sections are nested more than 256 levels deep, those of included files counted.");
    EXPECT_EQ(ParseError(Repeated("<%=", 100'000)).substr(0, 80), error.substr(0, 80));
    EXPECT_EQ(ParseError(Repeated("<%else ", 100'000)).substr(0, 80), error.substr(0, 80));
    EXPECT_EQ(ParseError(Repeated("<%javastring value=\"", 100'000)).substr(0, 80), error.substr(0, 80));
    // Elements beside each other are no nesting.
    EXPECT_EQ(Generated(Repeated("<%else a%>", 1000)), std::string(1000, 'a'));
}

TEST(TemplateParser, TheDeepestTreesCanBeBoundGeneratedAndDeletedOnAnyThread)
{
    const int levels = MaxNestingDepth;
    const struct {
        std::string page;
        const char* expected;
    } rows[] = {
        {Repeated("<%javastring value=\"", levels) + "x" + Repeated("\"%>", levels), "x"},
        {Repeated("<%else ", levels) + "x" + Repeated("%>", levels), "x"},
        {Repeated("<%if a", levels) + "x" + Repeated("%>", levels), ""},
        {Repeated("<%if <%else a%>", levels - 1) + "x" + Repeated("%>", levels - 1), "x"},
        {Repeated("<%if ", levels) + "x" + Repeated("%>", levels), ""},
    };
    for (const auto& row : rows) {
        std::string generated;
        std::thread([&] { generated = Generated(row.page); }).join();
        EXPECT_EQ(generated, row.expected) << row.page.substr(0, 30);
    }
}

TEST(TemplateParser, TakesAStreamThatCannotBeReadAsEmpty)
{
    std::istringstream failed("text");
    failed.setstate(std::ios::failbit);
    CListingSection root;
    ParsePage(failed, root);
    EXPECT_EQ(root.list, "");
}

TEST(TemplateParser, ARootOfWhichNobodyHasToldTheLanguageTakesTextAlone)
{
    CCompoundTemplateSection root;
    std::istringstream text("text");
    EXPECT_NO_THROW(root.Parse(text));
    std::istringstream element("<%pageheader%>");
    EXPECT_THROW(root.Parse(element), CUnexpectedException);
}
