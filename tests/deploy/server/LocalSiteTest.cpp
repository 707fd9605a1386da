#include "deploy/server/LocalSite.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "common/Exceptions.h"
#include "common/StopSignal.h"
#include "deploy/server/ContentHash.h"
#include "support/ScratchFolder.h"

namespace {

class LocalSite : public testing::Test {
protected:
    // Long enough ago for a hash to be kept.
    void Write(const QString& name, const QByteArray& bytes, int64_t time = 1'000'000'000)
    {
        const QString path = scratch.Write(QStringLiteral("site/") + name, bytes);
        const timespec times[] = {{time, 0}, {time, 0}};
        ::utimensat(AT_FDCWD, path.toUtf8().constData(), times, 0);
        if (!paths.contains(name)) {
            paths += name;
        }
    }
    // The hashes of all files.
    std::vector<LocalFile> Read()
    {
        return ReadThose([](const LocalFile&) { return true; });
    }
    std::vector<LocalFile> ReadThose(const std::function<bool(const LocalFile&)>& isNeeded)
    {
        SiteSources sources;
        for (const QString& path : paths) {
            sources[path] = scratch.Path(QStringLiteral("site/") + path);
        }
        CLocalSite site(sources, hashesPath);
        site.ReadHashes(isNeeded, stop);
        site.SaveHashes();
        return site.GetFiles();
    }

    const CScratchFolder scratch;
    const QString hashesPath = scratch.Path(QStringLiteral("hashes"));
    QStringList paths;
    CStopSignal stop;
    const QString page = QStringLiteral("index.html");
};

QByteArray HashOf(const QByteArray& bytes)
{
    return CContentHash::Of(bytes);
}

} // namespace

TEST_F(LocalSite, TellsSizesAndHashesOfTheFilesThatAreThere)
{
    Write(page, "hello");
    Write(QStringLiteral("pictures/a.jpg"), "");
    paths.insert(1, QStringLiteral("gone.html"));
    const std::vector<LocalFile> files = Read();
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].path, page);
    EXPECT_EQ(files[0].source, scratch.Path(QStringLiteral("site/index.html")));
    EXPECT_EQ(files[0].size, 5);
    EXPECT_EQ(files[0].hash, HashOf("hello"));
    EXPECT_EQ(files[1].hash, HashOf(""));
}

// Shown by a change that neither size nor time tells of.
TEST_F(LocalSite, AFileOfTheSameSizeAndTimeIsNotReadAgain)
{
    Write(page, "hello");
    Read();
    Write(page, "world");
    EXPECT_EQ(Read()[0].hash, HashOf("hello"));
    Write(page, "world", 1'000'000'001);
    EXPECT_EQ(Read()[0].hash, HashOf("world"));
    Write(page, "worlds", 1'000'000'001);
    EXPECT_EQ(Read()[0].hash, HashOf("worlds"));
}

TEST_F(LocalSite, AFileThatWasJustWrittenIsReadAgain)
{
    Write(page, "hello", ::time(nullptr));
    Read();
    Write(page, "world", ::time(nullptr));
    EXPECT_EQ(Read()[0].hash, HashOf("world"));
}

TEST_F(LocalSite, OnlyWhatIsNeededIsRead)
{
    Write(page, "hello");
    Write(QStringLiteral("film.mp4"), "long");
    const auto isPage = [this](const LocalFile& file) {
        return file.path == page;
    };
    std::vector<LocalFile> files = ReadThose(isPage);
    EXPECT_EQ(files[0].hash, QByteArray()) << "film.mp4";
    EXPECT_EQ(files[1].hash, HashOf("hello"));
    files = ReadThose([](const LocalFile&) { return false; });
    EXPECT_EQ(files[0].hash, QByteArray());
    EXPECT_EQ(files[1].hash, HashOf("hello")) << "known from the time before";
}

TEST_F(LocalSite, WhatWasReadElsewhereIsKept)
{
    Write(page, "hello");
    const SiteSources sources{{page, scratch.Path(QStringLiteral("site/index.html"))}};
    CLocalSite first(sources, hashesPath);
    first.SetHashes({{page, HashOf("read on its way")}, {QStringLiteral("other"), HashOf("")}});
    first.SaveHashes();
    const CLocalSite second(sources, hashesPath);
    EXPECT_EQ(second.GetFiles()[0].hash, HashOf("read on its way"));
}

// The numbers are those that other programs print for the same bytes ("xxhsum -H2").
TEST(ContentHash, IsTheStandardOne)
{
    EXPECT_EQ(CContentHash::Of("").toHex(), "99aa06d3014798d86001c324468d497f");
    EXPECT_EQ(CContentHash::Of("hello").toHex(), "b5e9c1ad071b3e7fc779cfaa5e523818");
    CContentHash hash;
    hash.Add("he", 2);
    hash.Add("llo", 3);
    EXPECT_EQ(hash.Get(), CContentHash::Of("hello"));
}

TEST_F(LocalSite, DamagedHashesAreNone)
{
    Write(page, "hello");
    Read();
    const QByteArray whole = scratch.Read(QStringLiteral("hashes"));
    ASSERT_GT(whole.size(), 40);
    Write(page, "world");
    for (const QByteArray& damaged : {whole.chopped(1), whole.left(6), "x" + whole.mid(1)}) {
        scratch.Write(QStringLiteral("hashes"), damaged);
        EXPECT_EQ(Read()[0].hash, HashOf("world"));
    }
}

TEST_F(LocalSite, WhatCanNotBeReadIsNamed)
{
    ::mkdir(scratch.Path(QStringLiteral("folder")).toUtf8().constData(), 0700);
    scratch.Write(QStringLiteral("site/x"), "");
    paths += QStringLiteral("../folder");
    try {
        Read();
        ADD_FAILURE() << "a folder was read";
    } catch (const CFileException& failure) {
        EXPECT_TRUE(failure.GetCaption().contains(QStringLiteral("folder")));
    }
}
