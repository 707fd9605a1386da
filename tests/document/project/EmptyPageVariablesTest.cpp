#include <sstream>

#include "TestProject.h"
#include "document/galleries/GalleryIterator.h"
#include "template/contracts/ContentGeneratorStringConverter.h"
#include "template/sections/CompoundTemplateSection.h"

namespace {

QByteArray Saved(CTestProject& test)
{
    test.project.Save(test.ProjectPath());
    return test.scratch.Read(QStringLiteral("site/My.gallery"));
}

// What the pages view does for one page of a gallery.
std::string Rendered(CGallery& gallery, const std::string& page, int32_t pageIndex)
{
    std::istringstream stream(page);
    CCompoundTemplateSection root;
    root.Parse(stream);
    CGalleryIterator iterator;
    iterator.Init(gallery, QStringLiteral("index"), QStringLiteral(".html"), pageIndex);
    iterator.Reset();
    CContentGeneratorStringConverter generator;
    root.Bind(iterator, generator);
    iterator.SetPageIndex(pageIndex);
    return root.GenerateToString(iterator, generator);
}

const char* const Loop = "<%blog <%=page.blog_number%> %>";

} // namespace

TEST(EmptyPageVariables, RenderingALoopDoesNotChangeTheSavedFile)
{
    CTestProject test;
    test.AddStandard();
    CGallery& gallery = test.NewGallery(3);
    gallery.SetPageVariable(QStringLiteral("index"), 1, QStringLiteral("title"),
                            CVariant(QStringLiteral("Two")));
    gallery.SetPageVariable(QStringLiteral("index"), 2, QStringLiteral("blog_number"), CVariant(42));
    const QByteArray before = Saved(test);
    for (const int32_t page : {0, 1, 2, 7}) {
        Rendered(gallery, Loop, page);
    }
    EXPECT_EQ(Saved(test), before);
    EXPECT_TRUE(before.contains("<page name=\"index\" index=\"1\"><page_variable bstrVal=\"Two\""));
    EXPECT_TRUE(before.contains("<page name=\"index\" index=\"2\"><page_variable lVal=\"42\""));
}

TEST(EmptyPageVariables, TheLoopShowsItsValuesAndLeavesTheStoreAsItWas)
{
    CTestProject test;
    test.AddStandard();
    CGallery& gallery = test.NewGallery(3);
    gallery.SetPageVariable(QStringLiteral("index"), 1, QStringLiteral("Blog_Number"),
                            CVariant(QStringLiteral("own")));
    EXPECT_EQ(Rendered(gallery, Loop, 1), "1 2 3 ");
    EXPECT_EQ(gallery.GetPageVariable(QStringLiteral("index"), 1, QStringLiteral("blog_number")),
              CVariant(QStringLiteral("own")));
    EXPECT_EQ(gallery.GetPageVariable(QStringLiteral("index"), 1, QStringLiteral("blog_index")), CVariant());
    EXPECT_EQ(gallery.GetPageVariable(QStringLiteral("index"), 0, QStringLiteral("blog_index")),
              std::nullopt);
}

TEST(EmptyPageVariables, AnEmptyTextIsAValueAndIsKept)
{
    CTestProject test;
    test.AddStandard();
    CGallery& gallery = test.NewGallery();
    gallery.SetPageVariable(QStringLiteral("index"), 0, QStringLiteral("text"), CVariant(QStringLiteral("")));
    gallery.SetPageVariable(QStringLiteral("index"), 0, QStringLiteral("zero"), CVariant(0));
    gallery.SetPageVariable(QStringLiteral("index"), 0, QStringLiteral("void"), CVariant());
    EXPECT_TRUE(
        Saved(test).contains(R"(<page name="index" index="0"><page_variable bstrVal="" name="text" vt="8"/>)"
                             R"(<page_variable lVal="0" name="zero" vt="3"/></page>)"));
}

TEST(EmptyPageVariables, APageWithoutAnyValueIsNotWritten)
{
    CTestProject test;
    test.AddStandard();
    test.LoadXml("<project root_gallery_index=\"0\"><gallery index=\"0\"><page name=\"index\" index=\"4\"/>"
                 "<page name=\"index\" index=\"5\"><page_variable name=\"x\" vt=\"0\"/></page>"
                 "<page name=\"index\" index=\"6\"><page_variable lVal=\"1\" name=\"x\" vt=\"3\"/></page>"
                 "</gallery></project>");
    const QByteArray saved = Saved(test);
    EXPECT_EQ(saved.count("<page "), 1);
    EXPECT_TRUE(saved.contains("<page name=\"index\" index=\"6\"><page_variable lVal=\"1\""));
}
