#include "effects/FileNames.h"

#include "common/Exceptions.h"

TEST(FileNames, UnitsOutsideThePlainOnesBecomeTheirNumberInRadix32)
{
    const struct {
        QString name, expected;
    } rows[] = {
        {QStringLiteral("Winter day"), QStringLiteral("Winter10day")},
        {QStringLiteral("caf\u00e9"), QStringLiteral("caf79")},
        {QStringLiteral("1234567890-_.abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"),
         QStringLiteral("1234567890-_.abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ")},
        {QStringLiteral("(~/\\"), QStringLiteral("183u1f2s")},
        {QStringLiteral("\u4f60"), QStringLiteral("jr0")},
        {QStringLiteral("\U0001f600"), QStringLiteral("1m1t1ng0")}, // two units
        {QString(QChar(0xd800)), QStringLiteral("1m00")},
        {QString(), QString()},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(SanitizeFileName(row.name), row.expected) << qPrintable(row.name);
    }
    // One way only, so two names may meet.
    EXPECT_EQ(SanitizeFileName(QStringLiteral("a b")), SanitizeFileName(QStringLiteral("a10b")));
}

TEST(FileNames, BmpPngAndGifBecomePngEverythingElseJpeg)
{
    const struct {
        const char* extension;
        const char* encoder;
        const char* result;
    } rows[] = {
        {"bmp", "png", ".png"},   {"PNG", "png", ".png"},   {"Gif", "png", ".png"},
        {"jpg", "jpeg", ".jpg"},  {"JPEG", "jpeg", ".jpg"}, {"pcx", "jpeg", ".jpg"},
        {"tiff", "jpeg", ".jpg"}, {"", "jpeg", ".jpg"},     {"pngx", "jpeg", ".jpg"},
    };
    for (const auto& row : rows) {
        const EncoderChoice choice = GetEncoderForExtension(QString::fromLatin1(row.extension));
        EXPECT_EQ(choice.encoderName, QLatin1String(row.encoder)) << row.extension;
        EXPECT_EQ(choice.resultExtension, QLatin1String(row.result)) << row.extension;
    }
}

TEST(FileNames, AnEncoderIsFoundByAPartOfItsMimeType)
{
    EXPECT_EQ(GetEncoderClsid(QStringLiteral("jpeg")), ImageEncoding::Format::Jpeg);
    EXPECT_EQ(GetEncoderClsid(QStringLiteral("png")), ImageEncoding::Format::Png);
    EXPECT_EQ(GetEncoderClsid(QStringLiteral("gif")), std::nullopt);
}

TEST(FileNames, AMissingEncoderIsNamed)
{
    try {
        RequireEncoder(QStringLiteral("targa"));
        FAIL();
    } catch (const CUnexpectedException& failure) {
        EXPECT_EQ(failure.GetDescription(), QStringLiteral("Could not find encoder for 'targa'."));
        EXPECT_TRUE(failure.GetCaption().startsWith(
            QStringLiteral("Unexpected error occured.\nSource file: ImageEffect(")));
        EXPECT_EQ(failure.GetAdvice(),
                  QStringLiteral("Please send detailed information to customer support service."));
    }
}

TEST(FileNames, ASuffixGoesBeforeTheLastDotOfTheLastPart)
{
    const struct {
        const char* name;
        const char* expected;
    } rows[] = {
        {"a.jpg", "a_s.jpg"},
        {"a.b.jpg", "a.b_s.jpg"},
        {"/d.ir/a.jpg", "/d.ir/a_s.jpg"},
        {"C:\\d\\a.png", "C:\\d\\a_s.png"},
        {".jpg", "_s.jpg"},
        {"a.", "a_s."},
        // Without a dot there is no defined result; this one harms nothing.
        {"name", "name_s"},
        {"/d.ir/name", "/d.ir/name_s"},
        {"", "_s"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(WithSuffix(QString::fromLatin1(row.name), QStringLiteral("_s")),
                  QLatin1String(row.expected));
    }
}

TEST(ImageEffectRename, NamesTheResult)
{
    const struct {
        const char* path;
        const char* expected;
    } rows[] = {
        {"C:\\My pictures\\Winter day.JPEG", "C:\\My pictures\\Winter10day.jpg"},
        {"/My pictures/Winter day.JPEG", "/My pictures/Winter10day.jpg"},
        {"a.BMP", "a.png"},
        {"a.pcx", "a.jpg"},
        {"a.b.gif", "a.b.png"},
        {"noextension", "noextension.jpg"},
        {".png", ".png"},
        {"", ".jpg"},
    };
    const CImageEffectRename rename;
    for (const auto& row : rows) {
        EXPECT_EQ(rename.GetResultFileName(QString::fromLatin1(row.path)), QLatin1String(row.expected));
    }
}

TEST(ImageEffectRename, LongNamesAreShortenedAndKeptApart)
{
    const CImageEffectRename rename;
    const QString limit(150, QLatin1Char('n'));
    EXPECT_EQ(rename.GetResultFileName(limit + QStringLiteral(".jpg")), limit + QStringLiteral(".jpg"));

    const QString longer = limit + QLatin1Char('n');
    const QString shortened =
        rename.GetResultFileName(QStringLiteral("/d/") + longer + QStringLiteral(".png"));
    // The hash is the beginning of the SHA-256 of 151 "n".
    EXPECT_EQ(shortened, QStringLiteral("/d/") + QString(134, QLatin1Char('n')) +
                             QStringLiteral("239e62bd1330c979.png"));

    const QString umlauts(127, QChar(0xfc)); // 254 bytes in a file name, "7s" each when sanitised
    const QString first = rename.GetResultFileName(umlauts + QStringLiteral("1.jpg"));
    const QString second = rename.GetResultFileName(umlauts + QStringLiteral("2.jpg"));
    EXPECT_EQ(first.size(), 154);
    EXPECT_NE(first, second);
    EXPECT_EQ(first, rename.GetResultFileName(umlauts + QStringLiteral("1.jpg")));
}
