#include "PageRun.h"
#include "support/ScratchFolder.h"

namespace {

const char ComplexPage[] =
    "<html><%pageheader x%>\r\n<%=gallery.<%=page.index%>%>\xc3\xa9"
    "<%if <%isequal property1=\"<%=page.index%>\" property2=\"0\"%>A<%else <%include "
    "file=\"part.html\"%>%>B%>"
    "<%picture id=\"p<%=page.number%>\" height='1' width=\"2\" href=\"<%relative_page position=\"1\"%>\""
    " image_reference=\"-1\" reference_block_size=\"2\" alt=\"<%if <%=gallery.x%>y%>\"%>"
    "<%textspan property=\"a.b\"default=\"\"name='n'max_chars=\"3\"multiline=\"true\"%>"
    "<%textproperty property=\"gallery.a\" default=\"<%javastring value=\"a\\b\"%>\"%>"
    "<%imgref name=\"a\" href_property=\"b.c\" src=\"d\" alt_property=\"e.f\" default_href=\"g\""
    " default_alt=\"h\" id=\"i\"%>"
    "<%textref name=\"a\" href_property=\"b.c\" default_href=\"d\" id=\"e\" text=\"f.g\" default_text=\"h\"%>"
    "<%navigationtable max_pages_count=\"-1\" page_image_selected=\"1\" previous_image=\"2\""
    " next_image=\"3\" page_image=\"4\" first_image=\"5\" last_image=\"6\" previous_page_alt=\"7\""
    " next_page_alt=\"8\" page_alt=\"9\" first_page_alt=\"10\" last_page_alt=\"11\"%>"
    "<%banner width=\"468\" height=\"60\"%><%advertisement name=\"top\"%>"
    "<%relative_page_block position=\"-5\"%><%if <%isvisible layout=\"menu\"%>menu%></html>\r\n";

// Parses and generates two pages. The only failure that markup may cause is a CTemplateParsingException, and
// its offsets lie in the page.
void RunPage(const std::string& bytes)
{
    CTestIterator iterator;
    try {
        const Page page = ParsePage(bytes);
        GeneratePage(*page, iterator, 0);
        GeneratePage(*page, iterator, 1);
    } catch (const CTemplateParsingException& error) {
        EXPECT_FALSE(error.GetDescription().isEmpty());
        EXPECT_LE(error.errorStart, error.errorEnd);
        EXPECT_LE(error.errorEnd, bytes.size());
    }
}

} // namespace

TEST(PageRobustness, TheComplexPageItselfIsWhole)
{
    EXPECT_EQ(ParseError(ComplexPage), "no error");
}

TEST(PageRobustness, EveryPrefixOfAPageParsesOrSaysWhy)
{
    const std::string page = ComplexPage;
    for (size_t length = 0; length <= page.size(); ++length) {
        RunPage(page.substr(0, length));
    }
}

TEST(PageRobustness, EverySuffixOfAPageParsesOrSaysWhy)
{
    const std::string page = ComplexPage;
    for (size_t start = 0; start <= page.size(); ++start) {
        RunPage(page.substr(start));
    }
}

TEST(PageRobustness, EveryByteInEveryPlaceOfASmallPageIsTaken)
{
    const std::string page = "a<%picture id=\"<%=page.index%>\" height='1' width=\"2\" href=\"\"%>"
                             "<%if <%=gallery.x%>b<%else c%>%>";
    for (size_t position = 0; position < page.size(); ++position) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string changed = page;
            changed[position] = static_cast<char>(byte);
            RunPage(changed);
        }
    }
}

TEST(PageRobustness, EveryDeletedOrDoubledByteIsTaken)
{
    const std::string page = ComplexPage;
    for (size_t position = 0; position < page.size(); ++position) {
        std::string changed = page;
        changed.erase(position, 1);
        RunPage(changed);
        RunPage(page.substr(0, position + 1) + page.substr(position));
    }
}

TEST(PageRobustness, LongAndOddInputsAreTaken)
{
    const size_t many = 200'000;
    std::string brackets;
    for (size_t i = 0; i < many; ++i) {
        brackets += "<%>";
    }
    RunPage(brackets);
    RunPage(std::string(many, '<'));
    RunPage(std::string(many, '%'));
    RunPage(std::string(many, '\0'));
    RunPage("<%" + std::string(many, 'x'));
    RunPage("<%" + std::string(many, 'x') + " %>");
    RunPage("<%banner " + std::string(many, 'x') + "=\"" + std::string(many, 'y') + "\"%>");
    RunPage("<%=" + std::string(many, '.') + "%>");
    RunPage("\xef\xbb\xbf<html>"); // a byte order mark is text
}
