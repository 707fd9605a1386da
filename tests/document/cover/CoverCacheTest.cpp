#include "document/cover/CoverCache.h"

#include <sys/stat.h>
#include <utime.h>

#include <QFile>
#include <QFileInfo>

#include "common/DirectoryProcessor.h"
#include "common/FileSystem.h"
#include "document/cover/CoverComposition.h"
#include "document/galleries/Gallery.h"
#include "support/ProjectFixture.h"

namespace {

constexpr uint32_t red = 0xc80000;
constexpr uint32_t blue = 0x0000c8;

// What makes a run differ from the one before; numbers are those of pictures.
struct Tree {
    std::vector<int> child = {2, 3, 4};
    int angle = 0; // of the child's first picture
    int grandchild = 5;
};

// Runs over one set of pictures and one cache. A root gallery of two pictures, a child gallery of four, and
// one of a single picture in the child.
class CoverCache : public testing::Test {
protected:
    CoverCache()
    {
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"p.html\" multipage=\"1\"/>");
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("p.html"),
                          "<%picture id=\"p\" width=\"20\" height=\"15\" href=\"\"%>");
        for (int i = 0; i < 8; ++i) {
            const uint32_t colour = (i % 2 != 0 ? red : blue) + static_cast<uint32_t>(i) * 0x001000;
            pictures.push_back(
                fixture.WritePicture(QStringLiteral("%1.png").arg(i), QSize(40 + i, 30), colour));
        }
    }

    // The covers that a run with a temporary folder of its own makes, by name.
    std::map<QString, QByteArray> Run(const CCoverCache::Options& options, const Tree& tree)
    {
        CTempFolder runFolder(fixture.scratch.Path());
        CProjectEnvironment environment = fixture.GetEnvironment();
        environment.tempFolder = &runFolder;
        environment.covers = options;
        CGalleryProject project(environment);
        project.New();
        CGallery& root = *project.GetRootGallery();
        root.AddPicture(pictures[0]);
        CGallery& child = *project.FindGallery(project.AddChildGallery(root.GetIndex()));
        CGallery& grandchild = *project.FindGallery(project.AddChildGallery(child.GetIndex()));
        for (const int picture : tree.child) {
            child.AddPicture(pictures[static_cast<size_t>(picture)]);
        }
        for (int turn = 0; turn < tree.angle; ++turn) {
            child.RotatePicture(1, true);
        }
        grandchild.AddPicture(pictures[static_cast<size_t>(tree.grandchild)]);
        root.GetCoverPath();
        std::map<QString, QByteArray> covers;
        for (const DirectoryEntry& entry : ListDirectory(runFolder.GetPath())) {
            covers[entry.name] = ReadWholeFile(runFolder.GetPath() + entry.name);
        }
        return covers;
    }

    std::map<QString, QByteArray> Run(const Tree& tree = {}) { return Run(CacheOptions(), tree); }
    std::map<QString, QByteArray> Fresh(const Tree& tree = {}) { return Run({}, tree); }

    CCoverCache::Options CacheOptions() const
    {
        return {.folder = Path("cache/covers"), .restless = std::chrono::milliseconds(0)};
    }

    QStringList Kept() const
    {
        QStringList files;
        for (const DirectoryEntry& entry : ListDirectory(Path("cache/covers"))) {
            files += Path("cache/covers/") + entry.name;
        }
        return files;
    }

    // How many covers of the run came from the cache: their files there are replaced by others that are
    // whole, and show up.
    int CountRestored(const Tree& tree = {})
    {
        const auto fresh = Fresh(tree);
        CCoverCache cache(CacheOptions());
        const QString mark = fixture.scratch.Write(QStringLiteral("mark.png"), "mark");
        for (const QString& file : Kept()) {
            cache.Keep(QByteArray::fromHex(QFileInfo(file).baseName().toLatin1()), mark);
        }
        int restored = 0;
        for (const auto& [name, bytes] : Run(tree)) {
            restored += bytes == "mark" ? 1 : 0;
        }
        EXPECT_TRUE(RemoveDirectoryTree(Path("cache")));
        return restored;
    }

    QString Path(const char* name) const { return fixture.scratch.Path(QLatin1String(name)); }

    CProjectFixture fixture;
    std::vector<QString> pictures;
};

} // namespace

TEST_F(CoverCache, GivesTheSameBytesColdAndWarm)
{
    const auto fresh = Fresh();
    ASSERT_EQ(fresh.size(), 3u);
    EXPECT_EQ(Run(), fresh);
    EXPECT_EQ(Kept().size(), 3);
    EXPECT_EQ(Run(), fresh);
    EXPECT_EQ(CountRestored(), 3);
}

TEST_F(CoverCache, WithoutAFolderKeepsNothing)
{
    const QStringList before = fixture.scratch.ListFiles();
    Fresh();
    EXPECT_EQ(fixture.scratch.ListFiles(), before);
}

TEST_F(CoverCache, AChangedPictureOfTheSameSizeAndTimeIsSeenUpTheTree)
{
    const auto before = Run();
    const QByteArray old = ReadWholeFile(pictures[5]);
    KeepingTimes(pictures[5], [&] {
        QByteArray other = ReadWholeFile(pictures[7]);
        // Padded after the picture's end.
        other = other.leftJustified(old.size(), '\0');
        ASSERT_EQ(other.size(), old.size());
        QFile file(pictures[5]);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(other);
    });
    const auto after = Run();
    EXPECT_EQ(after, Fresh());
    for (const auto& [name, bytes] : before) {
        EXPECT_NE(after.at(name), bytes) << qPrintable(name);
    }
}

TEST_F(CoverCache, EveryChangeOfTheTreeGivesTheCoversOfAFreshRun)
{
    const Tree trees[] = {
        {},
        {.child = {3, 2, 4}},
        {.angle = 1},
        {.angle = 2},
        {.child = {2, 3}},
        {.child = {2}},
        {.child = {}},
        {.grandchild = 6},
    };
    for (const Tree& tree : trees) {
        EXPECT_EQ(Run(tree), Fresh(tree)); // over what the trees before have left
        EXPECT_EQ(Run(tree), Fresh(tree));
    }
}

TEST_F(CoverCache, AChildWithOtherContentTakesAllAboveAlong)
{
    Run();
    // The grandchild's picture shows in its own cover, in its parent's and in the root's.
    EXPECT_EQ(CountRestored({.grandchild = 6}), 0);
}

TEST_F(CoverCache, WhatDidNotChangeIsTakenAllTheSame)
{
    Run();
    EXPECT_EQ(CountRestored({.angle = 1}), 1);
}

TEST_F(CoverCache, DamagedFilesAreNoticedAndMadeAgain)
{
    const auto fresh = Run();
    for (int damage = 0; damage < 7; ++damage) {
        for (const QString& file : Kept()) {
            const QByteArray whole = ReadWholeFile(file);
            QByteArray flipped = whole;
            flipped[whole.size() / 2] = static_cast<char>(~flipped[whole.size() / 2]);
            ASSERT_TRUE(QFile::remove(file));
            const QByteArray states[] = {QByteArray(),     whole.left(5), whole.left(16),
                                         whole.chopped(1), flipped,       whole + 'x'};
            if (damage == 6) {
                MakeDirectoryPath(file);
            } else {
                WriteFileAtomically(file, states[damage]);
            }
        }
        EXPECT_EQ(Run(), fresh) << damage;
    }
    EXPECT_TRUE(RemoveDirectoryTree(Path("cache")));
    Run();
    EXPECT_EQ(CountRestored(), 3);
}

TEST_F(CoverCache, WhatWasDamagedIsKeptWholeAgain)
{
    Run();
    for (const QString& file : Kept()) {
        WriteFileAtomically(file, "nonsense");
    }
    Run();
    EXPECT_EQ(CountRestored(), 3);
}

TEST_F(CoverCache, AFolderThatCantBeMadeOrWrittenChangesNothing)
{
    const auto fresh = Fresh();
    fixture.scratch.Write(QStringLiteral("cache"), "a file in the way");
    EXPECT_EQ(Run(), fresh);
    EXPECT_EQ(Run(), fresh);
    ASSERT_TRUE(QFile::remove(Path("cache")));
    // A name that is too long for any file system stops root as well, whom no rights stop.
    CCoverCache::Options unwritable = CacheOptions();
    unwritable.folder = Path("cache/") + QString(300, QLatin1Char('x'));
    EXPECT_EQ(Run(unwritable, {}), fresh);
}

TEST_F(CoverCache, ARestlessPictureIsNotTrusted)
{
    CCoverCache::Options options = CacheOptions();
    options.restless = std::chrono::hours(1);
    const auto fresh = Fresh();
    EXPECT_EQ(Run(options, {}), fresh);
    EXPECT_EQ(Kept().size(), 0);
}

TEST_F(CoverCache, CoversThatLackAPictureAreNotKept)
{
    fixture.scratch.Write(QStringLiteral("photos/5.png"), "no picture");
    EXPECT_EQ(Run(), Fresh());
    EXPECT_EQ(Kept().size(), 0); // it shows in all three
    // As soon as it can be read, it is there.
    fixture.WritePicture(QStringLiteral("5.png"));
    EXPECT_EQ(Run(), Fresh());
    EXPECT_EQ(Kept().size(), 3);
    ASSERT_TRUE(QFile::remove(pictures[5]));
    EXPECT_EQ(Run(), Fresh());
}

TEST_F(CoverCache, TheCoverOfAGalleryWithoutPicturesIsNotKeptButItsParentsIs)
{
    fixture.NewProject();
    const auto run = [&] {
        CProjectEnvironment environment = fixture.GetEnvironment();
        environment.covers = CacheOptions();
        CGalleryProject project(environment);
        project.New();
        project.AddChildGallery(project.GetRootGalleryIndex());
        return ReadWholeFile(project.GetRootGallery()->GetCoverPath());
    };
    const QByteArray first = run();
    EXPECT_EQ(Kept().size(), 1);
    EXPECT_EQ(run(), first);
}

TEST_F(CoverCache, IsForItsOwnerAlone)
{
    Run();
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(Path("cache/covers")).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(CoverCache, BeyondItsLimitTheLongestUnusedGo)
{
    const QString cover = fixture.scratch.Write(QStringLiteral("cover.png"), QByteArray(1000, 'c'));
    const QString target = Path("target.png");
    CCoverCache::Options options = CacheOptions();
    options.limit = 5 * 1016;
    CCoverCache cache(options);
    const auto age = [&](const QByteArray& key, int hours) {
        const utimbuf times = {::time(nullptr) - hours * 3600, ::time(nullptr) - hours * 3600};
        ASSERT_EQ(::utime(QFile::encodeName(Path("cache/covers/") + QString::fromLatin1(key.toHex()) +
                                            QStringLiteral(".cover"))
                              .constData(),
                          &times),
                  0);
    };
    const QByteArray keys[] = {"a", "b", "c", "d", "e"};
    int hours = 10;
    for (const QByteArray& key : keys) {
        cache.Keep(key, cover);
        age(key, hours--);
    }
    EXPECT_TRUE(cache.Restore("a", target)); // used just now
    cache.Keep("f", cover);
    EXPECT_TRUE(cache.Restore("a", target));
    EXPECT_FALSE(cache.Restore("b", target));
    for (const char* const key : {"c", "d", "e", "f"}) {
        EXPECT_TRUE(cache.Restore(key, target)) << key;
    }
    EXPECT_EQ(ReadWholeFile(target), ReadWholeFile(cover));
}

TEST_F(CoverCache, KeepsTheBytesUnderTheirOwnKeyOnly)
{
    CCoverCache cache(CacheOptions());
    const QString cover = fixture.scratch.Write(QStringLiteral("cover.png"), "bytes");
    cache.Keep("key", cover);
    EXPECT_FALSE(cache.Restore("other", Path("target.png")));
    EXPECT_FALSE(cache.Restore(QByteArray(), Path("target.png")));
    EXPECT_FALSE(FileExists(Path("target.png")));
    EXPECT_TRUE(cache.Restore("key", Path("target.png")));
    EXPECT_EQ(fixture.scratch.Read(QStringLiteral("target.png")), "bytes");
    // Nothing to keep is no failure.
    cache.Keep("gone", Path("gone.png"));
    EXPECT_EQ(Kept().size(), 1);
}

TEST_F(CoverCache, TheKeyTellsAllThatACoverIsMadeOf)
{
    const CCoverCache cache(CacheOptions());
    const CoverPicture one{.path = pictures[0], .namedBy = pictures[0]};
    const CoverPicture two{.path = pictures[1], .namedBy = pictures[1]};
    CoverPicture turned = one;
    turned.angle = 1;
    const CoverPicture child{
        .path = pictures[0], .namedBy = pictures[0], .isCover = true, .coverKey = QByteArray("k")};
    CoverPicture otherChild = child;
    otherChild.coverKey = "l";
    std::set<QByteArray> keys;
    const std::vector<CoverPicture> rows[] = {{},         {one},    {two},   {one, two},  {two, one},
                                              {one, one}, {turned}, {child}, {otherChild}};
    for (const auto& row : rows) {
        const QByteArray key = cache.KeyOf(QStringLiteral("/t/a.png"), row);
        EXPECT_FALSE(key.isNull());
        keys.insert(key);
        EXPECT_EQ(cache.KeyOf(QStringLiteral("/other/b_2.png"), row),
                  key); // the folder is a new one each run
    }
    keys.insert(cache.KeyOf(QStringLiteral("/t/a.jpg"), {one}));
    EXPECT_EQ(keys.size(), std::size(rows) + 1);
    CoverPicture unknown = child;
    unknown.coverKey = QByteArray();
    EXPECT_TRUE(cache.KeyOf(QStringLiteral("/t/a.png"), {one, unknown}).isNull());
    CoverPicture gone = one;
    gone.path = Path("gone.png");
    EXPECT_TRUE(cache.KeyOf(QStringLiteral("/t/a.png"), {gone}).isNull());
}
