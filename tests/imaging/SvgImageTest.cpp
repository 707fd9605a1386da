#include "imaging/SvgImage.h"

#include "support/ScratchFolder.h"

namespace {

constexpr char square[] = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"2\" height=\"3\">"
                          "<rect width=\"2\" height=\"3\" fill=\"#102030\" fill-opacity=\"%1\"/></svg>";

QByteArray Square(const char* opacity)
{
    return QByteArray(square).replace("%1", opacity);
}

} // namespace

TEST(SvgImage, ADrawingIsRenderedAtItsScale)
{
    const CImage image = RenderSvg(Square("1"), 4);
    ASSERT_EQ(image.GetSize(), QSize(8, 12));
    EXPECT_EQ(image.GetRgba().left(4), QByteArray("\x10\x20\x30\xff", 4));
}

TEST(SvgImage, TransparencyIsNotPremultiplied)
{
    const QByteArray pixel = RenderSvg(Square("0.5"), 1).GetRgba().left(4);
    ASSERT_EQ(pixel.size(), 4);
    EXPECT_NEAR(static_cast<uint8_t>(pixel[0]), 0x10, 2);
    EXPECT_NEAR(static_cast<uint8_t>(pixel[2]), 0x30, 2);
    EXPECT_NEAR(static_cast<uint8_t>(pixel[3]), 128, 2);
}

TEST(SvgImage, WhatIsNoDrawingIsNoPicture)
{
    EXPECT_TRUE(RenderSvg(QByteArray(), 4).GetSize().isEmpty());
    EXPECT_TRUE(RenderSvg("<html>", 4).GetSize().isEmpty());
}

TEST(SvgImage, PicturesLieBesideEachOther)
{
    const CImage both = SideBySide({RenderSvg(Square("1"), 1), CImage(), RenderSvg(Square("0"), 1)});
    ASSERT_EQ(both.GetSize(), QSize(4, 3));
    const QByteArray pixels = both.GetRgba();
    EXPECT_EQ(static_cast<uint8_t>(pixels[1 * 4 + 3]), 255);
    EXPECT_EQ(static_cast<uint8_t>(pixels[2 * 4 + 3]), 0);
    EXPECT_TRUE(SideBySide({}).GetSize().isEmpty());
}

TEST(SvgImage, ABitmapKeepsItsTransparency)
{
    const CScratchFolder scratch;
    const QString path = scratch.Path(QStringLiteral("a.bmp"));
    const ImageSaveResult result = SideBySide({RenderSvg(Square("1"), 1), RenderSvg(Square("0"), 1)})
                                       .Save(path, {.format = ImageEncoding::Format::Bmp, .quality = 100});
    ASSERT_EQ(result.status, ImageSaveResult::Status::Saved) << qPrintable(result.reason);
    // BITMAPV4HEADER, rows from the top, blue first.
    const QByteArray bytes = scratch.Read(QStringLiteral("a.bmp"));
    ASSERT_EQ(bytes.size(), 14 + 108 + 4 * 3 * 4);
    EXPECT_EQ(bytes.left(2), "BM");
    EXPECT_EQ(bytes.mid(10, 4), QByteArray("\x7a\0\0\0", 4));
    EXPECT_EQ(bytes.mid(14, 12), QByteArray("\x6c\0\0\0\x04\0\0\0\xfd\xff\xff\xff", 12));
    EXPECT_EQ(bytes.mid(122, 4), QByteArray("\x30\x20\x10\xff", 4));
    EXPECT_EQ(static_cast<uint8_t>(bytes[122 + 2 * 4 + 3]), 0);
    EXPECT_EQ(CImage::FromFile(path).GetSize(), QSize(4, 3));
}
