#include "effects/ImageEffectSource.h"

#include <QFile>

#include "TestPictures.h"
#include "common/Exceptions.h"
#include "common/FileSystem.h"

namespace {

// The description of the failure, or "" if there was none.
QString FailureOf(const CImageEffectSource& source, const QString& path)
{
    try {
        source.Save(path);
    } catch (const CUnexpectedException& failure) {
        EXPECT_TRUE(failure.GetCaption().startsWith(
            QStringLiteral("Unexpected error occured.\nSource file: ImageEffect(")));
        EXPECT_EQ(failure.GetAdvice(),
                  QStringLiteral("Please send detailed information to customer support service."));
        return failure.GetDescription();
    }
    return {};
}

// Luminance quantisation of a JPEG: one for all coefficients at quality 100.
bool HasQualityOf100(const QByteArray& jpeg)
{
    const qsizetype table = jpeg.indexOf("\xff\xdb");
    return table > 0 && jpeg.mid(table + 5, 64) == QByteArray(64, '\1');
}

} // namespace

TEST(ImageEffectSource, TheExtensionOfTheTargetChoosesTheFormat)
{
    const CScratchFolder folder;
    const CImageEffectSource source(Gradient({40, 30}));
    const struct {
        const char* name;
        const char* start;
    } rows[] = {
        {"a.png", "\x89PNG"},  {"b.PNG", "\x89PNG"},          {"c.gif", "\x89PNG"},
        {"d.bmp", "\x89PNG"},  {"e.jpg", "\xff\xd8\xff"},     {"f.tiff", "\xff\xd8\xff"},
        {"g", "\xff\xd8\xff"}, {"h.png.jpg", "\xff\xd8\xff"}, {"i.png/j", "\xff\xd8\xff"},
    };
    folder.Write(QStringLiteral("i.png/x"), {});
    for (const auto& row : rows) {
        source.Save(folder.Path(QString::fromLatin1(row.name)));
        EXPECT_TRUE(folder.Read(QString::fromLatin1(row.name)).startsWith(row.start)) << row.name;
    }
}

TEST(ImageEffectSource, AJpegHasQuality100)
{
    const CScratchFolder folder;
    CImageEffectSource(Gradient({40, 30})).Save(folder.Path(QStringLiteral("a.jpg")));
    EXPECT_TRUE(HasQualityOf100(folder.Read(QStringLiteral("a.jpg"))));
}

TEST(ImageEffectSource, AFileIsNeverWrittenOverItself)
{
    const CScratchFolder folder;
    const QString path = Stored(folder, Gradient({40, 30}), QStringLiteral("Picture.png"));
    const QByteArray before = folder.Read(QStringLiteral("Picture.png"));
    CImageEffectSource source(path);
    source.ReplaceImage(Plain({5, 5}, {1, 2, 3, 255}));
    source.Save(path);
    source.Save(folder.Path(QStringLiteral("pICTURE.PNG")));
    EXPECT_EQ(folder.Read(QStringLiteral("Picture.png")), before);
    EXPECT_EQ(folder.ListFiles(), QStringList{QStringLiteral("Picture.png")});

    // A picture that isn't even there is no failure then.
    const QString missing = folder.Path(QStringLiteral("none.jpg"));
    EXPECT_EQ(FailureOf(CImageEffectSource(missing), missing), QString());
}

TEST(ImageEffectSource, WithoutASourcePathEveryTargetIsWritten)
{
    const CScratchFolder folder;
    const CImageEffectSource source(Gradient({4, 4}));
    EXPECT_EQ(FailureOf(source, QString()).section(QLatin1Char('\n'), 0, 0),
              QStringLiteral("Could not save image to ''."));
    EXPECT_NE(FailureOf(source, QStringLiteral("")), QString());
}

TEST(ImageEffectSource, AnUnreadablePictureFailsAtSaveAndIsNamedWithItsReason)
{
    const CScratchFolder folder;
    const QString path = folder.Write(QStringLiteral("notes.jpg"), "no picture");
    const QString target = folder.Path(QStringLiteral("out.jpg"));
    const CImageEffectSource source(path);
    EXPECT_EQ(source.GetImage().GetSize(), QSize(0, 0));
    EXPECT_EQ(FailureOf(source, target),
              QStringLiteral("Could not save image to '%1'.\nThe picture '%2' could not be read: It is not a "
                             "picture of a known format.")
                  .arg(target, path));
    const QString missing = folder.Path(QStringLiteral("none.jpg"));
    EXPECT_EQ(
        FailureOf(CImageEffectSource(missing), target),
        QStringLiteral("Could not save image to '%1'.\nThe picture '%2' could not be read: No such file or "
                       "directory")
            .arg(target, missing));
    EXPECT_FALSE(FileExists(target));
}

TEST(ImageEffectSource, ATargetThatCantBeWrittenIsNamedWithTheSystemsReason)
{
    const CScratchFolder folder;
    const QString target = folder.Path(QStringLiteral("none/out.jpg"));
    EXPECT_EQ(
        FailureOf(CImageEffectSource(Gradient({4, 4})), target),
        QStringLiteral("Could not save image to '%1'.\nThe file '%1' could not be written: No such file or "
                       "directory.")
            .arg(target));
}

TEST(ImageEffectSource, TheSizeMakesABlankCanvas)
{
    const CImageEffectSource source(QSize(7, 5));
    EXPECT_EQ(source.GetImage().GetSize(), QSize(7, 5));
    EXPECT_EQ(PixelAt(source.GetImage(), {3, 3}), (Colour{255, 255, 255, 0}));
    const CScratchFolder folder;
    EXPECT_EQ(FailureOf(CImageEffectSource(QSize(0, 5)), folder.Path(QStringLiteral("a.png"))),
              QStringLiteral("Could not save image to '%1'.\nA picture of 0 by 5 pixels can't be made.")
                  .arg(folder.Path(QStringLiteral("a.png"))));
}

TEST(ImageEffectSource, DetachingLeavesNoPicture)
{
    const CScratchFolder folder;
    const CImage image = Gradient({6, 6});
    CImageEffectSource source(image);
    EXPECT_TRUE(source.DetachImage().IsSameAs(image));
    EXPECT_EQ(source.GetImage().GetSize(), QSize(0, 0));
    EXPECT_NE(FailureOf(source, folder.Path(QStringLiteral("a.png"))), QString());
}

TEST(ImageEffectSource, ADamagedPictureIsSavedAndToldOf)
{
    const CScratchFolder folder;
    Stored(folder, Gradient({200, 200}), QStringLiteral("whole.jpg"));
    const QByteArray whole = folder.Read(QStringLiteral("whole.jpg"));
    const QString path = folder.Write(QStringLiteral("half.jpg"), whole.left(whole.size() / 2));
    const CImageEffectSource source(path);
    source.Save(folder.Path(QStringLiteral("out.jpg")));
    EXPECT_EQ(source.GetImage().GetCondition().state, ImageCondition::State::InPart);
}
