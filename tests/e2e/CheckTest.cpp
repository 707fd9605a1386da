#include <gtest/gtest.h>

#include "Program.h"

TEST(Check, TheLayoutsOfTheProgramHaveNoErrors)
{
    const CProgram program;
    const ProgramResult result =
        program.Run({QStringLiteral("check"), QStringLiteral(DATA_FOLDER "/Templates/classic.xml")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output + result.errors, QString());
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

TEST(Check, ADefinitionThatIsNoLayoutIsNamedWithItsLine)
{
    const CProgram program;
    const QString broken =
        program.scratch.Write(QStringLiteral("broken.xml"), "<template>\n<page>\n</template>");
    const QString other = program.scratch.Write(QStringLiteral("other.xml"), "<style/>");
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
