#include "template/sections/TemplateSectionInclude.h"

#include <fstream>
#include <sstream>

#include <QFile>

#include "PageRun.h"
#include "common/StopSignal.h"
#include "support/ScratchFolder.h"
#include "template/TemplateLanguage.h"

namespace {

// A layout's folder and a gallery that uses it.
class TemplateInclude : public testing::Test {
protected:
    TemplateInclude()
    {
        iterator.gallery.Set(QStringLiteral("template_directory"), folder.Path(QStringLiteral("layout")));
    }

    void Write(const char* name, const QByteArray& bytes)
    {
        folder.Write(QStringLiteral("layout/") + QString::fromUtf8(name), bytes);
    }

    std::string Generate(const std::string& page) { return Generated(page, iterator); }

    const CScratchFolder folder;
    CTestIterator iterator;
};

std::string Picture(const std::string& id)
{
    return "<%picture id=\"" + id + R"(" width="1" height="1" href=""%>)";
}

std::string Nested(const std::string& front, int levels, const std::string& inner, const std::string& back)
{
    std::string result = inner;
    for (int i = 0; i < levels; ++i) {
        result = front + result + back;
    }
    return result;
}

constexpr char TooDeepTail[] = " is included more than 64 levels deep. Probably it includes itself.";

} // namespace

TEST_F(TemplateInclude, PutsTheFileInItsPlace)
{
    Write("header.html", "<h1><%=page.number%></h1>\r\n");
    EXPECT_EQ(Generate(R"(a<%include file="header.html"%>b)"), "a<h1>1</h1>\r\nb");
}

TEST_F(TemplateInclude, ComputesTheName)
{
    Write("part1.html", "one");
    EXPECT_EQ(Generate(R"(<%include file="part<%=page.number%>.html"%>)"), "one");
}

TEST_F(TemplateInclude, AppendsANameWithAPathPartUnchanged)
{
    Write("sub/part.html", "sub");
    folder.Write(QStringLiteral("beside.html"), "beside");
    Write("M\xc3\xbcller.html", "umlaut");
    EXPECT_EQ(Generate(R"(<%include file="sub/part.html"%>)"), "sub");
    EXPECT_EQ(Generate(R"(<%include file="../beside.html"%>)"), "beside");
    EXPECT_EQ(Generate("<%include file=\"M\xc3\xbcller.html\"%>"), "umlaut");
}

TEST_F(TemplateInclude, FindsANameWithForeignSeparators)
{
    Write("sub/part.html", "sub");
    folder.Write(QStringLiteral("beside.html"), "beside");
    EXPECT_EQ(Generate(R"(<%include file="sub\part.html"%>)"), "sub");
    EXPECT_EQ(Generate(R"(<%include file="..\beside.html"%>)"), "beside");
    Write("sub\\part.html", "literal"); // a file of exactly that name comes first
    EXPECT_EQ(Generate(R"(<%include file="sub\part.html"%>)"), "literal");
}

TEST_F(TemplateInclude, AFolderWithATrailingSeparatorIsTheSameFolder)
{
    Write("part.html", "x");
    iterator.gallery.Set(QStringLiteral("template_directory"), folder.Path(QStringLiteral("layout/")));
    EXPECT_EQ(Generate(R"(<%include file="part.html"%>)"), "x");
}

TEST_F(TemplateInclude, WhatCannotBeReadIsEmptyAndNoError)
{
    Write("sub/part.html", "x");
    EXPECT_EQ(Generate(R"(a<%include file="missing.html"%>b)"), "ab");
    EXPECT_EQ(Generate(R"(a<%include file="missing\too.html"%>b)"), "ab");
    EXPECT_EQ(Generate(R"(a<%include file=""%>b)"), "ab");
    EXPECT_EQ(Generate(R"(a<%include file="sub"%>b)"), "ab");
    EXPECT_EQ(Generate(R"(a<%include file="../../../../../../../../../../dev/zero"%>b)"), "ab");
    EXPECT_EQ(Generate("a<%include file=\"\xff\"%>b"), "ab");
}

TEST_F(TemplateInclude, WithoutALayoutFolderItIsEmpty)
{
    CTestIterator bare;
    EXPECT_EQ(Generated(R"(a<%include file="etc/hostname"%>b)", bare), "ab");
    bare.gallery.Set(QStringLiteral("template_directory"), QStringLiteral(""));
    EXPECT_EQ(Generated(R"(a<%include file="etc/hostname"%>b)", bare), "ab");
    bare.gallery.Set(QStringLiteral("template_directory"), 5);
    EXPECT_EQ(Generated(R"(a<%include file="etc/hostname"%>b)", bare), "ab");
}

TEST_F(TemplateInclude, ReadsTheFileLikeAPage)
{
    Write("stray.html", "a%>b");
    Write("open.html", "a<%else b");
    Write("empty.html", "");
    Write("cut.html", "a<%");
    EXPECT_EQ(Generate(R"([<%include file="stray.html"%>])"), "[a]");
    EXPECT_EQ(Generate(R"([<%include file="open.html"%>])"), "[ab]");
    EXPECT_EQ(Generate(R"([<%include file="empty.html"%>])"), "[]");
    EXPECT_EQ(Generate(R"([<%include file="cut.html"%>])"), "[a]");
}

TEST_F(TemplateInclude, BeforeItsFirstBindItWritesNothing)
{
    Write("part.html", "x");
    const Page page = ParsePage(R"(a<%include file="part.html"%>)");
    CRecordingGenerator generator;
    EXPECT_EQ(page->GenerateToString(iterator, generator), "a");
    EXPECT_EQ(GeneratePage(*page, iterator), "ax");
}

TEST_F(TemplateInclude, LoadsOnceAndThenKeepsItsContent)
{
    Write("part.html", "old");
    const Page page = ParsePage(R"(<%include file="part.html"%>)");
    EXPECT_EQ(GeneratePage(*page, iterator), "old");
    Write("part.html", "new");
    EXPECT_EQ(GeneratePage(*page, iterator), "old");
    // Even if there was nothing to load the first time.
    const Page late = ParsePage(R"(<%include file="late.html"%>)");
    EXPECT_EQ(GeneratePage(*late, iterator), "");
    Write("late.html", "late");
    EXPECT_EQ(GeneratePage(*late, iterator), "");
}

TEST_F(TemplateInclude, InABranchThatIsNotTakenItIsNotLoaded)
{
    Write("part.html", "old");
    const Page page = ParsePage(R"(<%if <%=gallery.x%><%include file="part.html"%>%>)");
    EXPECT_EQ(GeneratePage(*page, iterator), "");
    Write("part.html", "new");
    iterator.gallery.Set(QStringLiteral("x"), 1);
    EXPECT_EQ(GeneratePage(*page, iterator), "new");
    Write("part.html", "newer");
    EXPECT_EQ(GeneratePage(*page, iterator), "new");
}

TEST_F(TemplateInclude, BindsThePicturesOfItsFileTheFirstTimeOnly)
{
    Write("part.html", QByteArray::fromStdString(Picture("inner")));
    const Page page = ParsePage(Picture("a") + R"(<%include file="part.html"%>)" + Picture("b"));
    EXPECT_EQ(GeneratePage(*page, iterator), "{picture a||1|1|own|no alt|photo0.jpg}"
                                             "{picture inner||1|1|own|no alt|photo1.jpg}"
                                             "{picture b||1|1|own|no alt|photo2.jpg}");
    EXPECT_EQ(iterator.bound,
              (std::vector<QString>{QStringLiteral("a"), QStringLiteral("inner"), QStringLiteral("b")}));
    // The inner picture has no registration of its own now: it consumes the next one of the page.
    EXPECT_EQ(GeneratePage(*page, iterator), "{picture a||1|1|own|no alt|photo0.jpg}"
                                             "{picture inner||1|1|own|no alt|photo1.jpg}");
    EXPECT_EQ(iterator.bound, (std::vector<QString>{QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(TemplateInclude, AnErrorInItsFileHasTheOffsetsOfThatFile)
{
    Write("part.html", "1234<%banner width=\"1\"%>");
    const Page page = ParsePage(R"(<%include file="part.html"%>)");
    try {
        GeneratePage(*page, iterator);
        FAIL();
    } catch (const CTemplateParsingException& error) {
        EXPECT_EQ(error.GetDescription(), QStringLiteral("Required attribute not found 'height'."));
        EXPECT_EQ(error.errorStart, 13u);
        EXPECT_EQ(error.errorEnd, 24u);
    }
    // A failed file leaves nothing behind and isn't tried again.
    EXPECT_EQ(GeneratePage(*page, iterator), "");
}

TEST_F(TemplateInclude, IsNotLoadedInAnAttributeOrACondition)
{
    Write("part.html", "x");
    EXPECT_EQ(Generate(R"(<%advertisement name="<%include file="part.html"%>"%>)"), "{advertisement }");
    EXPECT_EQ(Generate(R"(<%if <%include file="part.html"%>A<%else B%>%>)"), "B");
}

TEST_F(TemplateInclude, IsLoadedInTheNameOfAVariable)
{
    Write("part.html", "title");
    iterator.gallery.Set(QStringLiteral("title"), QStringLiteral("T"));
    EXPECT_EQ(Generate(R"(<%=gallery.<%include file="part.html"%>%>)"), "T");
}

TEST_F(TemplateInclude, AFileThatIncludesItselfEndsWithAnErrorThatNamesIt)
{
    Write("self.html", R"(x<%include file="self.html"%>)");
    const std::string path = Narrow(folder.Path(QStringLiteral("layout/self.html")));
    EXPECT_EQ(Generate(R"(<%include file="self.html"%>)"), "ERROR The file " + path + TooDeepTail);

    Write("twice.html", R"(<%include file="twice.html"%><%include file="twice.html"%>)");
    EXPECT_NE(Generate(R"(<%include file="twice.html"%>)").find("twice.html is included more than 64"),
              std::string::npos);

    Write("a.html", R"(<%include file="b.html"%>)");
    Write("b.html", R"(<%if <%=page.number%><%include file="a.html"%>%>)");
    EXPECT_NE(Generate(R"(<%include file="a.html"%>)").find(TooDeepTail), std::string::npos);
}

TEST_F(TemplateInclude, AChainOf64FilesIsNotTooDeep)
{
    const auto writeChain = [&](int files) {
        for (int i = 1; i < files; ++i) {
            Write(("f" + std::to_string(i) + ".html").c_str(),
                  QByteArray::fromStdString("<%include file=\"f" + std::to_string(i + 1) + ".html\"%>"));
        }
        Write(("f" + std::to_string(files) + ".html").c_str(), "end");
    };
    writeChain(64);
    EXPECT_EQ(Generate(R"(<%include file="f1.html"%>)"), "end");
    writeChain(65);
    EXPECT_EQ(Generate(R"(<%include file="f1.html"%>)"),
              "ERROR The file " + Narrow(folder.Path(QStringLiteral("layout/f65.html"))) + TooDeepTail);
}

TEST_F(TemplateInclude, TheDepthCountsTheElementsOfTheIncludingFiles)
{
    const std::string inner = R"(<%include file="self.html"%>)";
    Write("self.html", QByteArray::fromStdString(Nested("<%else ", 20, inner, "%>")));
    EXPECT_EQ(Generate(inner),
              "ERROR Template sections are nested more than 256 levels deep, those of included "
              "files counted.");
}

TEST_F(TemplateInclude, ClearMakesItLoadAgain)
{
    Write("part.html", "x");
    const Page page = ParsePage(R"(<%include file="part.html"%>)");
    EXPECT_EQ(GeneratePage(*page, iterator), "x");
    page->Clear();
    EXPECT_EQ(GeneratePage(*page, iterator), "");
}

TEST_F(TemplateInclude, DoesNotLeaveTheFolderThatThePageMayRead)
{
    folder.Write(QStringLiteral("secret.html"), "SECRET");
    folder.Write(QStringLiteral("all/Common/part.html"), "common");
    folder.Write(QStringLiteral("all/layout/sub/part.html"), "sub");
    folder.Write(QStringLiteral("all/layout/C:part.html"), "odd");
    QFile::link(folder.Path(QStringLiteral("secret.html")),
                folder.Path(QStringLiteral("all/layout/link.html")));
    QFile::link(folder.Path(), folder.Path(QStringLiteral("all/layout/out")));
    QFile::link(folder.Path(QStringLiteral("all/Common")), folder.Path(QStringLiteral("all/layout/in")));
    iterator.gallery.Set(QStringLiteral("template_directory"), folder.Path(QStringLiteral("all/layout/")));
    const struct {
        std::string name;
        const char* expected;
    } rows[] = {
        {"../Common/part.html", "common"},
        {"..\\Common\\part.html", "common"},
        {"sub/../sub/./part.html", "sub"},
        {"in/part.html", "common"},
        {"SUB/Part.HTML", "sub"},
        {"../../secret.html", ""},
        {"..\\..\\secret.html", ""},
        {"sub/../../../secret.html", ""},
        {folder.Path(QStringLiteral("secret.html")).toStdString(), ""},
        {folder.Path(QStringLiteral("all/layout/sub/part.html")).toStdString(), ""},
        {"C:part.html", ""},
        {"link.html", ""},
        {"out/secret.html", ""},
        {"out/all/layout/../../secret.html", ""},
        {".", ""},
        {"..", ""},
        {"", ""},
    };
    for (const auto& row : rows) {
        std::istringstream stream("<%include file=\"" + row.name + "\"%>");
        CCompoundTemplateSection tree;
        ParsePage(stream, tree, {.folder = folder.Path(QStringLiteral("all"))});
        EXPECT_EQ(GeneratePage(tree, iterator, 0), row.expected) << row.name;
    }
}

TEST_F(TemplateInclude, APageLoadsABoundedNumberOfFiles)
{
    // Each includes the next one twice: 2 to the power of 40 files.
    for (int i = 0; i < 40; ++i) {
        const QByteArray next = "<%include file=\"" + QByteArray::number(i + 1) + ".html\"%>";
        Write((QByteArray::number(i) + ".html").constData(), next + next);
    }
    EXPECT_NE(Generate(R"(<%include file="0.html"%>)").find(" there are more than 4096."), std::string::npos);
    // As many as it may.
    Write("leaf.html", "x");
    std::string page;
    for (int i = 0; i < CTemplateSectionInclude::MaxLoads; ++i) {
        page += R"(<%include file="leaf.html"%>)";
    }
    EXPECT_EQ(Generate(page), std::string(4096, 'x'));
}

TEST_F(TemplateInclude, AStopEndsBindingAndGenerating)
{
    Write("part.html", "x");
    CStopSignal stop;
    std::istringstream stream(R"(a<%include file="part.html"%><%blog b%>)");
    CCompoundTemplateSection tree;
    ParsePage(stream, tree, {.stop = &stop});
    EXPECT_EQ(GeneratePage(tree, iterator, 0).substr(0, 2), "ax");
    stop.Set();
    EXPECT_EQ(GeneratePage(tree, iterator, 0), "");
}
