#include "template/parser/TemplateAttributeParser.h"

#include "PageRun.h"
#include "template/parser/CompoundTemplateSection.h"

namespace {

// "name|value", "unfinished", or the description of the error.
std::string Parsed(const std::string& bytes)
{
    CTemplateAttributeParser parser;
    try {
        for (const char c : bytes) {
            if (parser.Feed(c)) {
                CTestIterator iterator;
                CRecordingGenerator generator;
                return parser.GetName() + "|" + parser.TakeValue()->GenerateToString(iterator, generator);
            }
        }
    } catch (const CTemplateParsingException& error) {
        return Narrow(error.GetDescription());
    }
    return "unfinished";
}

} // namespace

TEST(TemplateAttributeParser, ReadsOneAttributeOrSaysWhatIsWrong)
{
    const struct {
        const char* bytes;
        const char* expected; // "name|value", or the description of the error
    } rows[] = {
        // Between attributes.
        {R"(id="a")", "id|a"},
        {" \t\r\n\v\fid=\"a\"", "id|a"},
        {R"(2?_="%<>/id="")", "id|"},
        {"\xc3\xa9id=\"a\"", "id|a"},
        {"", "unfinished"},
        {"  ", "unfinished"},
        // In a name.
        {R"(Ab_9-:.="v")", "Ab_9-:.|v"},
        {"i\xc3\xa9=\"v\"", "i\xc3\xa9|v"},
        {R"(id)", "unfinished"},
        {R"(id ="a")", "Invalid character ' ' found in attribute name."},
        {"id\n=\"a\"", "Invalid character '\n' found in attribute name."},
        {R"(id"a")", "Invalid character '\"' found in attribute name."},
        {R"(id'a')", "Invalid character ''' found in attribute name."},
        // After "=".
        {R"(id=)", "unfinished"},
        {R"(id= "a")", "Opening quotation mark not found in attribute id value."},
        {R"(id=5)", "Opening quotation mark not found in attribute id value."},
        {R"(id=="a")", "Opening quotation mark not found in attribute id value."},
        {"i\xff=5", "Opening quotation mark not found in attribute i\xef\xbf\xbd value."},
        // In a value.
        {R"(id="a)", "unfinished"},
        {R"(id='say "hi"')", R"(id|say "hi")"},
        {R"(id="it's")", "id|it's"},
        {R"(id="a = <b> \" )", R"(id|a = <b> \)"},
        {"id=\"\xc3\xa9\n\xff\"", "id|\xc3\xa9\n\xff"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Parsed(row.bytes), row.expected) << row.bytes;
    }
}

TEST(TemplateAttributeParser, AfterAResetReadsTheNextAttribute)
{
    CTemplateAttributeParser parser;
    for (const char c : std::string("a=\"1\"")) {
        parser.Feed(c);
    }
    EXPECT_THROW(parser.Feed('x'), CUnexpectedException);
    parser.Reset();
    EXPECT_EQ(parser.GetName(), "");
    EXPECT_FALSE(parser.Feed('b'));
    EXPECT_EQ(parser.GetName(), "b");
}

TEST(TemplateAttributeParser, TakesAnElementInAValueOnly)
{
    const struct {
        const char* before;
        const char* expected; // description of the error, or ""
    } rows[] = {
        {"", "Opening quotation mark not found in attribute  value."},
        {"id", "Opening quotation mark not found in attribute id value."},
        {"id=", "Opening quotation mark not found in attribute id value."},
        {"id=\"", ""},
        {"id='x", ""},
        {"id='x'", "Opening quotation mark not found in attribute id value."},
    };
    for (const auto& row : rows) {
        CTemplateAttributeParser parser;
        for (const char c : std::string(row.before)) {
            parser.Feed(c);
        }
        std::string description;
        try {
            parser.AddSection(std::make_unique<CTemplateSectionText>("t", 1));
        } catch (const CTemplateParsingException& error) {
            description = Narrow(error.GetDescription());
        }
        EXPECT_EQ(description, row.expected) << row.before;
    }
}

TEST(TemplateAttributeParser, AValueWithElementsKeepsTextAndElementsInOrder)
{
    EXPECT_EQ(Generated(R"(<%javastring value="<%=page.index%>"%>)"), "0");
    EXPECT_EQ(Generated(R"(<%javastring value="a<%=page.index%>b<%=page.number%><%=page.index%>c"%>)"),
              "a0b10c");
    EXPECT_EQ(Generated(R"(<%javastring value=""%>)"), "");
}
