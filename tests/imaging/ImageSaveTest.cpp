#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <vips/vips8>

#include "SampleFiles.h"

namespace {

using Status = ImageSaveResult::Status;

const QSize sampleSize(60, 40);
constexpr ImageEncoding jpegEncoding{.format = ImageEncoding::Format::Jpeg};
constexpr ImageEncoding pngEncoding{.format = ImageEncoding::Format::Png};

CImage Sample()
{
    return CImage::FromRgba(sampleSize, Paint(sampleSize, Waves));
}

} // namespace

TEST(ImageSave, APngKeepsEveryPixel)
{
    const CScratchFolder folder;
    const Painter painter = [](int x, int y) {
        return Colour{x, y, 5, x * 4};
    };
    const CImage image = CImage::FromRgba(sampleSize, Paint(sampleSize, painter));
    const QString path = folder.Path(QStringLiteral("a.png"));
    ASSERT_EQ(image.Save(path, pngEncoding).status, Status::Saved);
    EXPECT_TRUE(folder.Read(QStringLiteral("a.png")).startsWith("\x89PNG"));
    EXPECT_EQ(CImage::FromFile(path).GetRgba(), Paint(sampleSize, painter));
}

TEST(ImageSave, AJpegIsNearlyAsGood)
{
    const CScratchFolder folder;
    const QString path = folder.Path(QStringLiteral("a.jpg"));
    ASSERT_EQ(Sample().Save(path, jpegEncoding).status, Status::Saved);
    EXPECT_TRUE(folder.Read(QStringLiteral("a.jpg")).startsWith("\xff\xd8\xff"));
    EXPECT_LT(MeanError(CImage::FromFile(path).GetRgba(), Paint(sampleSize, Waves)), 1.0);
    ASSERT_EQ(Sample().Save(folder.Path(QStringLiteral("b.jpg")), {.quality = 40}).status, Status::Saved);
    EXPECT_LT(folder.Read(QStringLiteral("b.jpg")).size(), folder.Read(QStringLiteral("a.jpg")).size());
}

TEST(ImageSave, AJpegIsFlattenedOnWhite)
{
    const CScratchFolder folder;
    const QString path = folder.Path(QStringLiteral("a.jpg"));
    ASSERT_EQ(CImage::Blank(sampleSize).Save(path, jpegEncoding).status, Status::Saved);
    EXPECT_EQ(CImage::FromFile(path).GetRgba(), Paint(sampleSize, [](int, int) {
                  return Colour{255, 255, 255, 255};
              }));
    const CImage half = CImage::FromRgba(sampleSize, Paint(sampleSize, [](int, int) {
                                             return Colour{0, 0, 0, 51};
                                         }));
    ASSERT_EQ(half.Save(path, jpegEncoding).status, Status::Saved);
    EXPECT_NEAR(PixelOf(CImage::FromFile(path).GetRgba(), sampleSize, {9, 9})[0], 204, 1);
}

TEST(ImageSave, NothingOfTheSourcesMetadataIsWritten)
{
    const CScratchFolder folder;
    QByteArray jpeg = WithProfile(JpegOf(sampleSize, Waves), IccProfileOf(displayP3));
    jpeg = WithSegment(jpeg, 0xe1, ExifOrientation(6, true));
    jpeg = WithSegment(jpeg, 0xe1, "http://ns.adobe.com/xap/1.0/ here");
    jpeg = WithSegment(jpeg, 0xfe, "a comment");
    const CImage image = Opened(folder, jpeg);
    for (const ImageEncoding& encoding : {jpegEncoding, pngEncoding}) {
        ASSERT_EQ(image.Save(folder.Path(QStringLiteral("out")), encoding).status, Status::Saved);
        const QByteArray written = folder.Read(QStringLiteral("out"));
        for (const char* word : {"Exif", "adobe.com", "comment", "ICC_PROFILE", "iCCP", "eXIf", "acsp"}) {
            EXPECT_FALSE(written.contains(word)) << word;
        }
        EXPECT_EQ(CImage::FromFile(folder.Path(QStringLiteral("out"))).GetSize(), sampleSize.transposed());
    }
}

TEST(ImageSave, AFailureLeavesTheOldFileAndNoOther)
{
    const CScratchFolder folder;
    const QString path = folder.Write(QStringLiteral("old.jpg"), "old");
    const CImage unreadable = Opened(folder, "text", QStringLiteral("text.jpg"));
    const ImageSaveResult result = unreadable.Save(path, jpegEncoding);
    EXPECT_EQ(result.status, Status::NoPixels);
    EXPECT_EQ(result.reason, QStringLiteral("It is not a picture of a known format."));
    EXPECT_EQ(folder.Read(QStringLiteral("old.jpg")), "old");
    EXPECT_EQ(folder.ListFiles(), (QStringList{QStringLiteral("old.jpg"), QStringLiteral("text.jpg")}));
}

TEST(ImageSave, TheSystemsReasonIsGiven)
{
    const CScratchFolder folder;
    const ImageSaveResult missing = Sample().Save(folder.Path(QStringLiteral("none/a.jpg")), jpegEncoding);
    EXPECT_EQ(missing.status, Status::NotWritten);
    EXPECT_EQ(missing.reason, QStringLiteral("No such file or directory"));
    const ImageSaveResult directory = Sample().Save(folder.Path(), jpegEncoding);
    EXPECT_EQ(directory.status, Status::NotWritten);
    const QString longName = folder.Path(QString(256, QLatin1Char('a')));
    EXPECT_EQ(Sample().Save(longName, jpegEncoding).reason, QStringLiteral("File name too long"));
    EXPECT_TRUE(folder.ListFiles().isEmpty());
}

TEST(ImageSave, AFullDiskLeavesTheOldFile)
{
    const CScratchFolder folder;
    const QString path = folder.Write(QStringLiteral("old.jpg"), "old");
    // A limit on the size of files fails a write as a full disk does, once its signal is ignored.
    struct rlimit before;
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    struct rlimit tight = before;
    tight.rlim_cur = 100;
    const auto previous = ::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    const ImageSaveResult result = Sample().Save(path, jpegEncoding);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    ::signal(SIGXFSZ, previous);
    EXPECT_EQ(result.status, Status::NotWritten);
    EXPECT_EQ(result.reason, QStringLiteral("File too large"));
    EXPECT_EQ(folder.Read(QStringLiteral("old.jpg")), "old");
    EXPECT_EQ(folder.ListFiles(), QStringList{QStringLiteral("old.jpg")});
}

TEST(ImageSave, APictureBeyondTheFormatSaysSo)
{
    const CScratchFolder folder;
    const CImage wide = CImage::FromRgba({1, 1}, Paint({1, 1}, Waves)).Resampled({70000, 2});
    const ImageSaveResult result = wide.Save(folder.Path(QStringLiteral("wide.jpg")), jpegEncoding);
    EXPECT_EQ(result.status, Status::NoPixels);
    EXPECT_EQ(result.reason, QStringLiteral("A picture of 70000 by 2 pixels can't be saved in this format."));
    EXPECT_EQ(wide.Save(folder.Path(QStringLiteral("wide.png")), pngEncoding).status, Status::Saved);
}
