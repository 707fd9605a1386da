#include "document/files/FileTrace.h"

#include "support/ScratchFolder.h"

TEST(FileTrace, APathIsWrittenFromAFolder)
{
    const struct {
        const char* folder;
        const char* path;
        const char* relative;
    } rows[] = {
        {"/a/b/", "/a/b/c.jpg", "c.jpg"},
        {"/a/b/", "/a/b/c/d.jpg", "c/d.jpg"},
        {"/a/b/", "/a/c.jpg", "../c.jpg"},
        {"/a/b/", "/a/bc/d.jpg", "../bc/d.jpg"},
        {"/a/b/", "/x/y.jpg", "../../x/y.jpg"},
        {"/a/b/", "/a/./b/../b/c.jpg", "c.jpg"},
        {"/", "/c.jpg", "c.jpg"},
        {"/a/b/", "D:\\photos\\c.jpg", ""},
        {"/a/b/", "c.jpg", ""},
        {"/a/b/", "", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(RelativePathOf(QString::fromUtf8(row.folder), QString::fromUtf8(row.path)),
                  QString::fromUtf8(row.relative))
            << row.path;
    }
}

TEST(FileTrace, LeadsToAPathUnlessItIsAbsoluteOrEmpty)
{
    const QString folder = QStringLiteral("/a/b/");
    EXPECT_EQ((FileTrace{QStringLiteral("../c.jpg"), folder}).GetPath(), QStringLiteral("/a/c.jpg"));
    EXPECT_EQ((FileTrace{QStringLiteral("/c.jpg"), folder}).GetPath(), QString());
    EXPECT_EQ((FileTrace{QString(), folder}).GetPath(), QString());
}

TEST(FileState, TellsDateAndSizeOfAFileAndNothingElseIsOne)
{
    const CScratchFolder scratch;
    const QString path = scratch.Write(QStringLiteral("f/a.jpg"), "four");
    EXPECT_TRUE(LookAtFile(path).isThere);
    EXPECT_EQ(LookAtFile(path).size, 4);
    EXPECT_GT(LookAtFile(path).date, 43831);
    EXPECT_EQ(LookAtFile(scratch.Path(QStringLiteral("f"))), FileState());
    EXPECT_EQ(LookAtFile(scratch.Path(QStringLiteral("none"))), FileState());
}
