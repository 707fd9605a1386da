#include "deploy/server/SiteManifest.h"

#include <gtest/gtest.h>

#include "deploy/server/ContentHash.h"

namespace {

SiteManifest Sample()
{
    SiteManifest manifest{.program = QStringLiteral("1.2.0"),
                          .project = QStringLiteral("0123456789abcdef0123456789abcdef"),
                          .run = QStringLiteral("00000000000000aa"),
                          .files = {},
                          .rest = {}};
    manifest.files[QStringLiteral("index.html")] = {.size = 5'000'000'000,
                                                    .hash = QByteArray(CContentHash::size, '\x1f'),
                                                    .isSeen = false,
                                                    .time = 1'800'000'000,
                                                    .rest = {}};
    manifest.files[QString::fromUtf8("pictures/\"größe\".jpg")] = {
        .size = 0, .hash = {}, .isSeen = true, .time = 0, .rest = {}};
    return manifest;
}

const QByteArray Hash = "\"hash\":\"" + QByteArray(CContentHash::size, '\x1f').toHex() + "\"";

} // namespace

TEST(SiteManifest, IsLinesOfJsonAndComesBackAsItWas)
{
    const QByteArray bytes = Sample().Format();
    EXPECT_EQ(
        bytes.toStdString(),
        (R"({"program":"1.2.0","project":"0123456789abcdef0123456789abcdef","run":"00000000000000aa","vistorama-manifest":1})"
         "\n"
         "{" +
         Hash +
         R"(,"path":"index.html","size":5000000000,"time":1800000000})"
         "\n"
         R"({"path":"pictures/\"größe\".jpg","seen":true,"size":0,"time":0})"
         "\n"
         R"({"files":2})"
         "\n")
            .toStdString());
    const auto read = SiteManifest::Parse(bytes);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->Format(), bytes);
    EXPECT_TRUE(read->files.begin()->second.IsWhole());
    EXPECT_FALSE(read->files.rbegin()->second.IsWhole());
    EXPECT_TRUE(read->files.rbegin()->second.isSeen);
    EXPECT_EQ(read->project, Sample().project);
    EXPECT_EQ(read->run, Sample().run);
}

TEST(SiteManifest, WhatItDoesNotKnowIsKept)
{
    QByteArray bytes = Sample().Format();
    bytes.replace("{\"program\"", "{\"colour\":[1,2],\"program\"")
        .replace("\"time\":0", "\"new\":{\"a\":1},\"time\":0");
    const auto read = SiteManifest::Parse(bytes);
    ASSERT_TRUE(read.has_value());
    const QByteArray written = read->Format();
    EXPECT_TRUE(written.contains("\"colour\":[1,2]")) << written.constData();
    EXPECT_TRUE(written.contains("\"new\":{\"a\":1}")) << written.constData();
}

TEST(SiteManifest, ADamagedOrNewerOneIsNone)
{
    const QByteArray whole = Sample().Format();
    for (qsizetype size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(SiteManifest::Parse(whole.left(size)).has_value()) << size;
    }
    const struct {
        const char* from;
        const char* to;
    } rows[] = {
        {"\"vistorama-manifest\":1", "\"vistorama-manifest\":2"},
        {"\"vistorama-manifest\":1", "\"manifest\":1"},
        {"\"files\":2", "\"files\":3"},
        {"\"size\":0", "\"size\":-1"},
        {"\"size\":0", "\"size\":\"0\""},
        {"\"hash\":\"1f", "\"hash\":\""},
        {"\"hash\":\"1f", "\"hash\":\"zz"},
        {"\"path\":\"index.html\"", "\"path\":7"},
        {"\"path\":\"index.html\"", "\"path\" \"index.html\""},
        {"{\"path\"", "[\"path\""},
        {"{\"files\":2}\n", "{\"files\":2}\nmore"},
    };
    for (const auto& row : rows) {
        QByteArray damaged = whole;
        damaged.replace(row.from, row.to);
        ASSERT_NE(damaged, whole) << row.from;
        EXPECT_FALSE(SiteManifest::Parse(damaged).has_value()) << row.to;
    }
}

TEST(SiteManifest, NamesThatLeadOutOfTheSiteAreLeftOut)
{
    for (const char* path : {"../index.html", "/index.html", "a/../../b", ".vistorama/x", "a\\nb", ""}) {
        QByteArray bytes = Sample().Format();
        bytes.replace("\"path\":\"index.html\"", QByteArray("\"path\":\"") + path + "\"");
        const auto read = SiteManifest::Parse(bytes);
        ASSERT_TRUE(read.has_value()) << path;
        EXPECT_EQ(read->files.size(), 1u) << path;
    }
}

TEST(SiteManifest, EachRunHasItsOwnName)
{
    EXPECT_EQ(MakeRunName().size(), 16);
    EXPECT_NE(MakeRunName(), MakeRunName());
}
