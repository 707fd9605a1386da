#include "effects/ImageTransform.h"

#include "TestPictures.h"
#include "common/Exceptions.h"

TEST(ImageTransform, ALargerPictureIsMadeTheBoxWithoutKeepingProportions)
{
    const CScratchFolder folder;
    const QString source = Stored(folder, Gradient({200, 100}), QStringLiteral("s.png"));
    const struct {
        QSize box;
        const char* destination;
        const char* expected;
        QSize size;
    } rows[] = {
        {{50, 50}, "a.bmp", "a_50_50.png", {50, 50}},
        {{300, 50}, "b.JPEG", "b_300_50.jpg", {300, 50}},
        {{200, 100}, "c.png", "c.png", {200, 100}},
        {{500, 500}, "d.pcx", "d.jpg", {200, 100}},
    };
    for (const auto& row : rows) {
        const QString result =
            ResizeImageFile(source, folder.Path(QString::fromLatin1(row.destination)), {row.box});
        EXPECT_EQ(result, folder.Path(QString::fromLatin1(row.expected)));
        EXPECT_EQ(CImage::FromFile(result).GetSize(), row.size);
    }
}

TEST(ImageTransform, AnExistingResultStaysUnlessItIsToBeOverwritten)
{
    const CScratchFolder folder;
    const QString source = Stored(folder, Gradient({20, 10}), QStringLiteral("s.png"));
    const QString existing = folder.Write(QStringLiteral("out_5_5.png"), "old");
    const QString destination = folder.Path(QStringLiteral("out.png"));
    EXPECT_EQ(ResizeImageFile(source, destination, {{5, 5}, false}), existing);
    EXPECT_EQ(folder.Read(QStringLiteral("out_5_5.png")), "old");
    EXPECT_EQ(ResizeImageFile(source, destination, {{5, 5}, true}), existing);
    EXPECT_EQ(CImage::FromFile(existing).GetSize(), QSize(5, 5));
}

TEST(ImageTransform, AFailedResizeNamesTargetSourceAndReason)
{
    const CScratchFolder folder;
    const QString source = folder.Write(QStringLiteral("text.jpg"), "text");
    const QString target = folder.Write(QStringLiteral("out.jpg"), "old");
    try {
        ResizeImageFile(source, target, {{5, 5}, true});
        FAIL();
    } catch (const CUnexpectedException& failure) {
        EXPECT_EQ(
            failure.GetDescription(),
            QStringLiteral("Could not save image to '%1'.\nThe picture '%2' could not be read: It is not a "
                           "picture of a known format.")
                .arg(target, source));
    }
    EXPECT_EQ(folder.Read(QStringLiteral("out.jpg")), "old");
}

TEST(ImageTransform, ARotatedCopyIsMadeBesideThePicture)
{
    const CScratchFolder folder;
    const QString source = Stored(folder, Gradient({20, 10}), QStringLiteral("s.png"));
    const QString result = RotateImageFile(source, 1);
    EXPECT_EQ(result, folder.Path(QStringLiteral("s_rotated_1.png")));
    EXPECT_EQ(CImage::FromFile(result).GetSize(), QSize(10, 20));
}

TEST(ImageTransform, AnExistingRotatedCopyIsTakenAsItIs)
{
    const CScratchFolder folder;
    const QString source = Stored(folder, Gradient({20, 10}), QStringLiteral("s.png"));
    const QString existing = folder.Write(QStringLiteral("s_rotated_3.png"), "old");
    EXPECT_EQ(RotateImageFile(source, 3), existing);
    EXPECT_EQ(folder.Read(QStringLiteral("s_rotated_3.png")), "old");
}

TEST(ImageTransform, WhatCantBeRotatedStaysTheGivenPath)
{
    const CScratchFolder folder;
    const QString text = folder.Write(QStringLiteral("text.jpg"), "text");
    EXPECT_EQ(RotateImageFile(text, 1), text);
    EXPECT_EQ(RotateImageFile(folder.Path(QStringLiteral("none.jpg")), 1),
              folder.Path(QStringLiteral("none.jpg")));
    EXPECT_EQ(folder.ListFiles(), QStringList{QStringLiteral("text.jpg")});
}

TEST(ImageTransform, AJpegHasTheQualityOfAnEncoderThatIsToldNothing)
{
    const CScratchFolder folder;
    const QString source = Stored(folder, Gradient({40, 30}), QStringLiteral("s.png"));
    ResizeImageFile(source, folder.Path(QStringLiteral("a.jpg")), {{20, 20}});
    const QString photo = Stored(folder, Gradient({40, 30}), QStringLiteral("b.jpg"));
    RotateImageFile(photo, 1);
    for (const char* const name : {"a_20_20.jpg", "b_rotated_1.jpg"}) {
        const QByteArray jpeg = folder.Read(QString::fromLatin1(name));
        // The beginning of the luminance table at quality 75.
        EXPECT_EQ(jpeg.mid(jpeg.indexOf("\xff\xdb") + 5, 4), QByteArray("\x08\x06\x06\x07", 4)) << name;
    }
}

TEST(ImageTransform, ARotatedCopyIsTurnedClockwiseAndNamedByItsFormat)
{
    const CScratchFolder folder;
    const CImage image = Gradient({20, 10});
    const CImage right = CImage::FromFile(RotateImageFile(Stored(folder, image, QStringLiteral("s.png")), 1));
    EXPECT_EQ(PixelAt(right, {9, 0}), PixelAt(image, {0, 0}));
    EXPECT_EQ(PixelAt(right, {0, 0}), PixelAt(image, {0, 9}));
    EXPECT_EQ(RotateImageFile(Stored(folder, image, QStringLiteral("b.bmp")), 2),
              folder.Path(QStringLiteral("b_rotated_2.png")));
    EXPECT_EQ(RotateImageFile(Stored(folder, image, QStringLiteral("c.JPEG")), 3),
              folder.Path(QStringLiteral("c_rotated_3.jpg")));
}
