#include "content/PublishedNames.h"

#include "common/FileSystem.h"
#include "document/pictures/PictureInfo.h"
#include "document/pictures/PictureNames.h"

namespace {

constexpr char key[] = "chain";

QString Claim(CPublishedNames& names, const QString& wanted, const QString& source,
              CPictureInfo* picture = nullptr, const QString& chain = QString::fromLatin1(key))
{
    return names.Claim({.wantedPath = wanted, .sourcePath = source, .key = chain, .picture = picture});
}

} // namespace

TEST(PublishedNames, TheFirstSourceKeepsThePlainName)
{
    CPublishedNames names;
    CFilePictureInfo p1(QStringLiteral("/a/p1.jpg"), 0);
    CFilePictureInfo p(QStringLiteral("/a/p.jpg"), 0);
    const QString wanted = QStringLiteral("/site/pictures/p13232.jpg");
    EXPECT_EQ(Claim(names, wanted, p1.GetPath(), &p1), wanted);
    const QString suffix = NameSuffixFor(p.GetPath());
    EXPECT_EQ(Claim(names, wanted, p.GetPath(), &p),
              QStringLiteral("/site/pictures/p13232") + suffix + QStringLiteral(".jpg"));
    // It keeps the suffix for what comes.
    EXPECT_EQ(p.GetNameSuffix(), suffix);
    EXPECT_TRUE(p1.GetNameSuffix().isEmpty());
    // The same images asked for again, by another page.
    EXPECT_EQ(Claim(names, wanted, p1.GetPath(), &p1), wanted);
}

TEST(PublishedNames, CapitalsDoNotKeepNamesApart)
{
    CPublishedNames names;
    Claim(names, QStringLiteral("/site/A.jpg"), QStringLiteral("/x/A.jpg"));
    EXPECT_NE(Claim(names, QStringLiteral("/site/a.jpg"), QStringLiteral("/x/a.jpg")),
              QStringLiteral("/site/a.jpg"));
}

TEST(PublishedNames, TwoSizesOfOnePictureThatReadAlikeAreTwoFiles)
{
    CPublishedNames names;
    CFilePictureInfo picture(QStringLiteral("/a/p.jpg"), 0);
    const QString wanted = QStringLiteral("/site/p32132.jpg");
    EXPECT_EQ(Claim(names, wanted, picture.GetPath(), &picture, QStringLiteral("32 132")), wanted);
    const QString second = Claim(names, wanted, picture.GetPath(), &picture, QStringLiteral("321 32"));
    EXPECT_NE(second, wanted);
    EXPECT_EQ(Claim(names, wanted, picture.GetPath(), &picture, QStringLiteral("321 32")), second);
    EXPECT_TRUE(picture.GetNameSuffix().isEmpty());
}

TEST(PublishedNames, AnotherFolderHasNamesOfItsOwn)
{
    CPublishedNames names;
    const QString wanted = QStringLiteral("/site/a.jpg");
    Claim(names, wanted, QStringLiteral("/x/a.jpg"));
    names.Clear();
    EXPECT_EQ(Claim(names, wanted, QStringLiteral("/y/a.jpg")), wanted);
}

TEST(PublishedNames, ASuffixThatIsTakenIsNotTheLast)
{
    CPublishedNames names;
    const QString source = QStringLiteral("/y/a.jpg");
    Claim(names, QStringLiteral("/site/a.jpg"), QStringLiteral("/x/a.jpg"));
    const QString taken = QStringLiteral("/site/a") + NameSuffixFor(source) + QStringLiteral(".jpg");
    Claim(names, taken, QStringLiteral("/z/a.jpg"));
    const QString claimed = Claim(names, QStringLiteral("/site/a.jpg"), source);
    EXPECT_NE(claimed, taken);
    EXPECT_NE(claimed, QStringLiteral("/site/a.jpg"));
}
