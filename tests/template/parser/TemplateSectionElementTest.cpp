#include "template/parser/TemplateSectionElement.h"

#include <sstream>

#include "PageRun.h"

namespace {

struct ElementRow {
    const char* keyword;
    std::vector<std::string> required; // in the order in which they are missed
    std::vector<std::string> optional;
    bool strict; // an attribute that nobody claims is an error
};

const std::vector<ElementRow>& Elements()
{
    static const std::vector<ElementRow> rows = {
        {"textspan", {"property", "default", "name"}, {"max_chars", "multiline"}, true},
        {"textproperty", {"property", "default"}, {}, false},
        {"picture",
         {"id", "height", "width", "href"},
         {"image_reference", "reference_block_size", "alt"},
         true},
        {"navigationtable",
         {"max_pages_count", "page_image_selected", "previous_image", "next_image", "page_image",
          "first_image", "last_image", "previous_page_alt", "next_page_alt", "page_alt", "first_page_alt",
          "last_page_alt"},
         {},
         true},
        {"isvisible", {"layout"}, {}, false},
        {"relative_page", {"position"}, {}, true},
        {"relative_page_block", {"position"}, {}, true},
        {"isequal", {"property1", "property2"}, {}, false},
        {"imgref",
         {"name", "href_property", "src", "alt_property", "default_href", "default_alt", "id"},
         {},
         true},
        {"textref", {"name", "href_property", "default_href", "id", "text", "default_text"}, {}, true},
        {"banner", {"width", "height"}, {}, false},
        {"include", {"file"}, {}, false},
        {"javastring", {"value"}, {}, false},
        {"advertisement", {"name"}, {}, true},
    };
    return rows;
}

struct Values {
    std::string text;
    std::optional<std::string> perhaps = "not evaluated";
    int32_t number = 7;
    bool flag = true;
    std::string apart = "not evaluated";
};

// An element with a value of each kind. Writes them all.
class CValuesElement final : public CTemplateSectionElement {
public:
    CValuesElement() : CTemplateSectionElement(GetTable()) {}

    void Generate(CImageIterator& iterator, CContentGenerator& generator, std::ostream& out) override
    {
        const Values values = EvaluateAll(GetTable(), iterator, generator);
        out << values.text << '|' << values.perhaps.value_or("nothing") << '|' << values.number << '|'
            << (values.flag ? "yes" : "no") << '|' << values.apart << '|'
            << (Has("apart") ? "given" : "none");
    }

    std::string EvaluateOne(std::string_view name)
    {
        CTestIterator iterator;
        CRecordingGenerator generator;
        return Evaluate(name, iterator, generator);
    }

private:
    static const ValueTable<Values>& GetTable()
    {
        static const ValueTable<Values> table = {OtherAttributes::Refused,
                                                 {{"flag", AttributeRow::Optional, &Values::flag},
                                                  {"text", 2, &Values::text},
                                                  {"number", 1, &Values::number},
                                                  {"perhaps", AttributeRow::Optional, &Values::perhaps},
                                                  {"apart", AttributeRow::Optional, EvaluatedApart}}};
        return table;
    }
};

// What an element with these attributes writes, or what is wrong with it.
std::string Written(CValuesElement& element, const std::string& attributes)
{
    CTestIterator iterator;
    CRecordingGenerator generator;
    std::istringstream stream(attributes + "%>");
    try {
        element.Parse(stream);
        return element.GenerateToString(iterator, generator);
    } catch (const CTemplateParsingException& error) {
        return Narrow(error.GetDescription());
    }
}

using Names = std::vector<std::string>;

std::string Element(const std::string& keyword, const Names& attributes, const Names& more = {})
{
    std::string element = "<%" + keyword + " ";
    for (const Names* names : {&attributes, &more}) {
        for (const std::string& name : *names) {
            element += name + "=\"a.b\" ";
        }
    }
    return element + "%>";
}

std::string ErrorOf(const std::string& page)
{
    const std::string error = ParseError(page);
    return error.substr(0, error.find(" ["));
}

} // namespace

TEST(TemplateElement, ReportsTheFirstMissingAttributeInTheOrderOfClaiming)
{
    for (const ElementRow& row : Elements()) {
        for (size_t given = 0; given < row.required.size(); ++given) {
            const std::string missing = "Required attribute not found '" + row.required[given] + "'.";
            const auto split = row.required.begin() + static_cast<ptrdiff_t>(given);
            EXPECT_EQ(ErrorOf(Element(row.keyword, Names(row.required.begin(), split))), missing)
                << row.keyword;
            // All others are there.
            EXPECT_EQ(ErrorOf(Element(row.keyword, Names(row.required.begin(), split),
                                      Names(split + 1, row.required.end()))),
                      missing)
                << row.keyword;
        }
        EXPECT_EQ(ErrorOf(Element(row.keyword, row.optional)),
                  "Required attribute not found '" + row.required.front() + "'.")
            << row.keyword;
    }
}

TEST(TemplateElement, TakesItsRequiredAndOptionalAttributesInAnyOrder)
{
    for (const ElementRow& row : Elements()) {
        EXPECT_EQ(ErrorOf(Element(row.keyword, row.required)), "no error") << row.keyword;
        EXPECT_EQ(ErrorOf(Element(row.keyword, row.required, row.optional)), "no error") << row.keyword;
        const Names reversed(row.required.rbegin(), row.required.rend());
        EXPECT_EQ(ErrorOf(Element(row.keyword, row.optional, reversed)), "no error") << row.keyword;
    }
}

TEST(TemplateElement, OnlyTheStrictElementsRefuseAnUnknownAttribute)
{
    for (const ElementRow& row : Elements()) {
        EXPECT_EQ(ErrorOf(Element(row.keyword, {"zz"}, row.required)),
                  row.strict ? "Unknown attribute 'zz'." : "no error")
            << row.keyword;
        // Of several the first in byte order, so capitals come first.
        EXPECT_EQ(ErrorOf(Element(row.keyword, {"aa", "zz", "Zz"}, row.required)),
                  row.strict ? "Unknown attribute 'Zz'." : "no error")
            << row.keyword;
        // A missing attribute is found before an unknown one.
        EXPECT_EQ(ErrorOf(Element(row.keyword, {"aa"})),
                  "Required attribute not found '" + row.required.front() + "'.")
            << row.keyword;
        // Names of attributes go with their case.
        EXPECT_EQ(ErrorOf(Element(row.keyword, row.required, {"ID"})),
                  row.strict ? "Unknown attribute 'ID'." : "no error")
            << row.keyword;
    }
}

TEST(TemplateElement, RefusesAnAttributeGivenTwice)
{
    for (const ElementRow& row : Elements()) {
        EXPECT_EQ(ErrorOf(Element(row.keyword, row.required, {row.required.back()})),
                  "Duplicate attribute found '" + row.required.back() + "'.")
            << row.keyword;
        EXPECT_EQ(ErrorOf(Element(row.keyword, {"qq", "qq"})), "Duplicate attribute found 'qq'.")
            << row.keyword;
    }
}

TEST(TemplateElement, MustBeClosedAtTheEndOfTheInput)
{
    for (const ElementRow& row : Elements()) {
        const std::string keyword = row.keyword;
        EXPECT_EQ(ErrorOf("<%" + keyword + " "), "Could not find element closing bracket '%>'.") << keyword;
        EXPECT_EQ(ErrorOf("<%" + keyword + " x=\"y\" %"), "Could not find element closing bracket '%>'.")
            << keyword;
        EXPECT_EQ(ErrorOf("<%" + keyword), "no error") << keyword; // the keyword itself is cut off
    }
}

TEST(TemplateElement, ReadsAttributesInAllTheFormsThatLayoutsUse)
{
    const struct {
        const char* page;
        const char* expected;
    } rows[] = {
        {R"(<%textspan property="a.b"default="c" name="d"%>)", "{textspan d|a.b|c|0|line}"},
        {R"(<%textspan property='a.b' default="" name='d'%>)", "{textspan d|a.b||0|line}"},
        {R"(<%textspan , property="a.b"/default="c";name="d" ?%>)", "{textspan d|a.b|c|0|line}"},
        {"<%textspan\r\n\tproperty=\"a.b\"\r\n\tdefault=\"c\"\r\n\tname=\"d\"\r\n%>",
         "{textspan d|a.b|c|0|line}"},
        {R"(<%banner width="<b>" height='"'%>)", "{banner <b>|\"}"},
        // An attribute that is still being read when the bracket comes is dropped without a word.
        {"<%picture id%>", "ERROR Required attribute not found 'id'."},
        {"<%picture id=%>", "ERROR Required attribute not found 'id'."},
        {"<%picture id=\"a%>", "ERROR Required attribute not found 'id'."},
        {R"(<%advertisement name="a" nam%>)", "{advertisement a}"},
        {R"(<%advertisement name="a" other="%>)", "{advertisement a}"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Generated(row.page), row.expected) << row.page;
    }
}

TEST(TemplateElement, ItsTextEndsAtANulByte)
{
    using namespace std::string_literals;
    EXPECT_EQ(Generated("<%advertisement name=\"a\" \0 other=\"b\"%>"s), "{advertisement a}");
    EXPECT_EQ(Generated("<%advertisement name=\"a\0\"%>"s), "ERROR Required attribute not found 'name'.");
}

TEST(TemplateElement, AnElementInAValueIsNoEndOfTheAttribute)
{
    EXPECT_EQ(Generated(R"(<%advertisement name="a<%javastring value="b"%>c"%>)"), "{advertisement abc}");
    EXPECT_EQ(Generated(R"(<%advertisement name='<%advertisement name='x'%>'%>)"),
              "{advertisement {advertisement x}}");
}

TEST(TemplateElement, ItsTableSaysWhatBecomesOfEachAttribute)
{
    const struct {
        const char* attributes;
        const char* expected;
    } rows[] = {
        {R"(text="t" number="12x" perhaps="p" flag="true" apart="a")", "t|p|12|yes|not evaluated|given"},
        {R"(text="" number="" perhaps="" flag="")", "||0|no|not evaluated|none"},
        {R"(text="t" number="x")", "t|nothing|0|no|not evaluated|none"},
        {R"(perhaps="p")", "Required attribute not found 'number'."},
        {R"(number="1")", "Required attribute not found 'text'."},
        {R"(text="t" number="1" Text="t")", "Unknown attribute 'Text'."},
    };
    for (const auto& row : rows) {
        CValuesElement element;
        EXPECT_EQ(Written(element, row.attributes), row.expected) << row.attributes;
    }
}

TEST(TemplateElement, HasNoAttributesBeforeItIsClosedAndAfterAClear)
{
    CValuesElement element;
    EXPECT_EQ(element.EvaluateOne("text"), "");
    EXPECT_EQ(Written(element, R"(text="t" number="1")"), "t|nothing|1|no|not evaluated|none");
    EXPECT_EQ(element.EvaluateOne("text"), "t");
    element.Clear();
    EXPECT_EQ(element.EvaluateOne("text"), "");
}

TEST(TemplateElement, ANameThatItsTableLacksIsAFaultOfTheProgram)
{
    CValuesElement element;
    EXPECT_THROW(element.EvaluateOne("texts"), CUnexpectedException);
}
