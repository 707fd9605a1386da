#include "deploy/FTPUploadItemsFiller.h"

#include <QFile>
#include <QStringList>

#include "common/StopSignal.h"
#include "support/ScratchFolder.h"

namespace {

FTPUploadMap Fill(const QString& root)
{
    FTPUploadMap map;
    const CStopSignal stop;
    CFTPUploadItemsFiller filler(map, CFTPUploadItemsFiller::RootLengthOf(root), stop);
    ProcessDirectory(root, filler);
    return map;
}

} // namespace

TEST(FTPUploadItemsFiller, ListsEachFileWithItsDirectoryBelowTheRoot)
{
    const CScratchFolder scratch;
    const struct {
        const char* path;
        const char* directory;
        const char* name;
        uint32_t size;
    } rows[] = {
        {"site/index.html", "", "index.html", 5},
        {"site/2/pictures/a.jpg", "2\\pictures", "a.jpg", 9},
        {"site/2/index.html", "2", "index.html", 0},
    };
    for (const auto& row : rows) {
        scratch.Write(QString::fromLatin1(row.path), QByteArray(static_cast<int>(row.size), 'x'));
    }
    MakeDirectoryPath(scratch.Path(QStringLiteral("site/empty/deeper")));
    // A root with and without its trailing separator cuts the same.
    for (const char* root : {"site", "site/"}) {
        const FTPUploadMap map = Fill(scratch.Path(QString::fromLatin1(root)));
        EXPECT_EQ(map.size(), std::size(rows)) << "an empty directory has no item";
        for (const auto& row : rows) {
            const QString path = scratch.Path(QString::fromLatin1(row.path));
            ASSERT_EQ(map.count(path), 1u) << row.path;
            const FTPUploadItem& item = map.at(path);
            EXPECT_EQ(item.localPath, path);
            EXPECT_EQ(item.directory, QString::fromLatin1(row.directory));
            EXPECT_EQ(item.name, QString::fromLatin1(row.name));
            EXPECT_EQ(item.size, row.size);
        }
    }
}

TEST(FTPUploadItemsFiller, KeepsTheFilesOfADirectoryTogether)
{
    const CScratchFolder scratch;
    for (const char* name : {"b/2.txt", "a.txt", "b/1.txt", "c/1.txt", "b/c/1.txt"}) {
        scratch.Write(QString::fromLatin1(name), "x");
    }
    QStringList order;
    for (const auto& [path, item] : Fill(scratch.Path())) {
        order += item.directory + QLatin1Char('|') + item.name;
    }
    EXPECT_EQ(order.join(QLatin1Char(' ')), QStringLiteral("|a.txt b|1.txt b|2.txt b\\c|1.txt c|1.txt"));
}

TEST(FTPUploadItemsFiller, AnItemThatIsThereIsKept)
{
    const CScratchFolder scratch;
    const QString path = scratch.Write(QStringLiteral("a.txt"), "x");
    FTPUploadMap map;
    map[path].name = QStringLiteral("old");
    const CStopSignal stop;
    CFTPUploadItemsFiller filler(map, CFTPUploadItemsFiller::RootLengthOf(scratch.Path()), stop);
    ProcessDirectory(scratch.Path(), filler);
    EXPECT_EQ(map.at(path).name, QStringLiteral("old"));
}

TEST(FTPUploadItemsFiller, OnceStoppedItEndsEachLevelAtItsNextFile)
{
    const CScratchFolder scratch;
    for (const char* name : {"a/1.txt", "a/2.txt", "b.txt", "c.txt"}) {
        scratch.Write(QString::fromLatin1(name), "x");
    }
    FTPUploadMap map;
    CStopSignal stop;
    stop.Set();
    CFTPUploadItemsFiller filler(map, CFTPUploadItemsFiller::RootLengthOf(scratch.Path()), stop);
    ProcessDirectory(scratch.Path(), filler);
    EXPECT_EQ(map.size(), 2u);
}

TEST(FTPUploadItemsFiller, IsInTheOrderOfPlainComparison)
{
    const CScratchFolder scratch;
    for (const char* name : {"a.txt", "B.txt", "Z/1.txt", "b/1.txt"}) {
        scratch.Write(QString::fromLatin1(name), "x");
    }
    QStringList order;
    for (const auto& [path, item] : Fill(scratch.Path())) {
        order += item.directory + QLatin1Char('|') + item.name;
    }
    EXPECT_EQ(order.join(QLatin1Char(' ')), QStringLiteral("|B.txt Z|1.txt |a.txt b|1.txt"));
}

TEST(FTPUploadItemsFiller, AFileThatCannotBeOpenedHasTheSizeZero)
{
    const CScratchFolder scratch;
    const QString broken = scratch.Path(QStringLiteral("broken.html"));
    ASSERT_TRUE(QFile::link(scratch.Path(QStringLiteral("gone")), broken));
    const FTPUploadMap map = Fill(scratch.Path());
    ASSERT_EQ(map.count(broken), 1u);
    EXPECT_EQ(map.at(broken).size, 0u);
}
