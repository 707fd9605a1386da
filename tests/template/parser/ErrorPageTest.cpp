#include "template/parser/ErrorPage.h"

#include "PageRun.h"
#include "resources/Resources.h"
#include "support/ScratchFolder.h"

namespace {

CTemplateParsingException Error(uint64_t start, uint64_t end, const QString& description)
{
    CTemplateParsingException error = TemplateError(description);
    error.errorStart = start;
    error.errorEnd = end;
    return error;
}

// The five texts that a page puts into the built-in one.
struct Parts {
    std::string description, file, line, first, error, last;
};

// The built-in page with the texts in place, put together from its pieces.
std::string Expected(const Parts& parts)
{
    QByteArray page = FindResource(QStringLiteral("error_page"), QStringLiteral("html"));
    EXPECT_FALSE(page.isEmpty());
    page.replace("%error_description%", QByteArray::fromStdString(parts.description));
    page.replace("%template_file%", QByteArray::fromStdString(parts.file));
    page.replace("%line_number%", QByteArray::fromStdString(parts.line));
    page.replace("%first_part%", QByteArray::fromStdString(parts.first));
    page.replace("%error_part%", QByteArray::fromStdString(parts.error));
    page.replace("%last_part%", QByteArray::fromStdString(parts.last));
    return page.toStdString();
}

} // namespace

TEST(ErrorPage, ShowsDescriptionFileLineAndTheThreeEscapedRuns)
{
    const CScratchFolder folder;
    const QString path = folder.Write(QStringLiteral("page.html"), "a b\r\n<i>&\"\n<%x %>'\n\xc3\xa9\t");
    const auto error = Error(11, 16, QStringLiteral("What went <wrong>."));
    EXPECT_EQ(BuildErrorPage(error, path),
              Expected({"What went <wrong>.", Narrow(path), "3", "a&nbsp;b\r\n&lt;i&gt;&amp;&quot;\n",
                        "&lt;%x&nbsp;%", "&gt;'\n\xc3\xa9\t"}));
    EXPECT_EQ(GetErrorLine(error, path), 3);
}

TEST(ErrorPage, IsTheBuiltInPageByteForByte)
{
    const std::string page =
        BuildErrorPage(Error(0, 0, QStringLiteral("d")), QStringLiteral("/missing/page.html"));
    EXPECT_NE(page.find("<%pageheader %>\r\n</head>"), std::string::npos); // never evaluated
    EXPECT_NE(page.find("<td bgcolor=InfoBackground>/missing/page.html</td></tr>\r\n"), std::string::npos);
    EXPECT_NE(page.find("<span class=\"error_text\"><pre></pre></span>\r\n"), std::string::npos);
    EXPECT_EQ(page.find("%first_part%"), std::string::npos);
    EXPECT_TRUE(page.starts_with("<HTML>\r\n<head>\r\n<style>\r\n"));
    EXPECT_TRUE(page.find("</body>\r\n</HTML>") != std::string::npos);
}

TEST(ErrorPage, AnErrorAtEvaluationStandsInLineOneWithNothingMarked)
{
    const CScratchFolder folder;
    const QString path = folder.Write(QStringLiteral("page.html"), "\n\n<%=x%>");
    EXPECT_EQ(BuildErrorPage(Error(0, 0, QStringLiteral("d")), path),
              Expected({"d", Narrow(path), "1", "", "", "\n\n&lt;%=x%&gt;"}));
    EXPECT_EQ(GetErrorLine(Error(0, 0, QString()), path), 1);
}

TEST(ErrorPage, AFileThatShrankOrVanishedIsShownAsFarAsItGoes)
{
    const CScratchFolder folder;
    const QString path = folder.Write(QStringLiteral("page.html"), "a\nb");
    EXPECT_EQ(BuildErrorPage(Error(2, 900, QStringLiteral("d")), path),
              Expected({"d", Narrow(path), "2", "a\n", "b", ""}));
    EXPECT_EQ(BuildErrorPage(Error(800, 900, QStringLiteral("d")), path),
              Expected({"d", Narrow(path), "2", "a\nb", "", ""}));
    EXPECT_EQ(BuildErrorPage(Error(2, 1, QStringLiteral("d")), path),
              Expected({"d", Narrow(path), "2", "a\n", "", "b"}));
    const QString missing = folder.Path(QStringLiteral("missing.html"));
    EXPECT_EQ(BuildErrorPage(Error(8, 9, QStringLiteral("d")), missing),
              Expected({"d", Narrow(missing), "1", "", "", ""}));
    EXPECT_EQ(GetErrorLine(Error(8, 9, QString()), missing), 1);
}

TEST(ErrorPage, TextsArePutInInOrderSoThatAnEarlierOneMayNameALaterPlace)
{
    const CScratchFolder folder;
    const QString path = folder.Write(QStringLiteral("page.html"), "x%error_part%");
    const std::string page = BuildErrorPage(Error(0, 1, QStringLiteral("see %line_number%")), path);
    EXPECT_NE(page.find("<td bgcolor=InfoBackground>see 1</td>"), std::string::npos);
    // "%error_part%" of the page stands in its last run, which is put in after the marked one.
    EXPECT_NE(page.find("<span><pre>%error_part%</pre></span>"), std::string::npos);
}

TEST(ErrorPage, MarksTheErrorOfARealPage)
{
    const CScratchFolder folder;
    const std::string bytes = "line 1\r\nline 2 <%banner width=\"1\"%> rest";
    const QString path = folder.Write(QStringLiteral("page.html"), QByteArray::fromStdString(bytes));
    try {
        ParsePage(bytes);
        FAIL();
    } catch (const CTemplateParsingException& error) {
        const std::string page = BuildErrorPage(error, path);
        EXPECT_NE(page.find("<pre>width=&quot;1&quot;%&gt;</pre>"), std::string::npos);
        EXPECT_NE(page.find("Required attribute not found 'height'."), std::string::npos);
        EXPECT_EQ(GetErrorLine(error, path), 2);
    }
}

TEST(ErrorPage, ATextThatNamesItsOwnPlaceIsPutInOnce)
{
    const CScratchFolder folder;
    const std::string front(30, 'x');
    const std::string first = front + "%first_part%";
    const std::string failed = front + "%error_part%";
    const std::string last = front + "%last_part%";
    const QString path =
        folder.Write(QStringLiteral("page.html"), QByteArray::fromStdString(first + failed + last));
    const std::string page =
        BuildErrorPage(Error(first.size(), first.size() + failed.size(),
                             QStringLiteral("Unknown template section '%error_description%'.")),
                       path);
    EXPECT_NE(page.find(">Unknown template section '%error_description%'.</td>"), std::string::npos);
    for (const std::string& run : {first, failed, last}) {
        EXPECT_NE(page.find("<pre>" + run + "</pre>"), std::string::npos) << run;
    }
}

TEST(ErrorPage, ItsResourceHasItsExactBytes)
{
    const char* const lines[] = {
        "<HTML>",
        "<head>",
        "<style>",
        "a { margin:0; padding:0; border:0; }",
        "img { margin:0; padding:0; border:0; }",
        "body { font-family:Verdana,Arial,Helvetica; }",
        "td { font-size:10pt;  }",
        ".error_text {",
        "color: Red;",
        "font-weight: bold;",
        "}",
        "</style> ",
        "<%pageheader %>",
        "</head>",
        "<body>",
        R"(<table cellpadding="0" cellspacing="0" width="100%">)",
        R"(<tr><td  colspan="2"><b>Error occured during layout loading:</b></td></tr>)",
        R"(<tr><td bgcolor="Gainsboro">Description:</td><td bgcolor=InfoBackground>%error_description%</td></tr>)",
        R"(<tr><td bgcolor="Gainsboro">File:</td><td bgcolor=InfoBackground>%template_file%</td></tr>)",
        R"(<tr><td bgcolor="Gainsboro">Line number:</td><td bgcolor=InfoBackground>%line_number%</td></tr>)",
        R"(<tr><td colspan="2">&nbsp;</td></tr>)",
        R"(<tr><td colspan="2" >)",
        R"(<div width="100%" height="100%">)",
        "<span><pre>%first_part%</pre></span>",
        R"(<span class="error_text"><pre>%error_part%</pre></span>)",
        "<span><pre>%last_part%</pre></span>",
        "</div>",
        "</td></tr>",
        "</table>",
        "</body>",
        "</HTML>"};
    QByteArray expected;
    for (const char* line : lines) {
        expected += QByteArray(line) + "\r\n";
    }
    EXPECT_EQ(FindResource(QStringLiteral("error_page"), QStringLiteral("html")), expected);
}
