#include "deploy/server/LocalSite.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QCryptographicHash>
#include <gtest/gtest.h>

#include "common/Exceptions.h"
#include "common/StopSignal.h"
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
    std::vector<LocalFile> Read()
    {
        return ReadLocalSite(scratch.Path(QStringLiteral("site/")), paths, hashesPath, stop);
    }

    const CScratchFolder scratch;
    const QString hashesPath = scratch.Path(QStringLiteral("hashes"));
    QStringList paths;
    CStopSignal stop;
    const QString page = QStringLiteral("index.html");
};

QByteArray HashOf(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
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
    EXPECT_EQ(files[0].size, 5);
    EXPECT_EQ(files[0].sha256, HashOf("hello"));
    EXPECT_EQ(files[1].sha256, HashOf(""));
}

// Shown by a change that neither size nor time tells of.
TEST_F(LocalSite, AFileOfTheSameSizeAndTimeIsNotReadAgain)
{
    Write(page, "hello");
    Read();
    Write(page, "world");
    EXPECT_EQ(Read()[0].sha256, HashOf("hello"));
    Write(page, "world", 1'000'000'001);
    EXPECT_EQ(Read()[0].sha256, HashOf("world"));
    Write(page, "worlds", 1'000'000'001);
    EXPECT_EQ(Read()[0].sha256, HashOf("worlds"));
}

TEST_F(LocalSite, AFileThatWasJustWrittenIsReadAgain)
{
    Write(page, "hello", ::time(nullptr));
    Read();
    Write(page, "world", ::time(nullptr));
    EXPECT_EQ(Read()[0].sha256, HashOf("world"));
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
        EXPECT_EQ(Read()[0].sha256, HashOf("world"));
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
