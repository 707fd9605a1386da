#include "shell/ftpdialogs/FolderBrowsing.h"

#include <gtest/gtest.h>

TEST(FolderPath, GoesDownAndUp)
{
    EXPECT_EQ(EnteredPath(QString(), QStringLiteral("a")), QStringLiteral("a"));
    EXPECT_EQ(EnteredPath(QStringLiteral("a"), QStringLiteral("..")), QStringLiteral("a/.."));
    const struct {
        const char* path;
        const char* normalised;
    } rows[] = {
        {"", ""},           {"a", "a"},    {"a/b", "a/b"},    {"a/b/..", "a"}, {"a/b/c/..", "a/b"},
        {"a/..", ""},       {"/a/..", ""}, {"/a/b/..", "/a"}, {"/..", "/.."}, // not longer than the ending
        {"a/b..", "a/b.."}, {"..", ".."},  {"../..", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(NormalisedPath(QString::fromLatin1(row.path)), QString::fromLatin1(row.normalised))
            << row.path;
    }
}

TEST(FolderPath, CountsDotsUpToThirty)
{
    QString text = QStringLiteral("Getting folders");
    for (int i = 1; i <= 30; ++i) {
        text = WithOneMoreDot(text);
        EXPECT_EQ(text, QStringLiteral("Getting folders") + QString(i, QLatin1Char('.')));
    }
    EXPECT_EQ(WithOneMoreDot(text), QStringLiteral("Getting folders"));
}
