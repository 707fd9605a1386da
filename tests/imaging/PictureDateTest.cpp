#include "imaging/PictureDate.h"

#include <gtest/gtest.h>

#include "imaging/Image.h"
#include "support/ScratchFolder.h"

namespace {

// A JPEG with an EXIF segment that holds the date, and nothing else, in the sub-IFD.
QByteArray WithDate(const QByteArray& jpeg, const QByteArray& date)
{
    const QByteArray tiff = QByteArray::fromHex("4d4d002a00000008" // big-endian, IFD at 8
                                                "0001"
                                                "8769"
                                                "0004"
                                                "00000001"
                                                "0000001a"
                                                "00000000"
                                                "0001"
                                                "9003"
                                                "0002"
                                                "00000014"
                                                "0000002c"
                                                "00000000") +
                            date + '\0';
    const QByteArray content = QByteArray("Exif\0\0", 6) + tiff;
    const qsizetype length = content.size() + 2;
    const char size[] = {static_cast<char>(length >> 8), static_cast<char>(length & 0xff)};
    return jpeg.left(2) + "\xff\xe1" + QByteArray(size, 2) + content + jpeg.mid(2);
}

} // namespace

TEST(PictureDate, IsWhatTheCameraHasWritten)
{
    const CScratchFolder scratch;
    const QString plain = scratch.Path(QStringLiteral("plain.jpg"));
    CImage::Blank(QSize(8, 8)).Save(plain, {ImageEncoding::Format::Jpeg, 90});
    const QByteArray jpeg = scratch.Read(QStringLiteral("plain.jpg"));
    const struct {
        QByteArray bytes;
        QDateTime taken;
    } rows[] = {
        {WithDate(jpeg, "2019:05:01 12:34:56"), QDateTime(QDate(2019, 5, 1), QTime(12, 34, 56))},
        {WithDate(jpeg, "0000:00:00 00:00:00"), QDateTime()},
        {WithDate(jpeg, "                   "), QDateTime()},
        {WithDate(jpeg, "yesterday, at noon."), QDateTime()},
        {jpeg, QDateTime()},
        {jpeg.left(40), QDateTime()},
        {"no picture", QDateTime()},
        {"", QDateTime()},
    };
    for (const auto& row : rows) {
        const QString path = scratch.Write(QStringLiteral("a.jpg"), row.bytes);
        EXPECT_EQ(ReadDateTaken(path), row.taken) << row.bytes.left(80).toHex().data();
    }
    EXPECT_FALSE(ReadDateTaken(scratch.Path(QStringLiteral("none.jpg"))).isValid());
    EXPECT_FALSE(ReadDateTaken(scratch.Path()).isValid());
}
