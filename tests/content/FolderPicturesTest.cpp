#include "content/FolderPictures.h"

#include <atomic>
#include <fcntl.h>
#include <functional>
#include <mutex>
#include <sys/stat.h>
#include <thread>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include "common/BackgroundWorker.h"
#include "common/FileIdentity.h"
#include "common/FileSystem.h"
#include "common/Platform.h"
#include "effects/GeometricEffects.h"
#include "effects/ImageEffectSource.h"
#include "effects/ImageEffectTextStamp.h"
#include "imaging/Image.h"
#include "support/ProjectFixture.h"

namespace {

constexpr QSize Card(120, 90);

// Notes what it is told of; wants the pictures until the test says otherwise.
class CListener : public CFolderPicturesListener {
public:
    bool IsWanted() const override { return wanted; }
    void OnProgress(int count, const std::vector<FolderCard>& someCards) override
    {
        counts.push_back(count);
        cards.insert(cards.end(), someCards.begin(), someCards.end());
        if (onProgress) {
            onProgress();
        }
    }

    std::atomic<bool> wanted = true;
    std::vector<int> counts;
    std::vector<FolderCard> cards;
    std::function<void()> onProgress;
};

template <class Condition>
void AwaitThat(const Condition& condition)
{
    while (!condition()) {
        std::this_thread::yield();
    }
}

class FolderPicturesTest : public testing::Test {
protected:
    FolderPicturesTest()
    {
        qputenv("XDG_CACHE_HOME", fixture.scratch.Path(QStringLiteral("cache")).toUtf8());
        MakeDirectoryPath(Photos());
    }
    ~FolderPicturesTest() override { qunsetenv("XDG_CACHE_HOME"); }

    QString Photos(const char* name = "") const
    {
        return fixture.scratch.Path(QStringLiteral("photos/") + QString::fromUtf8(name));
    }
    QString Add(const char* name, QSize size = QSize(40, 30), uint32_t rgb = 0x336699) const
    {
        MakeDirectoryPath(ExtractFolder(Photos(name)));
        return fixture.WritePicture(QString::fromUtf8(name), size, rgb);
    }
    QString Write(const char* name, const QByteArray& bytes) const
    {
        return fixture.scratch.Write(QStringLiteral("photos/") + QString::fromUtf8(name), bytes);
    }
    FolderPictures Fill(const QString& folder)
    {
        CListener quiet;
        return FillPicturesCollection(folder, Card, quiet);
    }
    FolderPictures Fill() { return Fill(Photos()); }

    static QStringList NamesOf(const FolderPictures& found)
    {
        QStringList names;
        for (const auto& picture : found.pictures) {
            names += ExtractLastName(picture->GetPath());
        }
        return names;
    }
    static QStringList CardsOf(const FolderPictures& found)
    {
        QStringList cards;
        for (const auto& picture : found.pictures) {
            cards += picture->GetThumbnailPath();
        }
        return cards;
    }
    // The colour in the middle of the card, 8 bits a channel.
    static uint32_t ColourOf(const QString& card)
    {
        const QByteArray bytes = CImage::FromFile(card).GetRgba();
        const qsizetype middle = (qsizetype(Card.height()) / 2 * Card.width() + Card.width() / 2) * 4;
        const auto channel = [&](qsizetype i) {
            return static_cast<uint32_t>(static_cast<unsigned char>(bytes.at(middle + i)));
        };
        return channel(0) << 16 | channel(1) << 8 | channel(2);
    }
    static bool IsNear(uint32_t a, uint32_t b)
    {
        const auto distance = [&](int shift) {
            return std::abs(static_cast<int>(a >> shift & 0xff) - static_cast<int>(b >> shift & 0xff));
        };
        return distance(0) < 8 && distance(8) < 8 && distance(16) < 8;
    }
    static QByteArray BytesOf(const QString& path) { return ReadWholeFile(path); }
    static void SetTime(const QString& path, int64_t seconds)
    {
        const timespec times[] = {{seconds, 0}, {seconds, 0}};
        EXPECT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    }

    CProjectFixture fixture;
};

} // namespace

TEST_F(FolderPicturesTest, ListsFiveExtensionsInNameOrder)
{
    for (const char* name : {"d.gif", "b.png", "E.BMP", "a.JPG", "c.pcx"}) {
        Add(name);
    }
    // A ".jpeg" file is not listed.
    for (const char* name : {"f.jpeg", "g.tif", "h.webp", "jpg", "i.jpg.txt", ".hidden.jpg", "j"}) {
        Add(name);
    }
    MakeDirectoryPath(Photos("folder.jpg"));
    EXPECT_EQ(NamesOf(Fill()),
              (QStringList{QStringLiteral("a.JPG"), QStringLiteral("b.png"), QStringLiteral("c.pcx"),
                           QStringLiteral("d.gif"), QStringLiteral("E.BMP")}));
}

TEST_F(FolderPicturesTest, AnEmptyFolderHasNoPictures)
{
    const FolderPictures found = Fill();
    EXPECT_EQ(found.state, FolderPictures::State::Listed);
    EXPECT_TRUE(found.pictures.empty());
}

TEST_F(FolderPicturesTest, EachPictureHasACardOfTheSizeThatIsAsked)
{
    Add("wide.jpg", QSize(400, 100), 0x2040c0);
    Add("small.png", QSize(4, 3), 0xc04020);
    const QStringList cards = CardsOf(Fill());
    ASSERT_EQ(cards.size(), 2);
    for (const QString& card : cards) {
        EXPECT_EQ(CImage::FromFile(card).GetSize(), Card) << qPrintable(card);
    }
    EXPECT_TRUE(IsNear(ColourOf(cards[0]), 0xc04020)) << ColourOf(cards[0]);
    EXPECT_TRUE(IsNear(ColourOf(cards[1]), 0x2040c0)) << ColourOf(cards[1]);
}

TEST_F(FolderPicturesTest, CardsAreMadeOnceAndKept)
{
    Add("a.jpg");
    Add("b.jpg");
    const FolderPictures first = Fill();
    std::vector<std::optional<FileStamp>> stamps;
    for (const QString& card : CardsOf(first)) {
        SetTime(card, 1'800'000'000);
        stamps.push_back(FileStamp::Of(card));
    }
    const FolderPictures second = Fill();
    EXPECT_EQ(CardsOf(second), CardsOf(first));
    for (size_t i = 0; i < stamps.size(); ++i) {
        EXPECT_EQ(FileStamp::Of(CardsOf(second)[static_cast<qsizetype>(i)]), stamps[i]);
    }
}

TEST_F(FolderPicturesTest, APictureThatHasChangedGetsANewCard)
{
    const QString path = Add("a.png", QSize(40, 30), 0x800000);
    EXPECT_TRUE(IsNear(ColourOf(CardsOf(Fill())[0]), 0x800000));
    Add("a.png", QSize(40, 30), 0x000080);
    SetTime(path, 1'900'000'000);
    EXPECT_TRUE(IsNear(ColourOf(CardsOf(Fill())[0]), 0x000080));
    // Also if the new file is an older one.
    Add("a.png", QSize(40, 30), 0x008000);
    SetTime(path, 1'000'000'000);
    EXPECT_TRUE(IsNear(ColourOf(CardsOf(Fill())[0]), 0x008000));
}

TEST_F(FolderPicturesTest, FoldersOfTheSameLastNameHaveCardsOfTheirOwn)
{
    Add("2024/Sea/a.png", QSize(40, 30), 0x800000);
    Add("2025/Sea/a.png", QSize(40, 30), 0x000080);
    for (const char* folder : {"2024/Sea", "2025/Sea"}) {
        SetTime(Photos(folder) + QStringLiteral("/a.png"), 1'700'000'000);
    }
    EXPECT_EQ(CardsOf(Fill(Photos("2024/Sea"))), CardsOf(Fill(Photos("2024/Sea/"))));
    EXPECT_TRUE(IsNear(ColourOf(CardsOf(Fill(Photos("2024/Sea")))[0]), 0x800000));
    EXPECT_TRUE(IsNear(ColourOf(CardsOf(Fill(Photos("2025/Sea")))[0]), 0x000080));
}

TEST_F(FolderPicturesTest, CardsLieInAFolderOfTheUserAlone)
{
    Add("a.jpg");
    EXPECT_TRUE(CardsOf(Fill())[0].startsWith(FindImageCacheFolder()));
    struct stat status;
    ASSERT_EQ(::stat(QFile::encodeName(FindImageCacheFolder()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(FolderPicturesTest, NamesThatDifferInTheExtensionAloneHaveCardsOfTheirOwn)
{
    Add("a.gif", QSize(40, 30), 0x800000);
    Add("a.png", QSize(40, 30), 0x000080);
    const QStringList cards = CardsOf(Fill());
    EXPECT_TRUE(IsNear(ColourOf(cards[0]), 0x800000));
    EXPECT_TRUE(IsNear(ColourOf(cards[1]), 0x000080));
}

TEST_F(FolderPicturesTest, AnyNameOfAFileHasACard)
{
    const QByteArray longName = QByteArray(251, 'x') + ".jpg";
    const QByteArray longUmlauts = QByteArray("\xc3\xa4").repeated(125) + ".png";
    const char* const names[] = {"a b.jpg",
                                 "Ümläut.jpg",
                                 "#1.jpg",
                                 "100%41.jpg",
                                 "what?.jpg",
                                 "a&b.jpg",
                                 "\"q\".jpg",
                                 "it's.jpg",
                                 "line\nend.jpg",
                                 "<b>.jpg",
                                 "back\\slash.jpg",
                                 longName.constData(),
                                 longUmlauts.constData()};
    for (const char* name : names) {
        // Not by the imaging library, whose temporary names are longer.
        QFile::copy(Add("source.png"), Photos(name));
    }
    const FolderPictures found = Fill();
    EXPECT_EQ(found.pictures.size(), std::size(names) + 1);
    EXPECT_EQ(found.unfinished, QStringList());
    QStringList cards = CardsOf(found);
    for (const QString& card : cards) {
        EXPECT_EQ(CImage::FromFile(card).GetSize(), Card) << qPrintable(card);
    }
    EXPECT_EQ(cards.removeDuplicates(), 0);
}

TEST_F(FolderPicturesTest, WhatCanNotBeReadHasAnEmptyCardAndTheRestGoesOn)
{
    Write("a zero.jpg", "");
    Write("b text.png", "no picture at all");
    Write("c huge.bmp",
          QByteArray("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\xff\xff\xff\x7f\xff\xff\xff\x7f\1\0\x18\0", 30));
    ASSERT_EQ(::mkfifo(QFile::encodeName(Photos("d pipe.jpg")).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere"), Photos("e dangling.jpg")));
    Add("f good.jpg");
    const FolderPictures found = Fill();
    ASSERT_EQ(found.pictures.size(), 6u);
    EXPECT_EQ(found.unfinished.size(), 5);
    const QStringList cards = CardsOf(found);
    for (const QString& card : cards) {
        EXPECT_EQ(CImage::FromFile(card).GetSize(), Card) << qPrintable(card);
    }
    // Nothing is drawn on it but the name.
    EXPECT_NE(BytesOf(cards[0]), BytesOf(cards[1]));
    const QByteArray corner = CImage::FromFile(cards[0]).GetRgba().left(3);
    for (const char channel : corner) {
        EXPECT_NEAR(static_cast<unsigned char>(channel), 207, 2);
    }
}

TEST_F(FolderPicturesTest, APictureThatIsStillBeingWrittenIsTriedAgain)
{
    const QString path = Add("a.jpg", QSize(400, 300), 0x204060);
    const QByteArray whole = BytesOf(path);
    Write("a.jpg", whole.left(whole.size() / 2));
    const FolderPictures half = Fill();
    EXPECT_EQ(half.unfinished, QStringList{path});
    Write("a.jpg", whole);
    const FolderPictures found = Fill();
    EXPECT_EQ(found.unfinished, QStringList());
    EXPECT_TRUE(IsNear(ColourOf(CardsOf(found)[0]), 0x204060));
}

// The right to read a file can come back without a trace in its times.
TEST_F(FolderPicturesTest, WhatCouldNotBeReadIsTriedAgainEachTime)
{
    const QString path = Add("a.png", QSize(40, 30), 0x204060);
    const QString target = Photos("elsewhere.bin");
    ASSERT_TRUE(QFile::rename(path, target));
    ASSERT_TRUE(QFile::link(Photos("not yet.bin"), path));
    EXPECT_EQ(Fill().unfinished, QStringList{path});
    EXPECT_EQ(Fill().unfinished, QStringList{path});
    ASSERT_TRUE(QFile::rename(target, Photos("not yet.bin")));
    EXPECT_EQ(Fill().unfinished, QStringList());
}

TEST_F(FolderPicturesTest, TellsAFolderThatIsNotThereFromOneThatMayNotBeRead)
{
    EXPECT_EQ(Fill(Photos("nowhere")).state, FolderPictures::State::Missing);
    const QString file = Add("file.jpg");
    EXPECT_EQ(Fill(file).state, FolderPictures::State::Missing);
    const QString closed = Photos("closed");
    MakeDirectoryPath(closed);
    ASSERT_EQ(::chmod(QFile::encodeName(closed).constData(), 0), 0);
    {
        const COrdinaryRights rights(fixture.scratch);
        EXPECT_EQ(Fill(closed).state, FolderPictures::State::NotReadable);
    }
    ASSERT_EQ(::chmod(QFile::encodeName(closed).constData(), 0700), 0);
}

TEST_F(FolderPicturesTest, ALinkThatLeadsBackIsNoPicture)
{
    Add("a.jpg");
    ASSERT_TRUE(QFile::link(Photos(), Photos("loop.jpg")));
    ASSERT_TRUE(QFile::link(Photos("b.jpg"), Photos("b.jpg")));
    EXPECT_EQ(NamesOf(Fill()), (QStringList{QStringLiteral("a.jpg"), QStringLiteral("b.jpg")}));
}

TEST_F(FolderPicturesTest, TellsOfEveryFifthPicture)
{
    for (int i = 0; i < 12; ++i) {
        Add(QStringLiteral("%1.jpg").arg(i, 2, 10, QLatin1Char('0')).toUtf8().constData());
    }
    CListener listener;
    const FolderPictures found = FillPicturesCollection(Photos(), Card, listener);
    EXPECT_EQ(listener.counts, (std::vector<int>{5, 10}));
    ASSERT_EQ(listener.cards.size(), 10u);
    for (const FolderCard& card : listener.cards) {
        const auto& picture = found.pictures[static_cast<size_t>(card.position)];
        EXPECT_EQ(card.path, picture->GetPath());
        EXPECT_EQ(card.thumbnailPath, picture->GetThumbnailPath());
    }
    // Those that come together come in name order.
    EXPECT_TRUE(std::is_sorted(listener.cards.begin(), listener.cards.begin() + 5,
                               [](const auto& a, const auto& b) { return a.position < b.position; }));
}

TEST_F(FolderPicturesTest, StopsAtTheNextPictureWhenItIsNotWanted)
{
    for (int i = 0; i < 60; ++i) {
        Add(QStringLiteral("%1.jpg").arg(i).toUtf8().constData());
    }
    CListener listener;
    listener.onProgress = [&] {
        listener.wanted = false;
    };
    FillPicturesCollection(Photos(), Card, listener);
    EXPECT_EQ(listener.counts, std::vector<int>{5});
    const size_t made = ListDirectory(FindImageCacheFolder()).size();
    EXPECT_GE(made, 5u);
    EXPECT_LE(made, 5u + std::thread::hardware_concurrency());
}

// As the folder view uses it.
TEST_F(FolderPicturesTest, AWorkerIsCancelledAndAskedAnewInTheMiddle)
{
    for (int i = 0; i < 30; ++i) {
        Add(QStringLiteral("%1.jpg").arg(i).toUtf8().constData(), QSize(300, 200));
    }
    class CWorker final : public CBackgroundWorker, public CFolderPicturesListener {
    public:
        explicit CWorker(const QString& folder) : folder(folder) {}
        ~CWorker() override { Quit(); }
        bool IsWanted() const override { return IsRunning(); }
        void OnProgress(int, const std::vector<FolderCard>&) override { ++progress; }
        std::atomic<int> progress = 0;
        std::atomic<bool> ready = false;
        size_t count = 0;

    protected:
        void DoWork() override
        {
            const FolderPictures found = FillPicturesCollection(folder, Card, *this);
            if (IsRunning()) {
                count = found.pictures.size();
                ready = true;
            }
        }

    private:
        const QString folder;
    };
    CWorker worker(Photos());
    worker.Start();
    for (int i = 0; i < 5; ++i) {
        const int before = worker.progress;
        worker.Request();
        AwaitThat([&] { return worker.progress > before; });
        worker.Cancel();
    }
    worker.Request();
    AwaitThat([&] { return worker.ready.load(); });
    worker.Cancel();
    EXPECT_EQ(worker.count, 30u);
}

TEST_F(FolderPicturesTest, TheDateOfTheFileStandsAtTheBottomOfItsCard)
{
    const QString path = Add("a.png", QSize(400, 300));
    const QFileInfo file(path);
    const QDateTime born = file.birthTime().isValid() ? file.birthTime() : file.lastModified();
    CImageEffectSource source(path);
    CImageEffectThumbnail(Card).Apply(source);
    CImageEffectTextStamp(QLocale::system().toString(born, QLocale::ShortFormat), 8).Apply(source);
    const QString expected = fixture.scratch.Path(QStringLiteral("expected.png"));
    source.Save(expected);
    EXPECT_EQ(BytesOf(CardsOf(Fill())[0]), BytesOf(expected));
}
