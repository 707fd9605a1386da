#include "template/contracts/TemplateObserver.h"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "TestIterator.h"
#include "common/FileSystem.h"
#include "support/QtPrinters.h"
#include "support/ScratchFolder.h"
#include "template/TemplateLanguage.h"
#include "template/contracts/ContentGeneratorStringConverter.h"
#include "template/parser/CompoundTemplateSection.h"

namespace {

// Writes down what it is told.
class CNotes final : public CTemplateObserver {
public:
    void OnIncludeBegin(const QString& path) override { lines += "begin " + path.section('/', -1); }
    void OnIncludeEnd() override { lines += QStringLiteral("end"); }
    void OnIncludeRefused(const QString& name, uint64_t position) override
    {
        lines += QStringLiteral("refused %1 at %2").arg(name).arg(position);
    }
    void OnCaseDiffers(const QString& name, uint64_t position) override
    {
        lines += QStringLiteral("case of %1 at %2").arg(name).arg(position);
    }
    void OnAttributeKept(const std::string& name, uint64_t position) override
    {
        lines += QStringLiteral("kept %1 at %2").arg(name.c_str()).arg(position);
    }
    void OnPictureBound(const QString& id, uint64_t position) override
    {
        lines += QStringLiteral("bound %1 at %2").arg(id).arg(position);
    }

    QStringList lines;
};

// folder: of the layout, which the page may not leave.
QString NotesOf(const std::string& page, const QString& folder = QString())
{
    CNotes notes;
    CCompoundTemplateSection tree;
    std::istringstream stream(page);
    ParsePage(stream, tree, {.observer = &notes, .stop = nullptr, .folder = folder});
    CTestIterator iterator;
    iterator.gallery.Set(QStringLiteral("template_directory"), CVariant(folder));
    CContentGeneratorStringConverter generator;
    tree.Bind(iterator, generator);
    return notes.lines.join(QStringLiteral("; "));
}

} // namespace

TEST(TemplateObserver, IsToldOfAttributesThatAnElementKeepsAndNeverReads)
{
    const struct {
        const char* page;
        const char* expected;
    } rows[] = {
        {R"(<%textproperty property="a.b" default="" name="n"%>)", "kept name at 15"},
        {R"(<%isvisible layout="L" page="p" element="e"%>)", "kept element at 12; kept page at 12"},
        {R"(<%isequal property1="a" property2="b" property3="c"%>)", "kept property3 at 10"},
        {R"(<%include file="" once="1"%>)", "kept once at 10"},
        {R"(<%banner width="1" height="2" src="x"%>)", "kept src at 9"},
        {R"(<%javastring value="" quote="1"%>)", "kept quote at 13"},
        {R"(12<%if <%isvisible layout="L" x=""%>y%>)", "kept x at 19"},
        {R"(<%relative_page position="<%isequal property1="" property2="" z=""%>"%>)", "kept z at 36"},
        {R"(<%textproperty property="a.b" default=""%>)", ""},
        {R"(<%isvisible layout="L" unfinished%>)", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(NotesOf(row.page), row.expected) << row.page;
    }
}

TEST(TemplateObserver, IsToldOfEachPictureThatIsBound)
{
    EXPECT_EQ(NotesOf(R"(<%picture id="A" width="" height="" href=""%>)"
                      R"(<%picture id="a" width="" height="" href="" image_reference="1"%>)"),
              "bound A at 10; bound a at 55");
    EXPECT_EQ(NotesOf(R"(<%if <%=gallery.missing%><%picture id="A" width="" height="" href=""%>%>)"), "");
}

TEST(TemplateObserver, IsToldWhereAnIncludedFileBeginsAndEnds)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("part.html"),
                  R"(<%include file="inner.html"%><%isvisible layout="" b=""%>)");
    scratch.Write(QStringLiteral("inner.html"), R"(<%picture id="p" width="" height="" href=""%>)");
    EXPECT_EQ(NotesOf(R"(<%include file="part.html"%><%isvisible layout="" c=""%>)", scratch.Path(QString())),
              "kept c at 40; begin part.html; kept b at 41; begin inner.html; bound p at 10; end; end");
}

TEST(TemplateObserver, IsNotNeeded)
{
    CCompoundTemplateSection tree;
    std::istringstream stream(R"(<%isvisible layout="" c=""%>)");
    EXPECT_NO_THROW(ParsePage(stream, tree));
}

TEST(TemplateObserver, IsToldOfFilesThatAPageMayNotReadAndOfThoseThatDifferInCapitals)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("outside.html"), "x");
    const QString folder = ExtractFolder(scratch.Write(QStringLiteral("layout/Part.html"), "x"));
    EXPECT_EQ(NotesOf(R"(<%include file="../outside.html"%>)", folder),
              QStringLiteral("refused ../outside.html at 10; begin ; end"));
    EXPECT_EQ(NotesOf(R"(<%include file="part.HTML"%>)", folder),
              QStringLiteral("case of part.HTML at 10; begin Part.html; end"));
    EXPECT_EQ(NotesOf(R"(<%include file="Part.html"%>)", folder), QStringLiteral("begin Part.html; end"));
}
