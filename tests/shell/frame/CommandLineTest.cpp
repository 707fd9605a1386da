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
        {"--help", "--help"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ParseCommandLinePath(QString::fromUtf8(row.commandLine)), QString::fromUtf8(row.path))
            << row.commandLine;
    }
}
