#include <cmath>
#include <sstream>

#include "PageRun.h"
#include "template/parser/TemplateVariableName.h"
#include "template/sections/CompoundTemplateSectionWithClosingBracket.h"
#include "template/sections/TemplateSectionText.h"
#include "template/sections/TemplateSectionVariable.h"

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

TEST(TemplateEvaluation, AnErrorLeavesThePageHalfWritten)
{
    const Page page = ParsePage("first <%=broken%> last");
    CTestIterator iterator;
    CRecordingGenerator generator;
    std::ostringstream out;
    EXPECT_THROW(page->Generate(iterator, generator, out), CTemplateParsingException);
    EXPECT_EQ(out.str(), "first ");
}

TEST(TemplateEvaluation, AValueThatHasNoTextStopsThePage)
{
    const Page page = ParsePage("a<%=gallery.broken%>b");
    CTestIterator iterator;
    iterator.gallery.Set(QStringLiteral("broken"), CVariant::Real(std::nan("")));
    EXPECT_THROW(GeneratePage(*page, iterator), CExceptionBase);
}

TEST(TemplateEvaluation, AttributesAreEvaluatedAfreshOnEveryGeneration)
{
    const Page page = ParsePage(R"(<%advertisement name="<%=page.number%>"%>)");
    CTestIterator iterator;
    EXPECT_EQ(GeneratePage(*page, iterator, 0), "{advertisement 1}");
    EXPECT_EQ(GeneratePage(*page, iterator, 4), "{advertisement 5}");
}

TEST(TemplateEvaluation, TextWritesUpToItsFirstNulByte)
{
    using namespace std::string_literals;
    EXPECT_EQ(Generated("a\0b<%pageheader%>c"s), "a{pageheader}c");
    CTemplateSectionText text("ab", 2);
    text.AddText("cd", 1);
    CTestIterator iterator;
    CRecordingGenerator generator;
    EXPECT_EQ(text.GenerateToString(iterator, generator), "abc");
    text.Clear();
    EXPECT_EQ(text.GenerateToString(iterator, generator), "");
    EXPECT_THROW(text.AddSection("if", nullptr), CTemplateParsingException);
}

TEST(TemplateEvaluation, ACompoundKeepsItsChildrenInOrderUntilCleared)
{
    CCompoundTemplateSection compound;
    compound.AddText("a", 1);
    compound.AddSection("ignored", std::make_unique<CTemplateSectionText>("b", 1));
    compound.AddSection("ignored", nullptr);
    compound.OnEndOfFile("c", 1);
    CTestIterator iterator;
    CRecordingGenerator generator;
    compound.Bind(iterator, generator);
    EXPECT_EQ(compound.GenerateToString(iterator, generator), "abc");
    compound.Clear();
    EXPECT_EQ(compound.GenerateToString(iterator, generator), "");
}

TEST(TemplateEvaluation, AClearedTreeGeneratesNothing)
{
    const Page page = ParsePage(R"(a<%picture id="p" width="1" height="2" href=""%>)"
                                R"(<%if <%=page.index%>x<%else y%>%>)");
    CTestIterator iterator;
    GeneratePage(*page, iterator);
    page->Clear();
    EXPECT_EQ(GeneratePage(*page, iterator), "");
    EXPECT_TRUE(iterator.bound.empty());
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

TEST(TemplateVariableName, SplitsAtTheFirstPoint)
{
    const struct {
        const char16_t* text;
        const char16_t* object;
        const char16_t* variable;
    } rows[] = {
        {u"gallery.name", u"gallery", u"name"},
        {u"a.b.c", u"a", u"b.c"},
        {u".x", u"", u"x"},
        {u"x.", u"x", u""},
        {u".", u"", u""},
        {u" a . b ", u" a ", u" b "},
        {u"\u00fc.\u4e16", u"\u00fc", u"\u4e16"},
    };
    for (const auto& row : rows) {
        const CTemplateVariableName name(QString::fromUtf16(row.text));
        EXPECT_EQ(name.GetObjectName(), QString::fromUtf16(row.object));
        EXPECT_EQ(name.GetVariableName(), QString::fromUtf16(row.variable));
        EXPECT_FALSE(name.GetObjectName().isNull());
        EXPECT_FALSE(name.GetVariableName().isNull());
    }
    EXPECT_THROW(CTemplateVariableName(QStringLiteral("gallery")), CTemplateParsingException);
    EXPECT_THROW(CTemplateVariableName{QString()}, CTemplateParsingException);
}

TEST(TemplateEvaluation, ASectionInABranchThatIsNotTakenIsNeitherBoundNorGenerated)
{
    const std::string picture = R"(<%picture id="p" width="1" height="1" href=""%>)";
    const std::string onFirstPage = R"(<%if <%isequal property1="<%=page.index%>" property2="0"%>)";
    CTestIterator iterator;
    const Page page = ParsePage(onFirstPage + picture + "<%else none%>%>");
    EXPECT_EQ(GeneratePage(*page, iterator, 0), "{picture p||1|1|own|no alt|photo0.jpg}");
    EXPECT_EQ(iterator.GetPicturesPerPage(), 1);
    EXPECT_EQ(GeneratePage(*page, iterator, 1), "none");
    EXPECT_EQ(iterator.GetPicturesPerPage(), 0);
}
