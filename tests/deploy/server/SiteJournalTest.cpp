#include "deploy/server/SiteJournal.h"

#include <gtest/gtest.h>

#include "deploy/server/ContentHash.h"
#include "deploy/server/SiteNames.h"
#include "support/ScratchFolder.h"

namespace {

const QByteArray One(CContentHash::size, '1');
const QByteArray Two(CContentHash::size, '2');

ManifestFile Sent(const QByteArray& hash)
{
    return {.size = 7, .hash = hash, .isSeen = false, .time = 99, .rest = {}};
}

SiteManifest ManifestOf(const char* run)
{
    SiteManifest manifest;
    manifest.run = QString::fromLatin1(run);
    manifest.files[QStringLiteral("a.html")] = {
        .size = 7, .hash = {}, .isSeen = false, .time = 0, .rest = {}};
    manifest.files[QStringLiteral("pictures/b.jpg")] = Sent(One);
    return manifest;
}

// "a.html=1 pictures/b.jpg=?": which hash each file has.
QString Told(const SiteManifest& manifest)
{
    QStringList words;
    for (const auto& [path, file] : manifest.files) {
        words += path + QLatin1Char('=') + (file.IsWhole() ? QLatin1Char(file.hash[0]) : QLatin1Char('?'));
    }
    return words.join(QLatin1Char(' '));
}

class SiteJournal : public testing::Test {
protected:
    // As another run of the program finds it.
    QString Amended(const char* run) const
    {
        SiteManifest manifest = ManifestOf(run);
        CSiteJournal(path).Amend(manifest);
        return Told(manifest);
    }

    const CScratchFolder scratch;
    const QString path = scratch.Path(QStringLiteral("state/journal"));
};

} // namespace

TEST_F(SiteJournal, AddsWhatWasDoneSinceTheManifest)
{
    {
        CSiteJournal journal(path);
        journal.BeginRun(QStringLiteral("r1"));
        journal.NoteManifest(ManifestOf("r1"), true);
        journal.NoteSent(QStringLiteral("a.html"), Sent(Two));
        journal.NoteRemoved(QStringLiteral("pictures/b.jpg"));
    }
    EXPECT_EQ(Amended("r1"), QStringLiteral("a.html=2"));
    SiteManifest manifest = ManifestOf("r1");
    EXPECT_EQ(CSiteJournal(path).Amend(manifest),
              (std::set<QString>{QStringLiteral("a.html"), QStringLiteral("pictures/b.jpg")}));
    EXPECT_EQ(manifest.files.begin()->second.time, 99);
}

TEST_F(SiteJournal, SaysNothingAboutTheManifestOfAnotherComputer)
{
    CSiteJournal journal(path);
    journal.BeginRun(QStringLiteral("r1"));
    journal.NoteManifest(ManifestOf("r1"), true);
    journal.NoteSent(QStringLiteral("a.html"), Sent(Two));
    EXPECT_EQ(Amended("r2"), QStringLiteral("a.html=? pictures/b.jpg=1"));
    EXPECT_TRUE(CSiteJournal(path).Follows(QStringLiteral("r1")));
    EXPECT_FALSE(CSiteJournal(path).Follows(QStringLiteral("r2")));
}

// The next run ends before its own manifest is there.
TEST_F(SiteJournal, NotesCountUntilTheNextManifestIsThere)
{
    {
        CSiteJournal journal(path);
        journal.BeginRun(QStringLiteral("r1"));
        journal.NoteManifest(ManifestOf("r1"), true);
        journal.NoteSent(QStringLiteral("a.html"), Sent(Two));
    }
    {
        CSiteJournal journal(path);
        journal.BeginRun(QStringLiteral("r2"));
        journal.NoteRemoved(QStringLiteral("pictures/b.jpg"));
    }
    EXPECT_EQ(Amended("r1"), QStringLiteral("a.html=2"));
    CSiteJournal journal(path);
    journal.BeginRun(QStringLiteral("r3"));
    journal.NoteManifest(ManifestOf("r3"), true);
    EXPECT_EQ(Amended("r1"), QStringLiteral("a.html=? pictures/b.jpg=1"));
    EXPECT_EQ(Amended("r3"), QStringLiteral("a.html=? pictures/b.jpg=1"));
}

TEST_F(SiteJournal, AnUnfinishedLineIsNoLine)
{
    {
        CSiteJournal journal(path);
        journal.BeginRun(QStringLiteral("r1"));
        journal.NoteSent(QStringLiteral("a.html"), Sent(Two));
        journal.NoteRemoved(QStringLiteral("pictures/b.jpg"));
    }
    QByteArray bytes = scratch.Read(QStringLiteral("state/journal"));
    const QByteArray whole = bytes;
    scratch.Write(QStringLiteral("state/journal"), bytes.chopped(1));
    EXPECT_EQ(Amended("r1"), QStringLiteral("a.html=2 pictures/b.jpg=1"));
    // What the next run writes stands on a line of its own.
    {
        CSiteJournal journal(path);
        journal.BeginRun(QStringLiteral("r2"));
        journal.NoteRemoved(QStringLiteral("pictures/b.jpg"));
    }
    EXPECT_EQ(Amended("r1"), QStringLiteral("a.html=2"));
    scratch.Write(QStringLiteral("state/journal"), QByteArray(100, '\0'));
    EXPECT_EQ(Amended("r1"), QStringLiteral("a.html=? pictures/b.jpg=1"));
}

TEST_F(SiteJournal, KnowsWhatIsThereUnderATemporaryName)
{
    const QString sender = CSiteJournal(path).GetSender();
    EXPECT_TRUE(IsSender(sender));
    CSiteJournal first(path);
    first.BeginRun(QStringLiteral("r1"));
    for (const char* name : {"a", "b", "c"}) {
        first.NoteStored(QString::fromLatin1(name), {5, One});
    }
    first.NoteSent(QStringLiteral("b"), Sent(One));
    first.NoteUnstored(QStringLiteral("c"));
    const CSiteJournal second(path);
    EXPECT_EQ(second.GetSender(), first.GetSender());
    ASSERT_EQ(second.GetStored().size(), 1u);
    EXPECT_EQ(second.GetStored().begin()->first, QStringLiteral("a"));
    EXPECT_EQ(second.GetStored().begin()->second.hash, One);
    EXPECT_TRUE(second.IsStored(QStringLiteral("a")));
    EXPECT_FALSE(second.IsStored(QStringLiteral("b")));
}

// It was sent before and is on its way again, in another state.
TEST_F(SiteJournal, AStoredFileStaysStoredWhenNotesAreWrittenAnew)
{
    CSiteJournal first(path);
    first.BeginRun(QStringLiteral("r1"));
    first.NoteSent(QStringLiteral("a"), Sent(One));
    first.NoteStored(QStringLiteral("a"), {5, Two});
    first.NoteStored(QStringLiteral("b"), {5, Two});
    first.BeginRun(QStringLiteral("r2"), {QStringLiteral("a")});
    EXPECT_FALSE(first.IsStored(QStringLiteral("b")));
    EXPECT_TRUE(CSiteJournal(path).IsStored(QStringLiteral("a")));
    first.NoteManifest(ManifestOf("r2"), true);
    EXPECT_TRUE(CSiteJournal(path).IsStored(QStringLiteral("a")));
}

TEST_F(SiteJournal, StandsInForAManifestThatTheServerDoesNotTake)
{
    EXPECT_FALSE(CSiteJournal(path).FindSubstitute().has_value());
    {
        CSiteJournal journal(path);
        journal.BeginRun(QStringLiteral("r1"));
        journal.NoteManifest(ManifestOf("r1"), false);
        journal.NoteSent(QStringLiteral("a.html"), Sent(Two));
    }
    EXPECT_EQ(Told(*CSiteJournal(path).FindSubstitute()), QStringLiteral("a.html=2 pictures/b.jpg=1"));
}

// Somebody has removed it: whose the files are is known, but not whether the pages are still the same.
TEST_F(SiteJournal, StandsInForAManifestThatIsGone)
{
    {
        CSiteJournal journal(path);
        journal.BeginRun(QStringLiteral("r1"));
        journal.NoteManifest(ManifestOf("r1"), true);
        journal.NoteSent(QStringLiteral("a.html"), Sent(Two));
    }
    EXPECT_EQ(Told(*CSiteJournal(path).FindSubstitute()), QStringLiteral("a.html=? pictures/b.jpg=1"));
}
