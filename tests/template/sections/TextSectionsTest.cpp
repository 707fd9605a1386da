#include "template/sections/TextSections.h"

#include "PageRun.h"

namespace {

// "<%keyword a="<%=gallery.a%>" b=...%>": each attribute asks for a variable of its own name.
std::string Echoing(const std::string& keyword, const std::vector<std::string>& attributes)
{
    std::string element = "<%" + keyword;
    for (const std::string& name : attributes) {
        element += " " + name + "=\"<%=gallery." + name + "%>\"";
    }
    return element + "%>";
}

struct OrderRow {
    const char* keyword;
    std::vector<std::string> order;
    const char* expected;
};

void CheckOrder(const OrderRow& row)
{
    CTestIterator iterator;
    iterator.echoesGallery = true;
    const std::vector<std::string> reversed(row.order.rbegin(), row.order.rend());
    EXPECT_EQ(Generated(Echoing(row.keyword, reversed), iterator), row.expected);
    std::vector<QString> asked;
    for (const std::string& name : row.order) {
        asked.push_back(QString::fromStdString("gallery." + name));
    }
    EXPECT_EQ(iterator.asked, asked) << row.keyword;
}

} // namespace

TEST(TemplateText, ElementsEvaluateTheirAttributesInOrderAndCallTheGeneratorOnce)
{
    const OrderRow rows[] = {
        {"imgref",
         {"name", "id", "src", "href_property", "alt_property", "default_href", "default_alt"},
         "{imgref [id]|[name]|[src]|[href_property]|[default_href]|[alt_property]|[default_alt]}"},
        {"textref",
         {"name", "id", "href_property", "default_href", "text", "default_text"},
         "{textref [id]|[name]|[href_property]|[default_href]|[text]|[default_text]}"},
        {"textspan",
         {"property", "default", "name", "multiline", "max_chars"},
         "{textspan [name]|[property]|[default]|0|line}"},
        {"textspan", {"property", "default", "name"}, "{textspan [name]|[property]|[default]|0|line}"},
        {"banner", {"height", "width"}, "{banner [width]|[height]}"},
        {"advertisement", {"name"}, "{advertisement [name]}"},
        {"navigationtable",
         {"max_pages_count", "previous_image", "next_image", "page_image", "page_image_selected",
          "first_image", "last_image", "previous_page_alt", "next_page_alt", "page_alt", "first_page_alt",
          "last_page_alt"},
         "{navigationtable 0|[previous_image]|[next_image]|[page_image]|[page_image_selected]|"
         "[first_image]|[last_image]|[previous_page_alt]|[next_page_alt]|[page_alt]|[first_page_alt]|"
         "[last_page_alt]}"},
        {"isequal", {"property1", "property2"}, ""},
    };
    for (const OrderRow& row : rows) {
        CheckOrder(row);
    }
}

TEST(TemplateText, TextSpanConvertsItsNumbersAndItsFlag)
{
    const struct {
        const char* attributes;
        const char* expected;
    } rows[] = {
        {"", "{textspan n|a.b|d|0|line}"},
        {R"(max_chars="12")", "{textspan n|a.b|d|12|line}"},
        {R"(max_chars="")", "{textspan n|a.b|d|0|line}"},
        {R"(max_chars="many")", "{textspan n|a.b|d|0|line}"},
        {R"(max_chars="-3")", "{textspan n|a.b|d|-3|line}"},
        {R"(max_chars="99999999999")", "{textspan n|a.b|d|2147483647|line}"},
        {R"(multiline="true")", "{textspan n|a.b|d|0|multiline}"},
        {R"(multiline="True")", "{textspan n|a.b|d|0|line}"},
        {R"(multiline="true ")", "{textspan n|a.b|d|0|line}"},
        {R"(multiline="1")", "{textspan n|a.b|d|0|line}"},
        {R"(multiline="")", "{textspan n|a.b|d|0|line}"},
        {R"(multiline="tr<%else ue%>")", "{textspan n|a.b|d|0|multiline}"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Generated("<%textspan property=\"a.b\" default=\"d\" name=\"n\" " +
                            std::string(row.attributes) + "%>"),
                  row.expected)
            << row.attributes;
    }
}

TEST(TemplateText, TextPropertyShowsTheValueOrTheDefault)
{
    const struct {
        const char* property;
        const char* expected;
    } rows[] = {
        {"gallery.title", "<b>T</b></br>"},
        {"Gallery.TITLE", "<b>T</b></br>"},
        {"gallery.count", "7"},
        {"gallery.empty", ""}, // an empty string is a value
        {"gallery.missing", "default"},
        {"<%=gallery.path%>", "7"},
        {"nobody.x", "ERROR:Invalid object name: nobody."},
        {".x", "ERROR:Invalid object name: ."},
        {"title", "ERROR Invalid syntax of variable template section: title. Variable section syntax: "
                  "<%=object.variable_name%>."},
        {"", "ERROR Invalid syntax of variable template section: . Variable section syntax: "
             "<%=object.variable_name%>."},
    };
    for (const auto& row : rows) {
        CTestIterator iterator;
        iterator.gallery.Set(QStringLiteral("title"), QStringLiteral("<b>T</b></br>"));
        iterator.gallery.Set(QStringLiteral("count"), 7);
        iterator.gallery.Set(QStringLiteral("empty"), QStringLiteral(""));
        iterator.gallery.Set(QStringLiteral("path"), QStringLiteral("gallery.count"));
        EXPECT_EQ(
            Generated("<%textproperty property=\"" + std::string(row.property) + "\" default=\"default\"%>",
                      iterator),
            row.expected)
            << row.property;
    }
}

TEST(TemplateText, OnlyTextPropertyEvaluatesItsDefaultWhenNeeded)
{
    const std::string attributes = R"( property="gallery.a" default="<%=gallery.b%>" name="n"%>)";
    CTestIterator iterator;
    iterator.gallery.Set(QStringLiteral("a"), QStringLiteral("A"));
    EXPECT_EQ(Generated("<%textproperty" + attributes, iterator), "A");
    EXPECT_EQ(iterator.asked, std::vector<QString>{QStringLiteral("gallery.a")});
    iterator.asked.clear();
    EXPECT_EQ(Generated("<%textspan" + attributes, iterator), "{textspan n|gallery.a||0|line}");
    EXPECT_EQ(iterator.asked, std::vector<QString>{QStringLiteral("gallery.b")});
}

TEST(TemplateText, ADefaultIsWrittenUnchanged)
{
    CTestIterator iterator;
    iterator.gallery.Set(QStringLiteral("b"), QStringLiteral("M\u00fcller & <b>"));
    EXPECT_EQ(Generated(R"(<%textproperty property="gallery.a" default="- <%=gallery.b%> -"%>)", iterator),
              "- M\xc3\xbcller & <b> -");
}

TEST(TemplateEvaluation, AVariableShowsItsValueOrWhatIsWrongWithIt)
{
    const struct {
        const char* page;
        const char* expected;
    } rows[] = {
        {"<%=gallery.name%>", "Summer"},
        {"<%=GALLERY.NAME%>", "Summer"},
        {"<%=gallery.count%>", "42"},
        {"<%=gallery.markup%>", "a<b>&\"</br>"}, // never escaped
        {"<%=gallery.umlaut%>", "M\xc3\xbcller"},
        {"<%=gallery.M\xc3\x9cLLER%>", "found"},
        {"<%=gallery.a.b%>", "split at the first point"},
        {"<%=gallery.missing%>", ""},
        {"<%=gallery.%>", ""},
        {"<%=.title%>", "ERROR:Invalid object name: ."},
        {"<%=.%>", "ERROR:Invalid object name: ."},
        {"<%=nobody.title%>", "ERROR:Invalid object name: nobody."},
        {"<%= gallery.name%>", "ERROR:Invalid object name:  gallery."},
        {"<%=gallery.name %>", ""},
        {"<%=\xff.name%>", "ERROR:Invalid object name: \xef\xbf\xbd."},
        {"<%=gallery.<%=page.index%>%>", "zero"},
        {"<%=<%=gallery.object%>.name%>", "Summer"},
        {"<%=gallery.n<%else am%>e%>", "Summer"},
        {"<%=page.number%>/<%=page.index%> <%=page.file_name%>", "1/0 index.html"},
    };
    for (const auto& row : rows) {
        CTestIterator iterator;
        iterator.gallery.Set(QStringLiteral("name"), QStringLiteral("Summer"));
        iterator.gallery.Set(QStringLiteral("count"), 42);
        iterator.gallery.Set(QStringLiteral("markup"), QStringLiteral("a<b>&\"</br>"));
        iterator.gallery.Set(QStringLiteral("umlaut"), QStringLiteral("M\u00fcller"));
        iterator.gallery.Set(QStringLiteral("m\u00fcller"), QStringLiteral("found"));
        iterator.gallery.Set(QStringLiteral("a.b"), QStringLiteral("split at the first point"));
        iterator.gallery.Set(QStringLiteral("0"), QStringLiteral("zero"));
        iterator.gallery.Set(QStringLiteral("object"), QStringLiteral("gallery"));
        EXPECT_EQ(Generated(row.page, iterator), row.expected) << row.page;
    }
}

TEST(TemplateEvaluation, AVariableWithoutAPointIsAnErrorOfGenerationNotOfParsing)
{
    const struct {
        const char* page;
        const char* text;
    } rows[] = {
        {"a<%=gallery%>", "gallery"},
        {"<%=%>", ""},
        {"<%==%>", "="},
        {"<%=<%else %>%>", ""},
        {"<%=100% sure%>", "100% sure"},
        {"<%=%s%d%>", "%s%d"},
        {"<%=<%=gallery.missing%>%>", ""},
    };
    for (const auto& row : rows) {
        const Page page = ParsePage(row.page);
        CTestIterator iterator;
        try {
            GeneratePage(*page, iterator);
            FAIL() << row.page;
        } catch (const CTemplateParsingException& error) {
            EXPECT_EQ(Narrow(error.GetDescription()),
                      "Invalid syntax of variable template section: " + std::string(row.text) +
                          ". Variable section syntax: <%=object.variable_name%>.");
            EXPECT_EQ(error.errorStart, 0u);
            EXPECT_EQ(error.errorEnd, 0u);
        }
    }
}

TEST(TemplateEvaluation, AClearedVariableHasNoName)
{
    CTemplateSectionVariable variable;
    variable.AddText("=gallery.a", 10);
    variable.Clear();
    CTestIterator iterator;
    CRecordingGenerator generator;
    EXPECT_THROW(variable.GenerateToString(iterator, generator), CTemplateParsingException);
}
