#include <QDir>
#include <gtest/gtest.h>

#include "Program.h"

TEST(Check, TheLayoutsOfTheProgramHaveNeitherErrorsNorWarnings)
{
    const CProgram program;
    const QDir layouts(QStringLiteral(DATA_FOLDER "/Templates"));
    QStringList arguments{QStringLiteral("check")};
    for (const QString& name : layouts.entryList({QStringLiteral("*.xml")})) {
        arguments += layouts.filePath(name);
    }
    ASSERT_EQ(arguments.size(), 7);
    const ProgramResult result = program.Run(arguments);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output + result.errors, QString());
}

TEST(Check, WarnsOfWhatIsHardlyMeantAndSucceeds)
{
    CProgram program;
    program.WriteLayout(
        "<%include file=\"part.html\"%>\n"
        "<%blog <%picture id=\"same\" image_reference=\"0\" width=\"1\" height=\"1\" href=\"\"%>%>",
        "<page file=\"index.html\" multipage=\"1\"/><page file=\"two.html\" multipage=\"1\"/>"
        "<page file=\"single.html\"/>");
    program.scratch.Write(QStringLiteral("data/Templates/Own/part.html"),
                          "\n\n<%textproperty property=\"gallery.a\" default=\"\" name=\"A\"%>");
    program.scratch.Write(QStringLiteral("data/Templates/Own/two.html"),
                          "<%include file=\"part.html\"%>"
                          "<%picture id=\"p\" width=\"1\" height=\"1\" href=\"\"%>\n"
                          "<%if <%=p.layout_name%><%picture id=\"q\" width=\"1\" height=\"1\" href=\"\"%>\n"
                          "<%else <%picture id=\"q\" width=\"2\" height=\"2\" href=\"\"%>%>%>\n"
                          "<%picture id=\"P\" width=\"1\" height=\"1\" href=\"\"%>");
    program.scratch.Write(QStringLiteral("data/Templates/Own/single.html"), "no pictures");
    const ProgramResult result =
        program.Run({QStringLiteral("check"), program.Path(QStringLiteral("data/Templates/own.xml"))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, QString());
    const QString folder = program.Path(QStringLiteral("data/Templates/Own/"));
    EXPECT_EQ(
        result.output.split(QLatin1Char('\n')),
        QStringList({folder + QStringLiteral("part.html:3: warning: The attribute 'name' is unknown here "
                                             "and never read."),
                     folder + QStringLiteral("index.html:2: warning: The id 'same' is bound a second time: "
                                             "both places show the same picture."),
                     folder + QStringLiteral("index.html:1: warning: The page is multipage and has no place "
                                             "for a picture, so that only one page is written."),
                     folder + QStringLiteral("two.html:4: warning: The id 'P' is bound a second time: both "
                                             "places show the same picture."),
                     QString()}));
}

TEST(Check, AnErrorInAnIncludedFileIsNamedByThatFile)
{
    CProgram program;
    program.WriteLayout("\n<%include file=\"part.html\"%>");
    program.scratch.Write(QStringLiteral("data/Templates/Own/part.html"), "\n\n\n<%nonsense%>");
    const ProgramResult result =
        program.Run({QStringLiteral("check"), program.Path(QStringLiteral("data/Templates/own.xml"))});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, program.Path(QStringLiteral("data/Templates/Own/part.html")) +
                                 QStringLiteral(":1: Unknown template section 'nonsense'.\n"));
}

TEST(Check, EachErrorIsNamedByFileLineAndText)
{
    CProgram program;
    program.WriteLayout(
        "<html>\n<p>\n<%=gallery.title%>\n<%picture id=\"a\" width=\"1\" height=\"1\"%>\n</html>",
        "<page file=\"index.html\"/><page file=\"good.html\"/><page file=\"other.html\"/>"
        "<page file=\"missing.html\"/>");
    program.scratch.Write(QStringLiteral("data/Templates/Own/good.html"), "fine");
    program.scratch.Write(QStringLiteral("data/Templates/Own/other.html"), "\n<%nonsense%>");
    const QString folder = program.Path(QStringLiteral("data/Templates/Own/"));
    const ProgramResult result =
        program.Run({QStringLiteral("check"), program.Path(QStringLiteral("data/Templates/own.xml"))});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(
        result.output,
        folder + QStringLiteral("index.html:4: Required attribute not found 'href'.\n") + folder +
            QStringLiteral("other.html:1: Unknown template section 'nonsense'.\n") + folder +
            QStringLiteral("missing.html:1: Could not open file %1missing.html. Probably the file does not "
                           "exist.\n")
                .arg(folder));
    EXPECT_EQ(result.GetFailure()[QStringLiteral("description")],
              QStringLiteral("Layouts with errors: 1 of 1."));
}

TEST(Check, PagesThatAreBentInOtherWaysAreAnsweredWithAText)
{
    const struct {
        const char* page;
        const char* expected; // the end of the first line; "" for nothing at all
        int exitCode;
    } rows[] = {
        {"<%include file=\"index.html\"%>",
         "is included more than 64 levels deep. Probably it includes itself.", 1},
        {"<%include file=\".\"%><%picture id=\"a\" width=\"1\" height=\"1\" href=\"\"%>", "", 0},
        {"<%picture id=\"\" width=\"\" height=\"\" href=\"\"%><%picture id=\"\" width=\"\" height=\"\" "
         "href=\"\"%>",
         "warning: The id '' is bound a second time: both places show the same picture.", 0},
        {"<%picture id=\"<%=gallery%>\" width=\"1\" height=\"1\" href=\"\"%>",
         "Invalid syntax of variable template section: gallery. Variable section syntax: "
         "<%=object.variable_name%>.",
         1},
        {"a%>b<%nonsense%>",
         "warning: The page is multipage and has no place for a picture, so that only one page is written.",
         0},
        {"\xff\xfe<%isvisible layout=\"\" \xc3\xbc=\"\" y=\"\"%>",
         "warning: The attribute 'y' is unknown here and never read.", 0},
        {"",
         "warning: The page is multipage and has no place for a picture, so that only one page is written.",
         0},
    };
    for (const auto& row : rows) {
        CProgram program;
        program.WriteLayout(row.page);
        const ProgramResult result =
            program.Run({QStringLiteral("check"), program.Path(QStringLiteral("data/Templates/own.xml"))});
        EXPECT_EQ(result.exitCode, row.exitCode) << row.page;
        EXPECT_FALSE(result.crashed) << row.page;
        const QString line = result.output.section(QLatin1Char('\n'), 0, 0);
        EXPECT_TRUE(*row.expected ? line.endsWith(QString::fromUtf8(row.expected)) : line.isEmpty())
            << row.page << qPrintable(line);
    }
}

TEST(Check, ADefinitionThatIsNoLayoutIsNamedWithItsLine)
{
    const CProgram program;
    const QString broken =
        program.scratch.Write(QStringLiteral("broken.xml"), "<template>\n<page>\n</template>");
    const QString other = program.scratch.Write(QStringLiteral("other.xml"), "<picture/>");
    const ProgramResult result =
        program.Run({QStringLiteral("check"), broken, other, program.Path(QStringLiteral("none.xml"))});
    EXPECT_EQ(result.exitCode, 1);
    const QStringList lines = result.output.split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 4);
    EXPECT_TRUE(lines[0].startsWith(broken + QStringLiteral(":3: "))) << qPrintable(lines[0]);
    EXPECT_EQ(lines[1], other + QStringLiteral(":1: Could not find template element 'template'."));
    EXPECT_TRUE(lines[2].contains(QStringLiteral("none.xml:"))) << qPrintable(lines[2]);
    EXPECT_EQ(result.GetFailure()[QStringLiteral("description")],
              QStringLiteral("Layouts with errors: 3 of 3."));
}
