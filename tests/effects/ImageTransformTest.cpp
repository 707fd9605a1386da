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
