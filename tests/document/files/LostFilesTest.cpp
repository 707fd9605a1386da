#include "document/files/LostFiles.h"

#include <QFile>

#include "common/StopSignal.h"
#include "support/ScratchFolder.h"

namespace {

QString Found(const CScratchFolder& scratch, const std::vector<FoundFile>& found)
{
    QStringList lines;
    for (const FoundFile& file : found) {
        lines += QString(file.found).replace(scratch.Path(), QString()) +
                 (file.hasExactSize ? QStringLiteral("!") : QString());
    }
    return lines.join(QLatin1Char(' '));
}

const QString Name = QStringLiteral("a.jpg");

} // namespace

TEST(FileIndex, ListsEachFolderOnceWhateverWayLeadsToIt)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("x/y/a.jpg"), "");
    ASSERT_TRUE(QFile::link(scratch.Path(QStringLiteral("x")), scratch.Path(QStringLiteral("link"))));
    const QStringList folders = {scratch.Path(), scratch.Path(QStringLiteral("x/y")),
                                 scratch.Path(QStringLiteral("link/y/")),
                                 scratch.Path(QStringLiteral("none"))};
    const CFileIndex index(folders, {Name}, {});
    EXPECT_EQ(index.GetFiles(Name).size(), 1u);
    EXPECT_TRUE(index.GetFiles(QStringLiteral("b.jpg")).empty());
    EXPECT_FALSE(index.IsCutShort());
}

TEST(FileIndex, IsCutShortByItsLimits)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("1/a.jpg"), "");
    scratch.Write(QStringLiteral("2/a.jpg"), "");
    for (const auto& [folders, files] : {std::pair<size_t, size_t>{1, 0}, {2, 1}, {3, 2}, {4, 2}}) {
        const CFileIndex index({scratch.Path()}, {Name}, {.folders = folders});
        EXPECT_EQ(index.GetFiles(Name).size(), files) << folders;
        EXPECT_EQ(index.IsCutShort(), folders < 3) << folders;
    }
    CStopSignal stop;
    stop.Set();
    EXPECT_TRUE(CFileIndex({scratch.Path()}, {Name}, {.stop = &stop}).IsCutShort());
    EXPECT_TRUE(CFileIndex({scratch.Path()}, {Name}, {.levels = 0}).GetFiles(Name).empty());
}

TEST(FileIndex, ListsAHundredFoldersHoweverSlowTheyAre)
{
    const CScratchFolder scratch;
    for (int i = 0; i < 120; ++i) {
        scratch.Write(QStringLiteral("%1/a.jpg").arg(i), "");
    }
    const CFileIndex index({scratch.Path()}, {Name}, {.time = std::chrono::milliseconds(0)});
    EXPECT_EQ(index.GetFiles(Name).size(), 99u); // and the folder that holds them
    EXPECT_TRUE(index.IsCutShort());
}

TEST(LostFiles, KnownByTheirNameAloneNeedTheExactSizeInAnIndexThatIsCutShort)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("a.jpg"), "four");
    scratch.Write(QStringLiteral("more/x"), "");
    const QStringList folders = {scratch.Path()};
    const LostFile unknown = {QStringLiteral("/o/a.jpg"), {}};
    const LostFile known = {QStringLiteral("/o/a.jpg"), {.relative = {}, .folder = {}, .size = 4}};
    EXPECT_EQ(Found(scratch, CLostFiles({unknown}, {}).FindBelow(folders, {.folders = 1})), QString());
    EXPECT_EQ(Found(scratch, CLostFiles({known}, {}).FindBelow(folders, {.folders = 1})),
              QStringLiteral("a.jpg!"));
    EXPECT_EQ(Found(scratch, CLostFiles({unknown}, {}).FindBelow(folders, {})), QStringLiteral("a.jpg"));
}

TEST(LostFiles, WhatOneHasFoundIsTakenForTheNextSearch)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("x/a.jpg"), "");
    const QString folder = scratch.Path();
    CLostFiles lost(
        {{QStringLiteral("/o/x/a.jpg"), {.relative = QStringLiteral("x/a.jpg"), .folder = folder}},
         {QStringLiteral("/o/a.jpg"), {}}},
        {});
    EXPECT_EQ(Found(scratch, lost.FindByTraces()), QStringLiteral("x/a.jpg"));
    EXPECT_EQ(Found(scratch, lost.FindByTraces()), QString());
    EXPECT_EQ(Found(scratch, lost.FindBelow({folder}, {})), QString());
}
