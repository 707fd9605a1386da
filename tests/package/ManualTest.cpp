#include <QRegularExpression>
#include <gtest/gtest.h>

#include "Tool.h"
#include "common/ProgramIdentity.h"
#include "support/ScratchFolder.h"

namespace {

QString Manual(const QString& page)
{
    return Installed(QStringLiteral("share/man/man1/%1.1.gz").arg(page));
}

// As a person reads it, on lines so long that nothing is broken.
QString Shown(const QString& page)
{
    const ToolResult result =
        RunTool(QStringLiteral("mandoc"), {QStringLiteral("-T"), QStringLiteral("utf8"), QStringLiteral("-O"),
                                           QStringLiteral("width=500"), Manual(page)});
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.errors);
    // A letter, a backspace and the letter once more is a bold one, after an underline it is an underlined
    // one.
    return QString(result.output).remove(QRegularExpression(QStringLiteral(".\b")));
}

QString Help(const QString& program)
{
    return RunTool(Installed(QStringLiteral("bin/") + program), {QStringLiteral("--help")}).output;
}

// "new", "destination add" and so on, of lines that begin with the program's name. The first word after a
// command of one word is an argument in capitals, a choice in brackets or an option.
QStringList CommandsIn(const QString& text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^ +vistorama-cli ([a-z][a-z-]*(?: (?:add|list|remove)\\b)?)"),
        QRegularExpression::MultilineOption);
    QStringList commands;
    auto matches = pattern.globalMatch(text);
    while (matches.hasNext()) {
        commands += matches.next().captured(1);
    }
    commands.removeDuplicates();
    return commands;
}

// Of a page, up to the next heading.
QString Section(const QString& text, const QString& heading)
{
    return QRegularExpression(QStringLiteral("^%1$(.*?)(?=^[A-Z])").arg(heading),
                              QRegularExpression::MultilineOption |
                                  QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .captured(1);
}

} // namespace

TEST(Manual, ThePagesAreWithoutFault)
{
    for (const char* page : {"vistorama", "vistorama-cli"}) {
        const ToolResult result = RunTool(QStringLiteral("mandoc"),
                                          {QStringLiteral("-T"), QStringLiteral("lint"), QStringLiteral("-W"),
                                           QStringLiteral("warning"), Manual(QLatin1String(page))});
        EXPECT_EQ(result.exitCode, 0) << qPrintable(result.output);
        EXPECT_EQ(result.output, QString());
    }
}

TEST(Manual, ThePagesNameTheVersionAndOneAnother)
{
    const QString version = QStringLiteral("Vistorama ") + VersionOfProject();
    EXPECT_TRUE(Shown(QStringLiteral("vistorama")).contains(version));
    EXPECT_TRUE(Shown(QStringLiteral("vistorama-cli")).contains(version));
    EXPECT_TRUE(Shown(QStringLiteral("vistorama")).contains(QStringLiteral("vistorama-cli(1)")));
    EXPECT_TRUE(Shown(QStringLiteral("vistorama-cli")).contains(QStringLiteral("vistorama(1)")));
}

TEST(Manual, HasTheCommandsAndOptionsOfTheUsage)
{
    const QString help = Help(QStringLiteral("vistorama-cli"));
    const QString page = Shown(QStringLiteral("vistorama-cli"));
    const QStringList commands = CommandsIn(help);
    ASSERT_EQ(commands.size(), 13) << qPrintable(commands.join(' '));
    EXPECT_EQ(CommandsIn(Section(page, QStringLiteral("SYNOPSIS"))), commands);
    EXPECT_EQ(OptionsIn(page), OptionsIn(help));
    EXPECT_EQ(OptionsIn(Section(page, QStringLiteral("SYNOPSIS"))), OptionsIn(help));
    EXPECT_EQ(OptionsIn(Section(page, QStringLiteral("COMMANDS"))), OptionsIn(help));
    for (const QString& command : commands) {
        EXPECT_TRUE(
            QRegularExpression(QStringLiteral("^ +%1\\b").arg(command), QRegularExpression::MultilineOption)
                .match(Section(page, QStringLiteral("COMMANDS")))
                .hasMatch())
            << qPrintable(command);
    }
    EXPECT_EQ(OptionsIn(Shown(QStringLiteral("vistorama"))), OptionsIn(Help(QStringLiteral("vistorama"))));
}

TEST(Manual, HasEveryVariableOfTheEnvironmentThatTheProgramsRead)
{
    static const QRegularExpression variable(QStringLiteral("\"(VISTORAMA_[A-Z_]+)\""));
    const QString page = Shown(QStringLiteral("vistorama-cli"));
    int found = 0;
    for (const QString& file : FilesBelow(QStringLiteral(SOURCE_FOLDER "/src"))) {
        if (!file.endsWith(QStringLiteral(".cpp"))) {
            continue;
        }
        auto matches = variable.globalMatch(ReadText(QStringLiteral("src/") + file));
        while (matches.hasNext()) {
            ++found;
            const QString name = matches.next().captured(1);
            EXPECT_TRUE(Section(page, QStringLiteral("ENVIRONMENT")).contains(name)) << qPrintable(name);
        }
    }
    EXPECT_GE(found, 2);
}

// Each command that is named is one of the program, and the program knows no other: what it doesn't know it
// refuses by that text.
TEST(Manual, EveryCommandIsKnownToTheProgram)
{
    const QString synopsis = Section(Shown(QStringLiteral("vistorama-cli")), QStringLiteral("SYNOPSIS"));
    for (const QString& command : CommandsIn(synopsis)) {
        const ToolResult result = RunTool(Installed(QStringLiteral("bin/vistorama-cli")),
                                          command.split(' ') + QStringList(9, QStringLiteral("--surplus")));
        EXPECT_EQ(result.exitCode, 2) << qPrintable(command);
        EXPECT_TRUE(result.errors.startsWith(QStringLiteral("There is no option '--surplus'.")))
            << qPrintable(command + ' ' + result.errors);
    }
    const ToolResult unknown =
        RunTool(Installed(QStringLiteral("bin/vistorama-cli")), {QStringLiteral("publish")});
    EXPECT_TRUE(unknown.errors.startsWith(QStringLiteral("There is no command 'publish'.")));
}
