#include "deploy/server/SitePlan.h"

#include <gtest/gtest.h>

#include "deploy/server/ContentHash.h"
#include "deploy/server/SiteNames.h"

namespace {

const QString Sender = QStringLiteral("12345678");
constexpr int64_t Now = 2'000'000;
constexpr int64_t ManifestTime = 1'000'000;

QByteArray HashOf(char content)
{
    return QByteArray(CContentHash::size, content);
}

QString Path(const char* path)
{
    return QString::fromLatin1(path);
}

class PlanOfSite : public testing::Test {
protected:
    PlanOfSite()
    {
        remote.manifest = SiteManifest();
        remote.isManifestThere = true;
        remote.manifestTime = ManifestTime;
        remote.directories = {QString(), Path("pictures"), Path("Blue"), Path("2"), Path("2/pictures")};
    }

    void AddLocal(const char* path, char content, int64_t size = 10)
    {
        local.push_back(
            {.path = Path(path), .source = {}, .size = size, .modified = 0, .hash = HashOf(content)});
    }
    void AddRemote(const char* path, int64_t size = 10, int64_t modified = ManifestTime)
    {
        remote.files[Path(path)] = {size, modified};
    }
    void AddListed(const char* path, char content, int64_t size = 10)
    {
        remote.manifest->files[Path(path)] = {
            .size = size, .hash = HashOf(content), .isSeen = false, .time = 5, .rest = {}};
    }
    // As it is on both sides.
    void AddSame(const char* path)
    {
        AddLocal(path, 'a');
        AddRemote(path);
        AddListed(path, 'a');
    }

    SitePlan Make() const
    {
        return MakeSitePlan({.local = local,
                             .remote = remote,
                             .stored = stored,
                             .sender = Sender,
                             .now = Now,
                             .removeLeftovers = removeLeftovers});
    }
    // "+index.html *a.jpg -b.html": new, changed and removed files in their order.
    QString Told() const
    {
        const SitePlan plan = Make();
        QStringList words;
        for (const PlannedFile& send : plan.sends) {
            words += (send.isNew ? QLatin1Char('+') : QLatin1Char('*')) + send.file.path;
        }
        for (const QString& path : plan.removedPages + plan.removedAssets) {
            words += QLatin1Char('-') + path;
        }
        return words.join(QLatin1Char(' '));
    }

    std::vector<LocalFile> local;
    RemoteSite remote;
    std::map<QString, StoredFile> stored;
    bool removeLeftovers = true;
};

} // namespace

TEST_F(PlanOfSite, WhatIsTheSameStays)
{
    AddSame("index.html");
    AddSame("pictures/a.jpg");
    const SitePlan plan = Make();
    EXPECT_TRUE(plan.IsEmpty());
    EXPECT_TRUE(plan.isManifestCurrent);
    EXPECT_EQ(plan.unchanged, 2);
    EXPECT_EQ(plan.CountBytes(), 0);
    EXPECT_EQ(plan.opened.size(), 2u);
    EXPECT_TRUE(plan.directories.isEmpty());
}

TEST_F(PlanOfSite, CountsWhatIsNewChangedAndRemoved)
{
    AddSame("index.html");
    AddLocal("new.html", 'a', 7);
    AddLocal("changed.html", 'b', 100);
    AddRemote("changed.html", 100);
    AddListed("changed.html", 'a', 100);
    AddRemote("old.html");
    AddListed("old.html", 'a');
    const SitePlan plan = Make();
    EXPECT_EQ(plan.CountNew(), 1);
    EXPECT_EQ(plan.CountChanged(), 1);
    EXPECT_EQ(plan.CountRemoved(), 1);
    EXPECT_EQ(plan.unchanged, 1);
    EXPECT_EQ(plan.CountBytes(), 107);
    EXPECT_FALSE(plan.isManifestCurrent);
    EXPECT_EQ(Told(), Path("+new.html *changed.html -old.html"));
}

TEST_F(PlanOfSite, GoesFromWhatNobodySeesToWhatLeadsThere)
{
    for (const char* path : {"index.html", "2/index.html", "p1.html", "pictures/a.jpg", "Blue/style.css"}) {
        AddLocal(path, 'b');
        AddRemote(path);
        AddListed(path, 'a');
    }
    for (const char* path : {"p2.html", "3/index.html", "pictures/b.jpg", "3/p1.html", "Blue/new.css"}) {
        AddLocal(path, 'a');
    }
    for (const char* path : {"p9.html", "4/index.html", "pictures/z.jpg"}) {
        AddRemote(path);
        AddListed(path, 'a');
    }
    EXPECT_EQ(Told(),
              Path("+Blue/new.css +pictures/b.jpg *Blue/style.css *pictures/a.jpg +3/p1.html +p2.html "
                   "+3/index.html *p1.html *2/index.html *index.html -4/index.html -p9.html "
                   "-pictures/z.jpg"));
}

TEST_F(PlanOfSite, WhatTheServerHasNoLongerOrOtherwiseIsSentAgain)
{
    AddSame("same.jpg");
    AddSame("gone.jpg");
    remote.files.erase(Path("gone.jpg"));
    AddSame("cut.jpg");
    AddRemote("cut.jpg", 9);
    AddSame("younger.jpg");
    AddRemote("younger.jpg", 10, ManifestTime + 1);
    EXPECT_EQ(Told(), Path("*cut.jpg +gone.jpg *younger.jpg"));
}

// A page that others lead to: what it leads to itself has to be there before it.
TEST_F(PlanOfSite, APageThatIsGoneComesAfterNewOnesAlsoAfterARunThatFailed)
{
    AddSame("p1.html");
    remote.files.erase(Path("p1.html"));
    AddLocal("p2.html", 'a');
    EXPECT_EQ(Told(), Path("+p2.html +p1.html"));
    EXPECT_TRUE(Make().opened.at(Path("p1.html")).isSeen);
    EXPECT_FALSE(Make().opened.at(Path("p2.html")).isSeen);
    remote.manifest->files = Make().opened;
    EXPECT_EQ(Told(), Path("+p2.html +p1.html"));
    EXPECT_TRUE(Make().opened.at(Path("p1.html")).isSeen);
}

TEST_F(PlanOfSite, AServerThatTellsNoTimesOrSizesIsBelieved)
{
    AddSame("a.jpg");
    remote.files[Path("a.jpg")] = {};
    EXPECT_EQ(Told(), QString());
    AddRemote("a.jpg", 10, ManifestTime + 1);
    remote.manifestTime.reset();
    EXPECT_EQ(Told(), QString());
}

// By this computer's own notes: it came after the manifest.
TEST_F(PlanOfSite, WhatWasSentAfterTheManifestIsYoungerAndStays)
{
    AddSame("a.jpg");
    AddRemote("a.jpg", 10, ManifestTime + 1);
    remote.amended = {Path("a.jpg")};
    const SitePlan plan = Make();
    EXPECT_TRUE(plan.IsEmpty());
    EXPECT_FALSE(plan.isManifestCurrent);
}

TEST_F(PlanOfSite, WhatWasUnderWayIsSentAgain)
{
    AddSame("a.jpg");
    remote.manifest->files[Path("a.jpg")].hash.clear();
    EXPECT_EQ(Told(), Path("*a.jpg"));
    EXPECT_TRUE(Make().strangers.isEmpty());
}

TEST_F(PlanOfSite, FilesThatTheManifestDoesNotListAreStrangers)
{
    AddLocal("index.html", 'a');
    AddRemote("index.html");
    AddLocal("pictures/a.jpg", 'a');
    AddRemote("pictures/a.jpg");
    AddLocal("new.html", 'a');
    AddRemote("notes.txt");
    const SitePlan plan = Make();
    EXPECT_EQ(plan.strangers, QStringList({Path("index.html"), Path("pictures/a.jpg")}));
    EXPECT_EQ(plan.CountRemoved(), 0);
}

TEST_F(PlanOfSite, WithoutAManifestAssetsOfTheSameSizeStay)
{
    remote.manifest.reset();
    remote.isManifestThere = false;
    remote.manifestTime.reset();
    AddLocal("pictures/a.jpg", 'a', 10);
    AddRemote("pictures/a.jpg", 10);
    AddLocal("pictures/b.jpg", 'a', 10);
    AddRemote("pictures/b.jpg", 11);
    AddLocal("index.html", 'a', 10);
    AddRemote("index.html", 10);
    AddLocal("p.html", 'a', 10);
    AddRemote("p.html", 12);
    AddRemote("old.html", 12);
    const SitePlan plan = Make();
    EXPECT_EQ(Told(), Path("*pictures/b.jpg *p.html *index.html"));
    EXPECT_EQ(plan.strangers, QStringList({Path("pictures/b.jpg"), Path("p.html")}));
    EXPECT_EQ(plan.opened.at(Path("pictures/a.jpg")).hash, HashOf('a'));
    EXPECT_FALSE(plan.isManifestCurrent);
}

// The files of earlier versions that the notes of this computer don't know.
TEST_F(PlanOfSite, WithNotesInPlaceOfAManifestUnknownFilesOfTheSameSizeAreNoStrangers)
{
    remote.isManifestThere = false;
    remote.manifestTime.reset();
    AddSame("pictures/a.jpg");
    AddLocal("pictures/b.jpg", 'a', 10);
    AddRemote("pictures/b.jpg", 10);
    AddLocal("pictures/c.jpg", 'b', 10);
    AddRemote("pictures/c.jpg", 10);
    AddListed("pictures/c.jpg", 'a', 10);
    AddLocal("p.html", 'a', 10);
    AddRemote("p.html", 10);
    EXPECT_EQ(Told(), Path("*pictures/c.jpg *p.html"));
    EXPECT_TRUE(Make().strangers.isEmpty());
}

TEST_F(PlanOfSite, WhatSomebodyHasReplacedIsNotRemoved)
{
    AddRemote("theirs.html", 11);
    AddListed("theirs.html", 'a');
    AddRemote("later.html", 10, ManifestTime + 1);
    AddListed("later.html", 'a');
    AddListed("gone.html", 'a');
    const SitePlan plan = Make();
    EXPECT_EQ(plan.CountRemoved(), 0);
    EXPECT_TRUE(plan.opened.empty());
    EXPECT_FALSE(plan.isManifestCurrent);
}

TEST_F(PlanOfSite, LeftoversMayStayAndStayListed)
{
    AddRemote("pictures/old.jpg");
    AddListed("pictures/old.jpg", 'a');
    removeLeftovers = false;
    const SitePlan plan = Make();
    EXPECT_EQ(plan.CountRemoved(), 0);
    EXPECT_EQ(plan.opened.count(Path("pictures/old.jpg")), 1u);
    EXPECT_TRUE(plan.isManifestCurrent);
}

TEST_F(PlanOfSite, TheManifestIsOpenForWhatIsToBeSent)
{
    AddLocal("a.jpg", 'b', 20);
    AddRemote("a.jpg");
    AddListed("a.jpg", 'a');
    remote.manifest->files[Path("a.jpg")].rest = QJsonObject{{QStringLiteral("new"), 1}};
    const ManifestFile opened = Make().opened.at(Path("a.jpg"));
    EXPECT_FALSE(opened.IsWhole());
    EXPECT_EQ(opened.size, 20);
    EXPECT_EQ(opened.rest.size(), 1);
}

TEST_F(PlanOfSite, AFileThatIsThereUnderATemporaryNameIsOnlyRenamed)
{
    AddLocal("pictures/a.jpg", 'a');
    AddLocal("pictures/b.jpg", 'a');
    AddLocal("pictures/c.jpg", 'a');
    for (const char* path : {"pictures/a.jpg", "pictures/b.jpg", "pictures/c.jpg"}) {
        const QString temporary = TemporaryPathFor(Sender, Path(path));
        remote.files[temporary] = {10, ManifestTime};
        stored[Path(path)] = {10, HashOf('a')};
    }
    stored[Path("pictures/b.jpg")].hash = HashOf('b');                                  // of another time
    remote.files[TemporaryPathFor(Sender, Path("pictures/c.jpg"))] = {9, ManifestTime}; // not whole
    const SitePlan plan = Make();
    ASSERT_EQ(plan.sends.size(), 3u);
    EXPECT_TRUE(plan.sends[0].isStored);
    EXPECT_FALSE(plan.sends[1].isStored);
    EXPECT_FALSE(plan.sends[2].isStored);
    EXPECT_EQ(plan.CountBytes(), 20);
    EXPECT_FALSE(plan.temporaries.contains(TemporaryPathFor(Sender, Path("pictures/a.jpg"))));
    EXPECT_TRUE(plan.temporaries.contains(TemporaryPathFor(Sender, Path("pictures/b.jpg"))));
}

// The program was ended after the rename and before its note.
TEST_F(PlanOfSite, AFileThatHasGotItsNameUnnoticedIsNotSentAgain)
{
    const auto isSent = [this] {
        const SitePlan plan = Make();
        EXPECT_EQ(plan.named.size() + plan.sends.size(), 1u);
        return !plan.sends.empty();
    };
    AddLocal("pictures/a.jpg", 'a');
    AddRemote("pictures/a.jpg", 10, ManifestTime + 5);
    remote.manifest->files[Path("pictures/a.jpg")] = {
        .size = 10, .hash = {}, .isSeen = false, .time = 0, .rest = {}};
    stored[Path("pictures/a.jpg")] = {10, HashOf('a')};
    remote.isLastOurs = true;
    EXPECT_FALSE(isSent());
    EXPECT_TRUE(Make().opened.at(Path("pictures/a.jpg")).IsWhole());
    EXPECT_FALSE(Make().isManifestCurrent);
    remote.isLastOurs = false; // another computer has been there since
    EXPECT_TRUE(isSent());
    remote.isLastOurs = true;
    AddRemote("pictures/a.jpg", 10, ManifestTime - 1); // the old one
    EXPECT_TRUE(isSent());
    AddRemote("pictures/a.jpg", 9, ManifestTime + 5);
    EXPECT_TRUE(isSent());
    AddRemote("pictures/a.jpg", 10, ManifestTime + 5);
    stored[Path("pictures/a.jpg")].hash = HashOf('b');
    EXPECT_TRUE(isSent());
    stored[Path("pictures/a.jpg")].hash = HashOf('a');
    remote.files[TemporaryPathFor(Sender, Path("pictures/a.jpg"))] = {10, ManifestTime};
    EXPECT_TRUE(isSent());
}

TEST_F(PlanOfSite, OwnTemporaryFilesGoAndThoseOfOthersWhenTheyAreOld)
{
    const QString own = TemporaryPathFor(Sender, Path("a.jpg"));
    const QString young = TemporaryPathFor(QStringLiteral("aaaaaaaa"), Path("a.jpg"));
    const QString old = TemporaryPathFor(QStringLiteral("bbbbbbbb"), Path("a.jpg"));
    remote.files[own] = {3, Now};
    remote.files[young] = {3, Now - 60 * 60};
    remote.files[old] = {3, Now - 3 * 24 * 60 * 60};
    EXPECT_EQ(Make().temporaries, QStringList({own, old}));
    EXPECT_TRUE(Make().IsEmpty());
}

TEST_F(PlanOfSite, OnlyMissingDirectoriesAreMadeUpperOnesFirst)
{
    AddLocal("3/pictures/a.jpg", 'a');
    AddLocal("pictures/a.jpg", 'a');
    EXPECT_EQ(Make().directories, QStringList({Path("3"), Path("3/pictures")}));
    remote.directories.clear();
    EXPECT_EQ(Make().directories, QStringList({QString(), Path("3"), Path("3/pictures"), Path("pictures")}));
}

TEST(SitePlan, KnowsTheDirectoriesOfBothSides)
{
    const std::set<QString> expected{QString(), Path("2"), Path("2/pictures"), Path("Blue"), Path("Blue/x")};
    EXPECT_EQ(DirectoriesOf({{Path("2/pictures/a.jpg"), {}, 1, 0, {}}},
                            {{Path("Blue/x/a.css"), ManifestFile()}, {Path("index.html"), ManifestFile()}}),
              expected);
    EXPECT_EQ(DirectoriesOf({}, {}), std::set<QString>{QString()});
}

// A file that nobody has read yet may be any.
TEST_F(PlanOfSite, AFileWhoseHashIsNotKnownIsSent)
{
    AddSame("index.html");
    local[0].hash.clear();
    EXPECT_EQ(Told(), "*index.html");
}

TEST_F(PlanOfSite, AHashIsNeededOnlyForWhatMayBeThereAlready)
{
    const auto isNeeded = [this](const char* path) {
        AddLocal(path, 'a');
        return NeedsHash(local.back(), remote, Sender);
    };
    EXPECT_FALSE(isNeeded("new.jpg"));
    AddRemote("longer.jpg", 11);
    EXPECT_FALSE(isNeeded("longer.jpg"));
    AddRemote("same.jpg", 10);
    EXPECT_TRUE(isNeeded("same.jpg"));
    remote.files[Path("untold.jpg")] = {};
    EXPECT_TRUE(isNeeded("untold.jpg"));
    remote.files[TemporaryPathFor(Sender, Path("arrived.jpg"))] = {10, ManifestTime};
    EXPECT_TRUE(isNeeded("arrived.jpg"));
}
