#include <cmath>
#include <sstream>

#include "PageRun.h"

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
