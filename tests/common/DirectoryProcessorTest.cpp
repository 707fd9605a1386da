#include "common/DirectoryProcessor.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QFile>
#include <QStringList>

#include "support/ScratchFolder.h"

using testing::ElementsAre;

namespace {

// Writes down what it is shown; answers Stop or Skip at the named entries.
class CRecorder final : public CDirectoryProcessor {
public:
    explicit CRecorder(const QString& root) : root(root) {}

    Answer OnEnterDirectory(const QString& path, const DirectoryEntry&) override
    {
        return Record(QStringLiteral("enter "), path);
    }
    Answer OnFile(const QString& path, const DirectoryEntry&) override
    {
        return Record(QStringLiteral("file "), path);
    }
    void OnLeaveDirectory(const QString& path, const DirectoryEntry&) override
    {
        Record(QStringLiteral("leave "), path);
    }

    QStringList lines;
    QString stopAt;
    QString skipAt;

private:
    Answer Record(const QString& event, const QString& path)
    {
        const QString relative = path.mid(root.size());
        lines += event + relative;
        return relative == stopAt ? Answer::Stop : relative == skipAt ? Answer::Skip : Answer::Continue;
    }

    const QString root;
};

struct Tree {
    Tree()
    {
        for (const char* name : {"a.txt", "b/one.txt", "b/two.txt", "c/three.txt", "d.txt"}) {
            scratch.Write(QString::fromLatin1(name), "x");
        }
    }
    CScratchFolder scratch;
};

} // namespace

TEST(ProcessDirectory, ShowsEveryEntryInNameOrderWithFullPaths)
{
    const Tree tree;
    CRecorder recorder(tree.scratch.Path());
    // The path ends in a separator already; the joined paths have one only.
    ProcessDirectory(tree.scratch.Path(), recorder);
    EXPECT_THAT(recorder.lines, ElementsAre(QStringLiteral("file a.txt"), QStringLiteral("enter b"),
                                            QStringLiteral("file b/one.txt"),
                                            QStringLiteral("file b/two.txt"), QStringLiteral("leave b"),
                                            QStringLiteral("enter c"), QStringLiteral("file c/three.txt"),
                                            QStringLiteral("leave c"), QStringLiteral("file d.txt")));
}

TEST(ProcessDirectory, AStopEndsOnlyItsLevel)
{
    const Tree tree;
    CRecorder recorder(tree.scratch.Path());
    recorder.stopAt = QStringLiteral("b/one.txt");
    ProcessDirectory(tree.scratch.Path(), recorder);
    EXPECT_THAT(recorder.lines, ElementsAre(QStringLiteral("file a.txt"), QStringLiteral("enter b"),
                                            QStringLiteral("file b/one.txt"), QStringLiteral("leave b"),
                                            QStringLiteral("enter c"), QStringLiteral("file c/three.txt"),
                                            QStringLiteral("leave c"), QStringLiteral("file d.txt")));
}

TEST(ProcessDirectory, AStopAtADirectoryEndsTheLevelThatHoldsIt)
{
    const Tree tree;
    CRecorder recorder(tree.scratch.Path());
    recorder.stopAt = QStringLiteral("b");
    ProcessDirectory(tree.scratch.Path(), recorder);
    EXPECT_THAT(recorder.lines, ElementsAre(QStringLiteral("file a.txt"), QStringLiteral("enter b")));
}

TEST(ProcessDirectory, ASkippedDirectoryIsNeitherWalkedNorLeft)
{
    const Tree tree;
    CRecorder recorder(tree.scratch.Path());
    recorder.skipAt = QStringLiteral("b");
    ProcessDirectory(tree.scratch.Path(), recorder);
    EXPECT_THAT(recorder.lines, ElementsAre(QStringLiteral("file a.txt"), QStringLiteral("enter b"),
                                            QStringLiteral("enter c"), QStringLiteral("file c/three.txt"),
                                            QStringLiteral("leave c"), QStringLiteral("file d.txt")));
}

TEST(ProcessDirectory, ADirectoryThatCannotBeListedHasNoEntries)
{
    const CScratchFolder scratch;
    CRecorder recorder(scratch.Path());
    ProcessDirectory(scratch.Path(QStringLiteral("missing")), recorder);
    EXPECT_TRUE(recorder.lines.isEmpty());
}

TEST(RemoveDirectoryTree, RemovesADirectoryWithAllThatItHolds)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("t/a/b/c.txt"), "x");
    scratch.Write(QStringLiteral("t/.hidden"), "x");
    EXPECT_TRUE(RemoveDirectoryTree(scratch.Path(QStringLiteral("t"))));
    EXPECT_FALSE(FileExists(scratch.Path(QStringLiteral("t"))));
    EXPECT_FALSE(RemoveDirectoryTree(scratch.Path(QStringLiteral("t"))));
}

TEST(RemoveDirectoryTree, WhatALinkLeadsToStays)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("kept/a.txt"), "x");
    scratch.Write(QStringLiteral("t/b.txt"), "x");
    ASSERT_TRUE(QFile::link(scratch.Path(QStringLiteral("kept")), scratch.Path(QStringLiteral("t/link"))));
    EXPECT_TRUE(RemoveDirectoryTree(scratch.Path(QStringLiteral("t"))));
    EXPECT_EQ(scratch.Read(QStringLiteral("kept/a.txt")), "x");
}

TEST(RemoveDirectoryTree, GoesOnBehindWhatCannotBeRemoved)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("t/a/kept.txt"), "x");
    scratch.Write(QStringLiteral("t/a/z/gone.txt"), "x");
    const QByteArray closed = QFile::encodeName(scratch.Path(QStringLiteral("t/a")));
    ASSERT_EQ(::chmod(QFile::encodeName(scratch.Path(QStringLiteral("t/a/z"))).constData(), 0777), 0);
    ASSERT_EQ(::chmod(closed.constData(), 0555), 0);
    {
        const COrdinaryRights rights(scratch);
        EXPECT_FALSE(RemoveDirectoryTree(scratch.Path(QStringLiteral("t"))));
    }
    ASSERT_EQ(::chmod(closed.constData(), 0755), 0);
    EXPECT_THAT(scratch.ListFiles(), ElementsAre(QStringLiteral("t/a/kept.txt")));
}
