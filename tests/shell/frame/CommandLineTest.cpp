#include "shell/frame/CommandLine.h"

#include <gtest/gtest.h>

TEST(CommandLine, ThePathStandsInQuotesOrIsTheWholeText)
{
    const struct {
        const char* commandLine;
        const char* path;
    } rows[] = {
        {"", ""},
        {"/a/b.gallery", "/a/b.gallery"},
        {"/a/b c.gallery", "/a/b c.gallery"},
        {R"("/a/b c.gallery")", "/a/b c.gallery"},
        {R"("/a/b c.gallery" and more)", "/a/b c.gallery"},
        {R"("/a/b c.gallery)", "/a/b c.gallery"},
        {R"(/a/"b".gallery)", R"(/a/"b".gallery)"},
        {R"("")", ""},
        {R"(")", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ParseCommandLinePath(QString::fromUtf8(row.commandLine)), QString::fromUtf8(row.path))
            << row.commandLine;
    }
}

TEST(CommandLine, SomeArgumentsAreAnsweredWithoutAWindow)
{
    const struct {
        const char* arguments; // separated by "|"
        const char* start;     // of the text; null: a window is opened
        int exitCode;
    } rows[] = {
        {"", nullptr, 0},
        {"Trip.gallery", nullptr, 0},
        {"My|- Trip.gallery", nullptr, 0},
        {"My|-old|Trip.gallery", nullptr, 0},
        {"-style|fusion|Trip.gallery", nullptr, 0},
        {"--style=fusion", nullptr, 0},
        {"./--typo", nullptr, 0},
        {"--help", "Usage:\n  vistorama [PROJECT", 0},
        {"Trip.gallery|--help", "Usage:\n  vistorama [PROJECT", 0},
        {"--version", "vistorama ", 0},
        {"--typo", "There is no option '--typo'.\nUsage:\n", 2},
        {"-typo", "There is no option '-typo'.\nUsage:\n", 2},
        {"-", "There is no option '-'.\nUsage:\n", 2},
        {"--", "There is no option '--'.\nUsage:\n", 2},
        {"Trip.gallery|--typo", "There is no option '--typo'.\nUsage:\n", 2},
    };
    for (const auto& row : rows) {
        const auto answer = FindCommandLineAnswer(
            QString::fromUtf8(row.arguments).split(QLatin1Char('|'), Qt::SkipEmptyParts));
        ASSERT_EQ(answer.has_value(), row.start != nullptr) << row.arguments;
        if (answer) {
            EXPECT_TRUE(answer->text.startsWith(QString::fromUtf8(row.start))) << qPrintable(answer->text);
            EXPECT_EQ(answer->exitCode, row.exitCode) << row.arguments;
        }
    }
}
