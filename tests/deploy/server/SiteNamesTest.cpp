#include "deploy/server/SiteNames.h"

#include <gtest/gtest.h>

TEST(SiteNames, APlacePutsItsDirectoryBeforeAPath)
{
    const struct {
        const char* directory;
        const char* path;
        const char* expected;
    } rows[] = {
        {"", "a/b.jpg", "a/b.jpg"},
        {"", "", ""},
        {"web/site", "a.jpg", "web/site/a.jpg"},
        {"web/site", "", "web/site"},
        {"/", "a.jpg", "/a.jpg"},
        {"/srv/www/", "a.jpg", "/srv/www/a.jpg"},
    };
    for (const auto& row : rows) {
        const ServerPlace place{QString::fromLatin1(row.directory)};
        EXPECT_EQ(place.PathOf(QString::fromLatin1(row.path)), QString::fromLatin1(row.expected)) << row.path;
    }
}

TEST(SiteNames, OnlyPathsWithinTheSiteAreTaken)
{
    for (const char* path : {"index.html", "pictures/a b.jpg", "2/..a", "a/.b", "a/.vistorama/x"}) {
        EXPECT_TRUE(IsSitePath(QString::fromLatin1(path))) << path;
    }
    for (const char* path : {"", "/etc/passwd", "..", "../a", "a/../../b", "a//b", "a/", "./a", "a\nb",
                             "a\rb", ".vistorama/manifest", ".vistorama"}) {
        EXPECT_FALSE(IsSitePath(QString::fromLatin1(path))) << path;
    }
    EXPECT_FALSE(IsSitePath(QStringLiteral("a") + QChar(0)));
}

TEST(SiteNames, EachProjectHasItsOwnManifest)
{
    const QString id = QStringLiteral("0123456789abcdef0123456789abcdef");
    EXPECT_EQ(ManifestPathFor(id), QStringLiteral(".vistorama/manifest-") + id);
    const QString byPath = ManifestPathFor(QStringLiteral("/home/ann/Trip.gallery"));
    EXPECT_EQ(byPath.size(), ManifestPathFor(id).size());
    EXPECT_NE(byPath, ManifestPathFor(QStringLiteral("/home/bob/Trip.gallery")));
    EXPECT_FALSE(byPath.contains(QStringLiteral("ann"))); // nobody else's business
}

TEST(SiteNames, ATemporaryFileLiesBesideItsNameAndTellsItsSender)
{
    const QString sender = MakeSender();
    EXPECT_TRUE(IsSender(sender)) << qPrintable(sender);
    const QString path = TemporaryPathFor(sender, QStringLiteral("2/pictures/a.jpg"));
    EXPECT_EQ(DirectoryOf(path), QStringLiteral("2/pictures"));
    EXPECT_FALSE(NameOf(path).startsWith(QLatin1Char('.')));
    EXPECT_TRUE(path.endsWith(QStringLiteral(".part")));
    EXPECT_EQ(SenderOfTemporary(path), sender);
    EXPECT_EQ(path, TemporaryPathFor(sender, QStringLiteral("2/pictures/a.jpg")));
    EXPECT_NE(path, TemporaryPathFor(sender, QStringLiteral("2/pictures/b.jpg")));
    EXPECT_EQ(DirectoryOf(TemporaryPathFor(sender, QStringLiteral("a.html"))), QString());
    for (const char* other :
         {"vistorama.part", "vistorama-12345678-x.part", "a.jpg", "vistorama-12345678.part"}) {
        EXPECT_EQ(SenderOfTemporary(QString::fromLatin1(other)), QString()) << other;
    }
}

TEST(SiteNames, PagesAreKnownByEndingAndByPlace)
{
    const struct {
        const char* path;
        SiteFileKind kind;
    } rows[] = {
        {"index.html", SiteFileKind::Entry},      {"12/index.html", SiteFileKind::Entry},
        {"12/INDEX.HTM", SiteFileKind::Entry},    {"p1.html", SiteFileKind::Page},
        {"12/p1.htm", SiteFileKind::Page},        {"feed.xml", SiteFileKind::Page},
        {"12/feed.xml", SiteFileKind::Page},      {"Common/frame.xhtml", SiteFileKind::Page},
        {"pictures/a.jpg", SiteFileKind::Asset},  {"12/pictures/a.jpg", SiteFileKind::Asset},
        {"Blue/style.css", SiteFileKind::Asset},  {"12/Blue/style.css", SiteFileKind::Asset},
        {"Common/menu.xml", SiteFileKind::Asset},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(KindOfSiteFile(QString::fromLatin1(row.path)), row.kind) << row.path;
    }
}
