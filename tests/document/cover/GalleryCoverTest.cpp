#include "document/cover/GalleryCover.h"

#include <QFile>

#include "TestProject.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "document/cover/CoverComposition.h"
#include "document/galleries/Gallery.h"
#include "effects/ImageEffectGraphicsStamp.h"
#include "imaging/Canvas.h"
#include "imaging/Image.h"
#include "resources/Resources.h"

namespace {

constexpr uint32_t red = 0xc80000;
constexpr uint32_t green = 0x00c800;
constexpr uint32_t blue = 0x0000c8;
constexpr uint32_t yellow = 0xc8c800;
constexpr uint32_t paper = 0xf5f5f5;
constexpr uint32_t outline = 0x808080;

class GalleryCover : public testing::Test {
protected:
    // The root gallery is gallery 0.
    GalleryCover() { root = &test.NewGallery(); }

    // A picture of the left and right half in two colours.
    QString Picture(const QString& name, uint32_t left, uint32_t right, QSize size = QSize(120, 60))
    {
        QByteArray bytes;
        for (int i = 0; i < size.width() * size.height(); ++i) {
            const uint32_t colour = i % size.width() < size.width() / 2 ? left : right;
            for (const uint32_t value : {colour >> 16 & 0xff, colour >> 8 & 0xff, colour & 0xff, 255u}) {
                bytes += static_cast<char>(value);
            }
        }
        const QString path = test.scratch.Write(QStringLiteral("pictures/") + name, "");
        const bool isPng = name.endsWith(QStringLiteral(".png"));
        const ImageEncoding encoding{isPng ? ImageEncoding::Format::Png : ImageEncoding::Format::Jpeg, 100};
        EXPECT_EQ(CImage::FromRgba(size, bytes).Save(path, encoding).status, ImageSaveResult::Status::Saved);
        return path;
    }

    QString Plain(const QString& name, uint32_t colour) { return Picture(name, colour, colour); }

    CGallery& NewChild(int32_t parent = 0)
    {
        return *test.project.FindGallery(test.project.AddChildGallery(parent));
    }

    QString InTemp(const QString& name) const { return test.tempFolder.GetPath() + name; }
    size_t CoverCount() const { return ListDirectory(test.tempFolder.GetPath()).size(); }

    // Red, green and blue as one number; -1 where it is transparent.
    static int64_t ColourAt(const QString& file, QPoint place)
    {
        const CImage image = CImage::FromFile(file);
        const QByteArray rgba = image.GetRgba();
        const qsizetype at = (qsizetype{place.y()} * image.GetSize().width() + place.x()) * 4;
        if (at < 0 || at + 4 > rgba.size()) {
            return -2;
        }
        const auto byte = [&](qsizetype i) {
            return int64_t{static_cast<uint8_t>(rgba[at + i])};
        };
        return byte(3) == 0 ? -1 : byte(0) << 16 | byte(1) << 8 | byte(2);
    }

    CTestProject test;
    CGallery* root = nullptr;
};

// Where a place of the composed 800 by 600 lies in the framed cover.
QPoint Framed(int x, int y)
{
    return {12 + x * 771 / 800, 12 + y * 571 / 600};
}

} // namespace

TEST_F(GalleryCover, WithoutPicturesIsThePictureOfANewGallery)
{
    EXPECT_EQ(root->GetCoverPath(), InTemp(QStringLiteral("vsm0.png")));
    EXPECT_EQ(ReadWholeFile(InTemp(QStringLiteral("vsm0.png"))),
              FindResource(QStringLiteral("new_gallery"), QStringLiteral("png")));
}

TEST_F(GalleryCover, OverwritesWhatIsThere)
{
    WriteFileAtomically(InTemp(QStringLiteral("vsm0.png")), "left over");
    EXPECT_TRUE(ReadWholeFile(root->GetCoverPath()).startsWith("\x89PNG"));
    root->AddPicture(Plain(QStringLiteral("a.png"), red));
    WriteFileAtomically(root->GetCover().GetName(), "left over");
    EXPECT_TRUE(ReadWholeFile(root->GetCoverPath()).startsWith("\x89PNG"));
}

TEST_F(GalleryCover, OfOnePictureIsThatPictureFramed)
{
    root->AddPicture(Picture(QStringLiteral("my photo.png"), red, blue));
    EXPECT_EQ(root->GetCover().GetName(), InTemp(QStringLiteral("my10photo800600f_0.png")));
    const QString file = root->GetCoverPath();
    ASSERT_EQ(CImage::FromFile(file).GetSize(), QSize(120, 60)); // not enlarged
    EXPECT_EQ(ColourAt(file, {0, 20}), outline);
    EXPECT_EQ(ColourAt(file, {5, 20}), paper);
    EXPECT_EQ(ColourAt(file, {20, 30}), red);
    EXPECT_EQ(ColourAt(file, {90, 30}), blue);
    EXPECT_EQ(ColourAt(file, {119, 0}), -1);
}

TEST_F(GalleryCover, OfOneLargePictureIsFittedInto800By600)
{
    root->AddPicture(Picture(QStringLiteral("a.jpg"), red, blue, {1000, 700}));
    const QString file = root->GetCoverPath();
    EXPECT_EQ(CImage::FromFile(file).GetSize(), QSize(800, 560));
    EXPECT_TRUE(ReadWholeFile(file).startsWith("\xff\xd8\xff"));
}

TEST_F(GalleryCover, OfOnePictureTakesItsEncoderNameAndAngle)
{
    const struct {
        const char* name;
        const char* expected;
    } rows[] = {
        {"photo.png", "photo800600f_%1.png"},      {"photo.JPEG", "photo800600f_%1.jpg"},
        {"photo.bmp", "photo800600f_%1.png"},      {"a.b.pcx", "a.b800600f_%1.jpg"},
        {"\xc3\xa9 1.gif", "79101800600f_%1.png"},
    };
    for (const auto& row : rows) {
        CGallery& child = NewChild();
        child.AddPicture(test.MakePicture(QString::fromUtf8(row.name)));
        EXPECT_EQ(child.GetCover().GetName(), InTemp(QString::fromUtf8(row.expected).arg(child.GetIndex())));
    }
    root->RemovePicture(0);
    CGallery& turned = NewChild();
    turned.AddPicture(Picture(QStringLiteral("t.png"), red, blue));
    turned.RotatePicture(0, true);
    EXPECT_TRUE(
        turned.GetCover().GetName().endsWith(QStringLiteral("t_r1800600f_%1.png").arg(turned.GetIndex())));
    const QString file = turned.GetCoverPath();
    ASSERT_EQ(CImage::FromFile(file).GetSize(), QSize(60, 120));
    EXPECT_EQ(ColourAt(file, {25, 20}), red);
    EXPECT_EQ(ColourAt(file, {25, 95}), blue);
}

TEST_F(GalleryCover, OfTwoPicturesShowsThemSideBySide)
{
    root->AddPicture(Plain(QStringLiteral("a.png"), red));
    root->AddPicture(Plain(QStringLiteral("b.jpg"), blue));
    const auto sum = [&](const char* name) {
        return QString::number(CharSum(test.Path(QStringLiteral("pictures/") + QLatin1String(name))));
    };
    // Stamps at 1 and 2, margin 0, opaque.
    const QString expected = QStringLiteral("vsm0g") + sum("a.png") + QStringLiteral("10s0g") + sum("b.jpg") +
                             QStringLiteral("20s0800600f_0.png");
    EXPECT_EQ(root->GetCover().GetName(), InTemp(expected));
    const QString file = root->GetCoverPath();
    ASSERT_EQ(CImage::FromFile(file).GetSize(), QSize(800, 600));
    for (const int y : {2, 300, 595}) {
        EXPECT_EQ(ColourAt(file, Framed(5, y)), red);
        EXPECT_EQ(ColourAt(file, Framed(388, y)), red);
        EXPECT_EQ(ColourAt(file, Framed(399, y)), paper);
        EXPECT_EQ(ColourAt(file, Framed(410, y)) & 0xff, blue);
        EXPECT_EQ(ColourAt(file, Framed(793, y)) & 0xff, blue);
    }
}

TEST_F(GalleryCover, OfThreePicturesIsThatOfTwo)
{
    const QString third = Plain(QStringLiteral("c.png"), green);
    root->AddPicture(Plain(QStringLiteral("a.png"), red));
    root->AddPicture(Plain(QStringLiteral("b.png"), blue));
    const QString name = root->GetCover().GetName();
    const QByteArray two = ReadWholeFile(root->GetCoverPath());
    root->AddPicture(third);
    EXPECT_EQ(root->GetCover().GetName(), name);
    EXPECT_EQ(ReadWholeFile(root->GetCoverPath()), two);
}

TEST_F(GalleryCover, OfFourAndMoreShowsTheFirstFourTwoByTwo)
{
    const char* const names[] = {"a.png", "b.png", "c.png", "d.png", "e.png"};
    const uint32_t colours[] = {red, green, blue, yellow, 0};
    QStringList sums;
    for (int i = 0; i < 5; ++i) {
        const QString path = Plain(QString::fromLatin1(names[i]), colours[i]);
        root->AddPicture(path);
        sums += QString::number(CharSum(path));
    }
    EXPECT_EQ(root->GetCover().GetName(),
              InTemp(QStringLiteral("vsm0g") + sums[0] + QStringLiteral("50s0g") + sums[1] +
                     QStringLiteral("60s0g") + sums[2] + QStringLiteral("90s0g") + sums[3] +
                     QStringLiteral("a0s0800600f_0.png")));
    const QString file = root->GetCoverPath();
    const QPoint corners[] = {{0, 0}, {405, 0}, {0, 305}, {405, 305}};
    for (int tile = 0; tile < 4; ++tile) {
        // Well inside the tile of 394 by 294: its edges are scaled softly.
        for (const QPoint inside : {QPoint(4, 4), QPoint(389, 4), QPoint(4, 289), QPoint(389, 289)}) {
            const QPoint place = corners[tile] + inside;
            EXPECT_EQ(ColourAt(file, Framed(place.x(), place.y())), colours[tile])
                << tile << " " << place.x() << " " << place.y();
        }
    }
    for (const QPoint gap : {QPoint(399, 100), QPoint(399, 500), QPoint(100, 299), QPoint(700, 299)}) {
        EXPECT_EQ(ColourAt(file, Framed(gap.x(), gap.y())), paper);
    }
}

TEST_F(GalleryCover, TilesLieAt405And305)
{
    // Before the frame: the right column begins at 405, the lower row at 305, 11 pixels after the others.
    const struct {
        int count;
        QSize size;
        std::vector<QPoint> corners;
    } rows[] = {{2, {394, 600}, {{0, 0}, {405, 0}}},
                {4, {394, 294}, {{0, 0}, {405, 0}, {0, 305}, {405, 305}}}};
    const int32_t positionsOfTwo[] = {1, 2};
    const int32_t positionsOfFour[] = {5, 6, 9, 10};
    for (const auto& row : rows) {
        for (size_t tile = 0; tile < row.corners.size(); ++tile) {
            const int32_t position = row.count == 2 ? positionsOfTwo[tile] : positionsOfFour[tile];
            const CImageEffectGraphicsStamp stamp(QString(), CImage::Blank(row.size),
                                                  {.position = position, .margin = 0});
            EXPECT_EQ(stamp.GetStampRect(CCanvas({800, 600})).topLeft(), row.corners[tile]) << position;
        }
    }
}

TEST_F(GalleryCover, TilesAreFilledAroundTheMiddleAndTurned)
{
    // 300 by 100 fills 394 by 600 by its height: 1800 by 600, of which the middle shows.
    root->AddPicture(Picture(QStringLiteral("a.png"), red, blue, {300, 100}));
    root->AddPicture(Picture(QStringLiteral("b.png"), red, blue, {300, 100}));
    root->RotatePicture(1, true);
    const QString file = root->GetCoverPath();
    EXPECT_EQ(ColourAt(file, Framed(20, 300)), red);
    EXPECT_EQ(ColourAt(file, Framed(370, 300)), blue);
    EXPECT_EQ(ColourAt(file, Framed(600, 20)), red);
    EXPECT_EQ(ColourAt(file, Framed(600, 580)), blue);
}

TEST_F(GalleryCover, IsMadeWhenItIsAskedForAndNotBeforeAndOnce)
{
    root->AddPicture(Plain(QStringLiteral("a.png"), red));
    root->AddPicture(Plain(QStringLiteral("b.png"), red));
    CGallery& child = NewChild();
    EXPECT_FALSE(FileExists(root->GetCover().GetName()));
    EXPECT_EQ(CoverCount(), 0u);
    EXPECT_TRUE(root->GetPictures().GetAt(2)->GetVariable(QStringLiteral("file_name")));
    EXPECT_EQ(CoverCount(), 0u);
    EXPECT_EQ(root->GetPictures().GetAt(2)->GetPath(), child.GetCover().GetName());
    EXPECT_EQ(CoverCount(), 1u);
    const QString path = root->GetCoverPath();
    EXPECT_TRUE(FileExists(path));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(root->GetCoverPath(), path);
    EXPECT_FALSE(FileExists(path)); // nothing has changed, so it is not composed again
}

TEST_F(GalleryCover, ClimbsTheTree)
{
    CGallery& child = NewChild();
    CGallery& grandchild = NewChild(child.GetIndex());
    const QString before = root->GetCover().GetName();
    EXPECT_EQ(before, InTemp(QStringLiteral("vsm2800600f_1800600f_0.png")));
    EXPECT_EQ(ColourAt(root->GetCoverPath(), {0, 10}), outline);
    grandchild.AddPicture(Picture(QStringLiteral("a.png"), green, green, {400, 300}));
    EXPECT_EQ(grandchild.GetCover().GetName(), InTemp(QStringLiteral("a800600f_2.png")));
    EXPECT_EQ(child.GetCover().GetName(), InTemp(QStringLiteral("a800600f_2800600f_1.png")));
    EXPECT_EQ(root->GetCover().GetName(), InTemp(QStringLiteral("a800600f_2800600f_1800600f_0.png")));
    EXPECT_EQ(child.GetPictures().Find(grandchild.GetCover().GetName()), 0);
    EXPECT_EQ(root->GetPictures().Find(child.GetCover().GetName()), 0);
    EXPECT_EQ(ColourAt(root->GetCoverPath(), {200, 150}), green);
}

TEST_F(GalleryCover, ClimbsOnlyAsFarAsTheChildShows)
{
    for (int i = 0; i < 4; ++i) {
        root->AddPicture(Plain(QStringLiteral("%1.png").arg(i), red));
    }
    CGallery& fifth = NewChild();
    const QString name = root->GetCover().GetName();
    ASSERT_TRUE(QFile::remove(root->GetCoverPath()));
    fifth.AddPicture(Plain(QStringLiteral("a.png"), green));
    EXPECT_EQ(root->GetCover().GetName(), name);
    EXPECT_FALSE(FileExists(root->GetCoverPath())); // not made anew
    EXPECT_EQ(root->GetPictures().Find(fifth.GetCover().GetName()), 4);
}

TEST_F(GalleryCover, TheFifthPictureOfAChildChangesNothingAbove)
{
    CGallery& child = NewChild();
    for (int i = 0; i < 4; ++i) {
        const QString before = root->GetCover().GetName();
        child.AddPicture(Plain(QStringLiteral("%1.png").arg(i), red));
        EXPECT_EQ(root->GetCover().GetName() == before, i == 2) << i; // a third one does not show
    }
    const QString name = root->GetCover().GetName();
    ASSERT_TRUE(QFile::remove(root->GetCoverPath()));
    ASSERT_TRUE(QFile::remove(child.GetCoverPath()));
    child.AddPicture(Plain(QStringLiteral("4.png"), blue));
    child.RotatePicture(4, true);
    child.RemovePicture(4);
    EXPECT_EQ(root->GetCover().GetName(), name);
    root->GetCoverPath();
    EXPECT_EQ(CoverCount(), 0u);
}

TEST_F(GalleryCover, TheSameNameWithOtherPixelsIsMadeAnewUpTheTree)
{
    CGallery& child = NewChild();
    child.AddPicture(Picture(QStringLiteral("a.png"), red, blue, {300, 100}));
    child.AddPicture(Plain(QStringLiteral("b.png"), green));
    const QString name = root->GetCover().GetName();
    EXPECT_EQ(ColourAt(root->GetCoverPath(), Framed(20, 300)), red);
    // The angle of a tile is not in the name of a composed cover.
    child.RotatePicture(0, true);
    child.RotatePicture(0, true);
    EXPECT_EQ(root->GetCover().GetName(), name);
    EXPECT_EQ(ColourAt(root->GetCoverPath(), {40, 300}), blue);
}

TEST_F(GalleryCover, EveryChangeAmongTheFirstFourIsFollowed)
{
    for (const char* name : {"a.png", "b.png", "c.png", "d.png", "e.png"}) {
        root->AddPicture(Plain(QString::fromLatin1(name), name[0] == 'e' ? blue : red));
    }
    QString before = root->GetCover().GetName();
    root->MovePicture(0, 4);
    EXPECT_NE(root->GetCover().GetName(), before);
    EXPECT_EQ(ColourAt(root->GetCoverPath(), Framed(100, 100)), blue);
    before = root->GetCover().GetName();
    root->RemovePicture(1);
    EXPECT_NE(root->GetCover().GetName(), before);
    root->RemovePicture(3);
    root->RemovePicture(2);
    root->RemovePicture(1);
    EXPECT_EQ(root->GetCover().GetName(), InTemp(QStringLiteral("e800600f_0.png")));
    root->RemovePicture(0);
    EXPECT_EQ(root->GetCover().GetName(), InTemp(QStringLiteral("vsm0.png")));
}

TEST_F(GalleryCover, OfAGalleryMadeOfAPictureStaysNewUntilALaterChange)
{
    root->AddPicture(Plain(QStringLiteral("a.png"), red));
    root->MakeChildFromPicture(0);
    CGallery& child = *test.project.FindGallery(1);
    EXPECT_EQ(child.GetCover().GetName(), InTemp(QStringLiteral("vsm1.png")));
    EXPECT_EQ(ReadWholeFile(child.GetCoverPath()),
              FindResource(QStringLiteral("new_gallery"), QStringLiteral("png")));
    child.RotatePicture(0, true);
    EXPECT_EQ(child.GetCover().GetName(), InTemp(QStringLiteral("a_r1800600f_1.png")));
}

TEST_F(GalleryCover, WhosePicturesCannotBeReadIsThatOfANewGalleryUnderItsName)
{
    const QSize newGallerySize = [] {
        const CScratchFolder folder;
        return CImage::FromFile(
                   folder.Write(QStringLiteral("n.png"),
                                FindResource(QStringLiteral("new_gallery"), QStringLiteral("png"))))
            .GetSize();
    }();
    for (const int count : {1, 2, 4}) {
        CGallery& child = NewChild();
        for (int i = 0; i < count; ++i) {
            child.AddPicture(test.MakePicture(QStringLiteral("broken%1%2.jpg").arg(count).arg(i)));
        }
        const QString name = child.GetCover().GetName();
        EXPECT_EQ(child.GetCoverPath(), name);
        const CImage cover = CImage::FromFile(name);
        EXPECT_EQ(cover.GetSize(), newGallerySize) << count;
        EXPECT_FALSE(cover.GetRgba().isEmpty());
    }
}

TEST_F(GalleryCover, APictureThatHasGoneLeavesItsTileEmpty)
{
    root->AddPicture(Plain(QStringLiteral("a.png"), red));
    root->AddPicture(test.Path(QStringLiteral("pictures/gone.png")));
    const QString file = root->GetCoverPath();
    EXPECT_EQ(ColourAt(file, Framed(100, 100)), red);
    EXPECT_EQ(ColourAt(file, Framed(600, 100)), paper);
}

TEST_F(GalleryCover, ThatCannotBeWrittenIsAnErrorWithItsPath)
{
    root->AddPicture(Plain(QStringLiteral("a.png"), red));
    ASSERT_TRUE(QFile::remove(root->GetCover().GetName()) || !FileExists(root->GetCover().GetName()));
    MakeDirectoryPath(root->GetCover().GetName());
    try {
        root->GetCoverPath();
        FAIL();
    } catch (const CExceptionBase& failure) {
        EXPECT_TRUE(failure.GetDescription().contains(root->GetCover().GetName())) << failure.what();
    }
}

TEST_F(GalleryCover, NamesStayShortHoweverDeepTheTreeIs)
{
    constexpr int depth = 60;
    for (int index = 0; index < depth; ++index) {
        test.project.AddChildGallery(index);
    }
    test.project.FindGallery(depth)->AddPicture(Plain(QStringLiteral("a.png"), green));
    const QString path = root->GetCoverPath();
    EXPECT_LT(ExtractLastName(path).size(), 200);
    EXPECT_TRUE(FileExists(path));
    EXPECT_EQ(CoverCount(), depth + 1u);
}

TEST_F(GalleryCover, OfAProjectFileIsChosenFromTheBottomUp)
{
    const QByteArray a = Plain(QStringLiteral("a.png"), green).toUtf8();
    // Parents first, children first, and a gallery that holds itself or one above it.
    for (const bool parentsFirst : {true, false}) {
        const QByteArray parent =
            R"(<gallery index="0"><picture_list><picture index="0"/><picture index="5"/>)"
            R"(</picture_list></gallery>)";
        const QByteArray child = R"(<gallery index="5"><picture_list><picture index="5"/><picture path=")" +
                                 a + R"("/><picture index="0"/></picture_list></gallery>)";
        test.LoadXml("<project>" + (parentsFirst ? parent + child : child + parent) + "</project>");
        EXPECT_EQ(test.project.FindGallery(5)->GetCover().GetName(),
                  InTemp(QStringLiteral("a800600f_5.png")));
        CGallery& loaded = *test.project.GetRootGallery();
        EXPECT_EQ(loaded.GetCover().GetName(), InTemp(QStringLiteral("a800600f_5800600f_0.png")));
        EXPECT_EQ(loaded.GetPictures().Find(InTemp(QStringLiteral("a800600f_5.png"))), 0);
        EXPECT_EQ(ColourAt(loaded.GetCoverPath(), {60, 30}), green);
    }
}

TEST_F(GalleryCover, ALargeProjectOpensWithoutOne)
{
    constexpr int galleryCount = 200;
    constexpr int pictureCount = 100;
    QByteArray xml = "<project>";
    for (int index = 0; index < galleryCount; ++index) {
        xml += "<gallery index=\"" + QByteArray::number(index) + "\"><picture_list>";
        for (const int child : {index * 2 + 1, index * 2 + 2}) {
            xml += child < galleryCount ? "<picture index=\"" + QByteArray::number(child) + "\"/>"
                                        : QByteArray();
        }
        for (int picture = 0; picture < pictureCount; ++picture) {
            xml += "<picture path=\"" +
                   test.MakePicture(QStringLiteral("%1/%2.jpg").arg(index).arg(picture)).toUtf8() + "\"/>";
        }
        xml += "</picture_list></gallery>";
    }
    test.LoadXml(xml + "</project>");
    for (const auto& [index, gallery] : test.project.GetGalleries()) {
        ASSERT_EQ(gallery->GetPictures().GetCount(),
                  pictureCount + static_cast<int32_t>(gallery->GetChildren().size()));
        EXPECT_TRUE(gallery->GetCover().GetName().startsWith(InTemp(QStringLiteral("vsm%1g").arg(index))));
    }
    EXPECT_EQ(CoverCount(), 0u);
}

TEST(CoverComposition, ShowsNoneOneTwoOrFour)
{
    const int32_t shown[] = {0, 1, 2, 2, 4, 4, 4};
    for (int32_t count = 0; count < 7; ++count) {
        EXPECT_EQ(CountOfCoverPictures(count), shown[count]);
    }
    EXPECT_EQ(CountOfCoverPictures(20000), 4);
}

TEST(CoverComposition, PutsTheGalleryAfterTheName)
{
    EXPECT_EQ(CoverFileName(3, {}), QStringLiteral("vsm3.png"));
    EXPECT_EQ(CoverFileName(3, {{QStringLiteral("/x/photo.png"), QString(), 0}}),
              QStringLiteral("photo800600f_3.png"));
    EXPECT_EQ(CoverFileName(-2147483647 - 1, {}), QStringLiteral("vsm-2147483648.png"));
    // A file without extension can't be read, but has a cover of a name that can be written.
    EXPECT_EQ(CoverFileName(3, {{QStringLiteral("/x.y/photo"), QString(), 2}}),
              QStringLiteral("photo_r2800600f_3.jpg"));
}

TEST(GalleryCoverOfAFrontPage, FollowsWhatIsAddedBeforeTheFirstFour)
{
    CTestProject test;
    test.AddLayout(QStringLiteral("a"), "<page file=\"f.html\" add_order=\"front\"/>");
    CGallery& root = test.NewGallery(5);
    QString before = root.GetCover().GetName();
    root.AddPicture(test.MakePicture(QStringLiteral("new.jpg")));
    EXPECT_NE(root.GetCover().GetName(), before);
    before = root.GetCover().GetName();
    test.project.AddChildGallery(0);
    EXPECT_NE(root.GetCover().GetName(), before);
}

TEST_F(GalleryCover, FollowsAPictureThatBecomesAGalleryMovesToTheFrontAndGoes)
{
    for (const char* name : {"a.png", "b.png", "c.png", "d.png", "e.png", "f.png"}) {
        root->AddPicture(test.MakePicture(QString::fromLatin1(name)));
    }
    QString before = root->GetCover().GetName();
    root->MakeChildFromPicture(0); // the gallery stands at the end
    EXPECT_NE(root->GetCover().GetName(), before);
    before = root->GetCover().GetName();
    root->MovePicture(5, 0);
    EXPECT_NE(root->GetCover().GetName(), before);
    before = root->GetCover().GetName();
    test.project.RemoveGallery(1);
    EXPECT_NE(root->GetCover().GetName(), before);
}

TEST_F(GalleryCover, HasAFrameOf12AndAShadowOf5At75Percent)
{
    root->AddPicture(Plain(QStringLiteral("a.png"), red)); // 120 by 60: paper of 115 by 55
    const QString file = root->GetCoverPath();
    const struct {
        int x;
        int64_t colour;
    } rows[] = {{11, paper}, {12, red}, {102, red}, {103, paper}, {115, outline}, {116, 0}, {119, 0}};
    for (const auto& row : rows) {
        EXPECT_EQ(ColourAt(file, {row.x, 30}), row.colour) << row.x;
    }
    EXPECT_EQ(ColourAt(file, {119, 4}), -1);
    EXPECT_EQ(ColourAt(file, {119, 5}), 0);
    const QByteArray rgba = CImage::FromFile(file).GetRgba();
    EXPECT_EQ(static_cast<uint8_t>(rgba[(30 * 120 + 118) * 4 + 3]), 75 * 255 / 100);
}

TEST_F(GalleryCover, TilesEndAndBeginWhereTheyShould)
{
    // Places in the framed cover close to the tiles' edges, which are scaled softly.
    for (const char* name : {"a.png", "b.png", "c.png", "d.png"}) {
        root->AddPicture(Plain(QString::fromLatin1(name), name[0] == 'b'   ? green
                                                          : name[0] == 'c' ? blue
                                                                           : red));
    }
    const auto channel = [](const QString& file, QPoint place, int shift) {
        return ColourAt(file, place) >> shift & 0xff;
    };
    const QString four = root->GetCoverPath();
    const int redShift = 16;
    const int greenShift = 8;
    EXPECT_LT(channel(four, {390, 100}, greenShift), 60);  // still the tile that ends at 394
    EXPECT_GT(channel(four, {393, 100}, greenShift), 200); // paper
    EXPECT_GT(channel(four, {400, 100}, redShift), 200);
    EXPECT_LT(channel(four, {403, 100}, redShift), 60); // the tile that begins at 405
    EXPECT_LT(channel(four, {100, 290}, greenShift), 60);
    EXPECT_GT(channel(four, {100, 293}, greenShift), 200);
    EXPECT_GT(channel(four, {100, 300}, greenShift), 200);
    EXPECT_LT(channel(four, {100, 303}, greenShift), 60); // the row that begins at 305
    root->RemovePicture(3);
    const QString two = root->GetCoverPath();
    EXPECT_LT(channel(two, {390, 300}, greenShift), 60);
    EXPECT_GT(channel(two, {393, 300}, greenShift), 200);
    EXPECT_GT(channel(two, {400, 300}, redShift), 200);
    EXPECT_LT(channel(two, {403, 300}, redShift), 60);
}

TEST_F(GalleryCover, OfAPictureThatHasChangedIsComposedAnew)
{
    CGallery& child = NewChild();
    child.AddPicture(Plain(QStringLiteral("a.png"), red));
    const auto middleOf = [](const QString& file) {
        const QSize size = CImage::FromFile(file).GetSize();
        return ColourAt(file, QPoint(size.width() / 2, size.height() / 2));
    };
    EXPECT_EQ(middleOf(root->GetCoverPath()), red);
    EXPECT_FALSE(test.project.LookForFiles());
    Picture(QStringLiteral("a.png"), blue, blue, QSize(120, 62));
    EXPECT_TRUE(test.project.LookForFiles());
    EXPECT_EQ(middleOf(child.GetCoverPath()), blue);
    // The cover above shows it, too.
    EXPECT_EQ(middleOf(root->GetCoverPath()), blue);
    EXPECT_FALSE(test.project.LookForFiles());
}
