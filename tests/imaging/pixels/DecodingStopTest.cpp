#include "imaging/pixels/DecodingStop.h"

#include <thread>

#include "imaging/Image.h"
#include "support/ScratchFolder.h"

namespace {

QString WriteImage(const CScratchFolder& folder, const QString& name)
{
    const QSize size(600, 400);
    QByteArray bytes(qsizetype(4) * size.width() * size.height(), '\xff');
    for (qsizetype i = 0; i < bytes.size(); i += 4) {
        bytes[i] = static_cast<char>(i / 4);
    }
    const bool isPng = name.endsWith(QStringLiteral(".png"));
    CImage::FromRgba(size, bytes)
        .Save(folder.Path(name), {isPng ? ImageEncoding::Format::Png : ImageEncoding::Format::Jpeg, 90});
    return folder.Path(name);
}

} // namespace

TEST(DecodingStop, APictureIsGivenUpInTheMiddle)
{
    const CScratchFolder folder;
    for (const char* name : {"a.jpg", "a.png"}) {
        const QString path = WriteImage(folder, QString::fromLatin1(name));
        int asked = 0;
        {
            const CDecodingStop stop([&] { return ++asked > 10; });
            EXPECT_TRUE(CImage::FromFile(path).GetRgba().isEmpty()) << name;
        }
        EXPECT_GT(asked, 10) << name;
        // Rows are asked for, not pictures; and none after the stop.
        EXPECT_LT(asked, 16) << name;
        EXPECT_FALSE(CImage::FromFile(path).GetRgba().isEmpty()) << name;
    }
}

TEST(DecodingStop, OtherThreadsGoOn)
{
    const CScratchFolder folder;
    const QString path = WriteImage(folder, QStringLiteral("a.jpg"));
    const CDecodingStop stop([] { return true; });
    QByteArray bytes;
    std::thread other([&] { bytes = CImage::FromFile(path).GetRgba(); });
    other.join();
    EXPECT_FALSE(bytes.isEmpty());
    EXPECT_TRUE(CDecodingStop::IsWanted());
}

TEST(DecodingStop, NobodyIsStoppedWithoutOne)
{
    EXPECT_FALSE(CDecodingStop::IsWanted());
    CDecodingStop::ThrowIfWanted();
}
