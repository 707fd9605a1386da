#include "SampleFiles.h"

namespace {

using State = ImageCondition::State;

const QSize sampleSize(320, 240);

QByteArray Sample(const JpegOptions& options = {})
{
    return JpegOf(sampleSize, Detail, options);
}

// Where the compressed pixels of the first scan begin.
qsizetype ScanStart(const QByteArray& jpeg)
{
    const qsizetype scan = jpeg.indexOf("\xff\xda");
    return scan + 2 + static_cast<uint8_t>(jpeg[scan + 2]) * 256 + static_cast<uint8_t>(jpeg[scan + 3]);
}

State StateOf(const QByteArray& bytes)
{
    const CScratchFolder folder;
    const CImage image = Opened(folder, bytes);
    image.GetRgba();
    return image.GetCondition().state;
}

double ErrorInRows(const QByteArray& a, const QByteArray& b, int first, int count)
{
    const qsizetype row = sampleSize.width() * 4;
    return MeanError(a.mid(first * row, count * row), b.mid(first * row, count * row));
}

} // namespace

TEST(ImageDamage, ATruncatedJpegIsShownAsFarAsItGoes)
{
    const CScratchFolder folder;
    const QByteArray whole = Sample();
    const CImage image = Opened(folder, whole.left(whole.size() * 6 / 10));
    EXPECT_EQ(image.GetCondition().state, State::Whole); // nothing is known yet
    const QByteArray rgba = image.GetRgba();
    EXPECT_EQ(image.GetCondition().state, State::InPart);
    EXPECT_EQ(image.GetCondition().reason, QStringLiteral("Its data is damaged or incomplete."));
    const QByteArray expected = Opened(folder, whole, QStringLiteral("whole.jpg")).GetRgba();
    EXPECT_LT(ErrorInRows(rgba, expected, 0, 120), 0.01);
    EXPECT_GT(ErrorInRows(rgba, expected, 200, 40), 10);
}

TEST(ImageDamage, IsFoundAtEveryScaleOfTheDecoder)
{
    const QByteArray whole = Sample();
    for (const int part : {1, 3, 7, 15, 31}) {
        const CScratchFolder folder;
        const CImage image = Opened(folder, whole.left(whole.size() / 2));
        const CImage small = image.Resampled(sampleSize / part);
        EXPECT_FALSE(small.GetRgba().isEmpty());
        EXPECT_EQ(small.GetCondition().state, State::InPart) << part;
    }
}

TEST(ImageDamage, FoundInTheMiddleOfAJpegLeavesTheRest)
{
    const QByteArray whole = Sample();
    const qsizetype start = ScanStart(whole);
    const qsizetype middle = start + (whole.size() - start) / 2;
    QByteArray random;
    for (unsigned i = 0; i < 600; ++i) {
        random.append(static_cast<char>((i * 2654435761u) >> 13));
    }
    for (const QByteArray& garbage : {random, QByteArray(600, '\0'), QByteArray(600, '\x55'),
                                      QByteArray(600, '\xff'), QByteArray("\xff\xd3\xff\xd3\xff\xc4", 6)}) {
        const CScratchFolder folder;
        QByteArray damaged = whole;
        damaged.replace(middle, garbage.size(), garbage);
        const CImage image = Opened(folder, damaged);
        const QByteArray rgba = image.GetRgba();
        EXPECT_EQ(image.GetCondition().state, State::InPart) << garbage.left(4).toHex().constData();
        const QByteArray expected = Opened(folder, whole, QStringLiteral("whole.jpg")).GetRgba();
        EXPECT_LT(ErrorInRows(rgba, expected, 0, 80), 0.01);
    }
}

TEST(ImageDamage, ManySmallDamagesDontEndAPicture)
{
    // With a restart mark after every row of blocks each damage stays in its row.
    QByteArray whole = Sample();
    const CScratchFolder folder;
    QByteArray damaged = whole;
    for (qsizetype place = ScanStart(whole) + 50; place + 20 < whole.size(); place += 150) {
        damaged.replace(place, 4, "\xff\xd1\xff\xd2");
    }
    const CImage image = Opened(folder, damaged);
    EXPECT_FALSE(image.GetRgba().isEmpty());
    EXPECT_EQ(image.GetCondition().state, State::InPart);
}

TEST(ImageDamage, AProgressiveJpegShowsTheScansThatAreThere)
{
    const CScratchFolder folder;
    const QByteArray whole = Sample({.progressive = true});
    const QByteArray expected = Opened(folder, whole, QStringLiteral("whole.jpg")).GetRgba();
    const CImage truncated = Opened(folder, whole.left(whole.size() * 7 / 10), QStringLiteral("t.jpg"));
    EXPECT_LT(MeanError(truncated.GetRgba(), expected), 15);
    EXPECT_EQ(truncated.GetCondition().state, State::InPart);

    // A later scan that no decoder can go on from.
    QByteArray fatal = whole;
    const qsizetype last = whole.lastIndexOf("\xff\xda");
    fatal.replace(last + 4, 1, "\x77");
    const CImage image = Opened(folder, fatal, QStringLiteral("f.jpg"));
    EXPECT_LT(MeanError(image.GetRgba(), expected), 15);
    EXPECT_EQ(image.GetCondition().state, State::InPart);
}

TEST(ImageDamage, WithoutAnyPixelsAPictureIsNotDecodable)
{
    const QByteArray baseline = Sample();
    const QByteArray progressive = Sample({.progressive = true});
    EXPECT_EQ(StateOf(baseline.left(ScanStart(baseline))), State::NotDecodable);
    EXPECT_EQ(StateOf(baseline.left(ScanStart(baseline)) + QByteArray("\xff\xd9")), State::NotDecodable);
    EXPECT_EQ(StateOf(baseline.left(baseline.indexOf("\xff\xda"))), State::NotDecodable);
    EXPECT_EQ(StateOf(progressive.left(ScanStart(progressive))), State::NotDecodable);
}

TEST(ImageDamage, OddButHarmlessFilesAreWhole)
{
    const QByteArray whole = Sample();
    const QByteArray withoutEnd = whole.chopped(2);
    const struct {
        const char* what;
        QByteArray bytes;
    } rows[] = {
        {"padding before the end mark", withoutEnd + QByteArray(64, '\0') + "\xff\xd9"},
        {"data after the end mark", whole + QByteArray(5000, 'x')},
        {"bytes between two segments", WithSegment(whole, 0xfe, "x").insert(7, QByteArray(5, '\0'))},
        {"no end mark", withoutEnd},
        {"fill bytes before a mark", whole.left(2) + QByteArray(7, '\xff') + whole.mid(2)},
        {"an empty comment", WithSegment(whole, 0xfe, {})},
        {"a cut off profile", WithSegment(whole, 0xe2, QByteArray("ICC_PROFILE\0\2\3xyz", 17))},
        {"an unknown JFIF revision",
         WithSegment(whole, 0xe0, QByteArray("JFIF\0\x09\x01\0\0\1\0\1\0\0", 14))},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(StateOf(row.bytes), State::Whole) << row.what;
    }
}

TEST(ImageDamage, OtherFormatsAreShownAsFarAsTheyGo)
{
    const CScratchFolder folder;
    const QString path = folder.Path(QStringLiteral("whole.png"));
    ASSERT_EQ(CImage::FromRgba(sampleSize, Paint(sampleSize, Detail))
                  .Save(path, {.format = ImageEncoding::Format::Png})
                  .status,
              ImageSaveResult::Status::Saved);
    const QByteArray png = folder.Read(QStringLiteral("whole.png"));
    const QByteArray expected = Paint(sampleSize, Detail);
    const struct {
        const char* what;
        QByteArray bytes;
        int lines;
        int first; // of them, from the top
    } rows[] = {
        {"PNG", png.left(png.size() * 6 / 10), 80, 0},
        {"BMP", BmpOf(sampleSize, Detail).left(54 + 320 * 3 * 120), 80, 160}, // stored from the bottom
        {"PCX", PcxOf(sampleSize, Detail).chopped(100000), 40, 0},
    };
    for (const auto& row : rows) {
        const CImage image = Opened(folder, row.bytes);
        const QByteArray rgba = image.GetRgba();
        EXPECT_EQ(image.GetCondition().state, State::InPart) << row.what;
        EXPECT_LT(ErrorInRows(rgba, expected, row.first, row.lines), 0.5) << row.what;
    }
    EXPECT_EQ(StateOf(png.left(60)), State::NotDecodable);
}

TEST(ImageDamage, IsInheritedByWhatIsDerived)
{
    const CScratchFolder folder;
    const QByteArray whole = Sample();
    const CImage image = Opened(folder, whole.left(whole.size() / 2));
    const CImage derived = image.Rotated(1).Resampled({50, 50}).OnCard({40, 40}, {60, 60});
    const ImageSaveResult saved = derived.Save(folder.Path(QStringLiteral("out.jpg")), {});
    EXPECT_EQ(saved.status, ImageSaveResult::Status::Saved);
    EXPECT_EQ(derived.GetCondition().state, State::InPart);
    EXPECT_EQ(image.GetCondition().state, State::InPart);
}

TEST(ImageDamage, OfAnyKindNeverEndsTheProgram)
{
    const QSize size(40, 30);
    const QByteArray jpeg = JpegOf(size, Detail);
    const QByteArray progressive = JpegOf(size, Detail, {.progressive = true});
    uint32_t random = 12345;
    const auto next = [&random](uint32_t limit) {
        random = random * 1664525u + 1013904223u;
        return static_cast<qsizetype>((random >> 8) % limit);
    };
    const CScratchFolder folder;
    for (const QByteArray& whole : {jpeg, progressive, BmpOf(size, Detail), PcxOf(size, Detail)}) {
        for (int round = 0; round < 30; ++round) {
            QByteArray damaged = whole;
            for (int i = 0; i <= round % 6; ++i) {
                // Headers are hit as often as pixels.
                const auto reach = static_cast<uint32_t>(i % 2 == 0 ? damaged.size() : qsizetype(200));
                damaged[next(reach)] = static_cast<char>(next(256));
            }
            const CImage image = Opened(folder, damaged);
            const QByteArray rgba = image.Resampled({9, 7}).GetRgba();
            EXPECT_TRUE(rgba.size() == 9 * 7 * 4 || image.GetCondition().state == State::NotDecodable);
        }
    }
}
