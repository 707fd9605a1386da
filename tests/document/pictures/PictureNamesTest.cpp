#include "document/pictures/PictureNames.h"

#include "TestProject.h"
#include "document/pictures/PictureList.h"
#include "effects/FileNames.h"

namespace {

CPictureInfo& Add(CPictureList& list, const QString& path, int32_t angle = 0)
{
    return *list.Add(std::make_unique<CFilePictureInfo>(path, angle), false);
}

bool IsPlain(const CPictureInfo& record)
{
    return record.GetNameSuffix().isEmpty();
}

} // namespace

TEST(PictureNames, ASecondPictureOfTheSameNameGetsASuffix)
{
    const struct {
        QString first;
        int32_t firstAngle;
        QString second;
        int32_t secondAngle;
        bool meet;
    } rows[] = {
        {QStringLiteral("/a/IMG_0001.jpg"), 0, QStringLiteral("/b/IMG_0001.jpg"), 0, true},
        {QStringLiteral("/a/x.png"), 0, QStringLiteral("/a/x.bmp"), 0, true},
        {QStringLiteral("/a/x.jpg"), 0, QStringLiteral("/a/x.pcx"), 0, true},
        {QStringLiteral("/a/a b.jpg"), 0, QStringLiteral("/a/a10b.jpg"), 0, true},
        {QStringLiteral("/a/caf\u00e9.jpg"), 0, QStringLiteral("/a/caf79.jpg"), 0, true},
        {QStringLiteral("/a/IMG_1.JPG"), 0, QStringLiteral("/a/img_1.jpeg"), 0, true},
        {QStringLiteral("/a/Tor.jpg"), 1, QStringLiteral("/a/Tor_r1.jpg"), 0, true},
        {QStringLiteral("/a/Tor_r1.jpg"), 0, QStringLiteral("/a/Tor.jpg"), 1, true},
        {QStringLiteral("/a/Tor.jpg"), 2, QStringLiteral("/a/Tor_r1.jpg"), 0, false},
        {QStringLiteral("/a/Tor.jpg"), 1, QStringLiteral("/b/Tor.jpg"), 2, false},
        {QStringLiteral("/a/x.png"), 0, QStringLiteral("/a/x.jpg"), 0, false},
        {QStringLiteral("/a/x.png"), 0, QStringLiteral("/a/y.png"), 0, false},
    };
    for (const auto& row : rows) {
        CPictureList list;
        const CPictureInfo& first = Add(list, row.first, row.firstAngle);
        const CPictureInfo& second = Add(list, row.second, row.secondAngle);
        EXPECT_TRUE(IsPlain(first)) << qPrintable(row.first) << ' ' << qPrintable(row.second);
        EXPECT_EQ(IsPlain(second), !row.meet) << qPrintable(row.first) << ' ' << qPrintable(row.second);
        if (row.meet) {
            EXPECT_EQ(second.GetNameSuffix(), NameSuffixFor(row.second));
        }
    }
}

TEST(PictureNames, ASuffixHasSixDigitsThatThePathGives)
{
    const QString suffix = NameSuffixFor(QStringLiteral("/b/IMG_0001.jpg"));
    EXPECT_EQ(suffix.size(), 7);
    EXPECT_TRUE(suffix.startsWith(QLatin1Char('_')));
    EXPECT_TRUE(IsNameSuffix(suffix));
    EXPECT_EQ(suffix, NameSuffixFor(QStringLiteral("/b/IMG_0001.jpg")));
    EXPECT_NE(suffix, NameSuffixFor(QStringLiteral("/c/IMG_0001.jpg")));
    EXPECT_NE(suffix, NameSuffixFor(QStringLiteral("/b/IMG_0001.jpg"), 1));
}

TEST(PictureNames, ManyPicturesOfOneNameAreAllKeptApart)
{
    CPictureList list;
    std::set<QString> suffixes;
    for (int i = 0; i < 6000; ++i) { // more than six digits keep apart by chance
        suffixes.insert(Add(list, QStringLiteral("/%1/x.jpg").arg(i)).GetNameSuffix());
    }
    EXPECT_EQ(suffixes.size(), 6000u);
}

TEST(PictureNames, WhoWasThereFirstKeepsItsNameInWhateverOrder)
{
    CPictureList list;
    CPictureInfo& first = Add(list, QStringLiteral("/a/x.jpg"));
    CPictureInfo& second = Add(list, QStringLiteral("/b/x.jpg"));
    const QString suffix = second.GetNameSuffix();
    list.Swap(0, 1);
    EXPECT_TRUE(IsPlain(first));
    EXPECT_EQ(second.GetNameSuffix(), suffix);
    // The address of the second stays when the first has gone, and another may then be plain.
    list.Remove(list.FindPosition(&first));
    EXPECT_EQ(second.GetNameSuffix(), suffix);
    EXPECT_TRUE(IsPlain(Add(list, QStringLiteral("/c/x.jpg"))));
}

TEST(PictureNames, ATurnedPictureGivesWayToTheOneThatHasItsName)
{
    CPictureList list;
    CPictureInfo& turned = Add(list, QStringLiteral("/a/Tor.jpg"));
    CPictureInfo& real = Add(list, QStringLiteral("/a/Tor_r1.jpg"));
    EXPECT_TRUE(IsPlain(turned) && IsPlain(real));
    list.SetAngle(turned, 1);
    EXPECT_EQ(turned.GetAngle(), 1);
    EXPECT_FALSE(IsPlain(turned));
    EXPECT_TRUE(IsPlain(real));
    // The name that it had is free.
    EXPECT_TRUE(IsPlain(Add(list, QStringLiteral("/b/Tor.jpg"))));
}

TEST(PictureNames, AStoredSuffixStaysAndLeavesThePlainNameToAnother)
{
    CPictureList list;
    CPictureInfo& moved = Add(list, QStringLiteral("/b/x.jpg"));
    list.SetNameSuffix(moved, QStringLiteral("_c0ffee"));
    EXPECT_EQ(moved.GetNameSuffix(), QStringLiteral("_c0ffee"));
    EXPECT_TRUE(IsPlain(Add(list, QStringLiteral("/a/x.jpg"))));
    // A file that says that two are named alike is not believed.
    CPictureInfo& third = Add(list, QStringLiteral("/c/x.jpg"));
    list.SetNameSuffix(third, QStringLiteral("_C0FFEE"));
    EXPECT_NE(third.GetNameSuffix().toLower(), QStringLiteral("_c0ffee"));
    EXPECT_FALSE(IsPlain(third));
}

TEST(PictureNames, AListThatWasClearedBeginsAnew)
{
    CPictureList list;
    Add(list, QStringLiteral("/a/x.jpg"));
    list.Clear();
    EXPECT_TRUE(IsPlain(Add(list, QStringLiteral("/b/x.jpg"))));
}
