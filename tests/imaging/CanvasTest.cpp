#include "imaging/Canvas.h"

#include "SampleFiles.h"

namespace {

constexpr CanvasColour red{200, 0, 0, 255};
constexpr CanvasColour nothing{255, 255, 255, 0};

CanvasColour At(const CCanvas& canvas, int x, int y)
{
    return canvas.GetPixel({x, y}).value_or(CanvasColour{1, 2, 3, 4});
}

// A letter for each pixel: "." for nothing, else what the colour stands for.
QStringList Drawing(const CCanvas& canvas, const std::map<char, CanvasColour>& colours)
{
    QStringList rows;
    for (int y = 0; y < canvas.GetSize().height(); ++y) {
        QString row;
        for (int x = 0; x < canvas.GetSize().width(); ++x) {
            QChar letter = QLatin1Char('?');
            for (const auto& [sign, colour] : colours) {
                letter = At(canvas, x, y) == colour ? QLatin1Char(sign) : letter;
            }
            row += letter;
        }
        rows += row;
    }
    return rows;
}

CImage Plain(QSize size, const Colour& colour)
{
    return CImage::FromRgba(size, Paint(size, [&](int, int) { return colour; }));
}

} // namespace

TEST(Canvas, BeginsWhiteAndTransparent)
{
    const CCanvas canvas({3, 2});
    EXPECT_EQ(At(canvas, 2, 1), nothing);
    EXPECT_FALSE(canvas.GetPixel({3, 1}));
    EXPECT_FALSE(canvas.GetPixel({0, -1}));
}

TEST(Canvas, FillsARectangleAndCutsWhatLiesOutside)
{
    CCanvas canvas({5, 4});
    canvas.FillRectangle({1, 2, 3, 1}, red);
    canvas.FillRectangle({4, -7, 9, 8}, red);
    canvas.FillRectangle({0, 0, 0, 3}, red);
    canvas.FillRectangle({3, 3, -2, -2}, red);
    EXPECT_EQ(Drawing(canvas, {{'.', nothing}, {'r', red}}),
              (QStringList{QStringLiteral("....r"), QStringLiteral("....."), QStringLiteral(".rrr."),
                           QStringLiteral(".....")}));
}

TEST(Canvas, AnOutlineReachesOnePixelBeyondTheFilledArea)
{
    CCanvas canvas({6, 5});
    const CanvasColour half{0, 0, 200, 100}; // a corner painted twice would show
    canvas.DrawRectangle({1, 1, 3, 2}, half);
    canvas.DrawRectangle({0, 0, 0, 5}, half);
    EXPECT_EQ(Drawing(canvas, {{'.', nothing}, {'b', half}}),
              (QStringList{QStringLiteral("......"), QStringLiteral(".bbbb."), QStringLiteral(".b..b."),
                           QStringLiteral(".bbbb."), QStringLiteral("......")}));
}

TEST(Canvas, ColoursBlendByTheirAlpha)
{
    CCanvas canvas({1, 1});
    canvas.FillRectangle({0, 0, 1, 1}, {0, 0, 0, 191});
    EXPECT_EQ(At(canvas, 0, 0), (CanvasColour{0, 0, 0, 191}));
    canvas.FillRectangle({0, 0, 1, 1}, {255, 255, 255, 128});
    // alpha: 128 + 191 * 127 / 255 = 223.1; of the white that is 128 / 223.1 = 0.5737
    EXPECT_EQ(At(canvas, 0, 0), (CanvasColour{146, 146, 146, 223}));
    canvas.FillRectangle({0, 0, 1, 1}, {10, 20, 30, 0});
    EXPECT_EQ(At(canvas, 0, 0), (CanvasColour{146, 146, 146, 223}));
    canvas.FillRectangle({0, 0, 1, 1}, {10, 20, 30, 255});
    EXPECT_EQ(At(canvas, 0, 0), (CanvasColour{10, 20, 30, 255}));
    canvas.FillRectangle({0, 0, 1, 1}, {110, 220, 130, 51});
    EXPECT_EQ(At(canvas, 0, 0), (CanvasColour{30, 60, 50, 255})); // a fifth of the way
}

TEST(Canvas, LaysAPictureUnscaledWithItsOwnAlphaTimesTheOpacity)
{
    const struct {
        int alpha;
        double opacity;
        int expected; // red over black
    } rows[] = {{255, 1, 200}, {255, 0.6, 120}, {255, 0, 0},   {255, -1, 0},
                {255, 7, 200}, {102, 1, 80},    {102, 0.5, 40}};
    for (const auto& row : rows) {
        CCanvas canvas({4, 3});
        canvas.FillRectangle({0, 0, 4, 3}, {0, 0, 0, 255});
        canvas.DrawImage(Plain({2, 2}, {200, 0, 0, row.alpha}), QPoint(3, 2), row.opacity);
        EXPECT_EQ(At(canvas, 3, 2), (CanvasColour{static_cast<uint8_t>(row.expected), 0, 0, 255}))
            << row.alpha << " " << row.opacity;
        EXPECT_EQ(At(canvas, 2, 2), (CanvasColour{0, 0, 0, 255}));
        EXPECT_EQ(At(canvas, 3, 1), (CanvasColour{0, 0, 0, 255}));
    }
}

TEST(Canvas, APictureReachesOverAllEdges)
{
    CCanvas canvas({3, 2});
    const QSize size(7, 6);
    canvas.DrawImage(CImage::FromRgba(size, Paint(size,
                                                  [](int x, int y) {
                                                      return Colour{x, y, 0, 255};
                                                  })),
                     QPoint(-2, -3), 1);
    EXPECT_EQ(At(canvas, 0, 0), (CanvasColour{2, 3, 0, 255}));
    EXPECT_EQ(At(canvas, 2, 1), (CanvasColour{4, 4, 0, 255}));
    canvas.DrawImage(Plain({2, 2}, {9, 9, 9, 255}), QPoint(500, -500), 1);
    EXPECT_EQ(At(canvas, 2, 1), (CanvasColour{4, 4, 0, 255}));
}

TEST(Canvas, APictureIsScaledAsElsewhere)
{
    const QSize size(200, 100);
    const CImage image = CImage::FromRgba(size, Paint(size, Waves));
    CCanvas canvas({90, 70});
    canvas.DrawImage(image, QRect(10, 5, 60, 50));
    const QByteArray expected = image.Resampled({60, 50}).GetRgba();
    for (const QPoint place : {QPoint(0, 0), QPoint(59, 49), QPoint(30, 20)}) {
        const Colour pixel = PixelOf(expected, {60, 50}, place);
        EXPECT_EQ(At(canvas, place.x() + 10, place.y() + 5),
                  (CanvasColour{static_cast<uint8_t>(pixel[0]), static_cast<uint8_t>(pixel[1]),
                                static_cast<uint8_t>(pixel[2]), 255}));
    }
    EXPECT_EQ(At(canvas, 9, 5), nothing);
    EXPECT_EQ(At(canvas, 70, 54), nothing);
}

TEST(Canvas, WhatHasNoPixelsDrawsNothing)
{
    CCanvas canvas({2, 2});
    canvas.DrawImage(CImage(), QPoint(0, 0), 1);
    canvas.DrawImage(CImage(), QRect(0, 0, 2, 2));
    canvas.DrawImage(Plain({2, 2}, {1, 1, 1, 255}), QRect(0, 0, -3, 2));
    canvas.DrawImage(Plain({2, 2}, {1, 1, 1, 255}), QRect(0, 0, 1 << 20, 1 << 20));
    EXPECT_EQ(Drawing(canvas, {{'.', nothing}}), (QStringList{QStringLiteral(".."), QStringLiteral("..")}));
}

TEST(PaintedImage, IsAsLargeAsItsPictureAndPaintedWhenAskedFor)
{
    int calls = 0;
    const CImage painted =
        Painted(Plain({6, 4}, {1, 2, 3, 255}), [&](CCanvas& canvas, const CImage& picture) {
            ++calls;
            canvas.DrawImage(picture, QPoint(0, 0), 1);
            canvas.FillRectangle({0, 0, 1, 1}, red);
        });
    EXPECT_EQ(painted.GetSize(), QSize(6, 4));
    EXPECT_EQ(calls, 0);
    const QByteArray rgba = painted.GetRgba();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(PixelOf(rgba, {6, 4}, {0, 0}), (Colour{200, 0, 0, 255}));
    EXPECT_EQ(PixelOf(rgba, {6, 4}, {5, 3}), (Colour{1, 2, 3, 255}));
}

TEST(PaintedImage, KeepsTransparencyAndDropsAnAlphaThatSaysNothing)
{
    const CScratchFolder folder;
    const QString path = folder.Path(QStringLiteral("a.png"));
    for (const bool isOpaque : {true, false}) {
        const CImage painted = Painted(Plain({4, 4}, {1, 2, 3, 255}), [=](CCanvas& canvas, const CImage&) {
            canvas.FillRectangle({0, 0, 4, isOpaque ? 4 : 3}, red);
        });
        ASSERT_EQ(painted.Save(path, {.format = ImageEncoding::Format::Png}).status,
                  ImageSaveResult::Status::Saved);
        constexpr int colourTypeAt = 25; // in IHDR: 2 is RGB, 6 is RGB with alpha
        EXPECT_EQ(folder.Read(QStringLiteral("a.png")).at(colourTypeAt), isOpaque ? 2 : 6);
        EXPECT_EQ(PixelOf(CImage::FromFile(path).GetRgba(), {4, 4}, {0, 3})[3], isOpaque ? 255 : 0);
    }
}

TEST(PaintedImage, OfAnUnreadablePictureKeepsItsReasonAndPaintsNothing)
{
    const CScratchFolder folder;
    const QByteArray jpeg = JpegOf({64, 48}, Waves);
    for (const QByteArray& bytes :
         {QByteArray("text"), QByteArray(), jpeg.left(jpeg.indexOf("\xff\xda") + 2)}) {
        const CImage painted = Painted(Opened(folder, bytes), [](CCanvas&, const CImage&) { ADD_FAILURE(); });
        EXPECT_TRUE(painted.GetRgba().isEmpty());
        EXPECT_EQ(painted.GetCondition().state, ImageCondition::State::NotDecodable);
        EXPECT_FALSE(painted.GetCondition().reason.isEmpty());
    }
}

TEST(PaintedImage, ADamagedPictureIsPaintedAsFarAsItGoesAndSaysSo)
{
    const CScratchFolder folder;
    const QByteArray jpeg = JpegOf({320, 240}, Detail);
    const CImage painted =
        Painted(Opened(folder, jpeg.left(jpeg.size() / 2)),
                [](CCanvas& canvas, const CImage&) { canvas.FillRectangle(canvas.GetArea(), red); });
    EXPECT_FALSE(painted.GetRgba().isEmpty());
    EXPECT_EQ(painted.GetCondition().state, ImageCondition::State::InPart);
}

TEST(PaintedImage, CanBeScaledTurnedAndPaintedAgain)
{
    const CImage first = Painted(Plain({40, 20}, {0, 0, 0, 255}), [](CCanvas& canvas, const CImage& picture) {
        canvas.DrawImage(picture, QPoint(0, 0), 1);
        canvas.FillRectangle({0, 0, 20, 20}, {255, 255, 255, 255});
    });
    const CImage second =
        Painted(first.Rotated(1).Resampled({10, 20}), [](CCanvas& canvas, const CImage& picture) {
            canvas.DrawImage(picture, QPoint(0, 0), 1);
            canvas.FillRectangle({0, 19, 10, 1}, red);
        });
    const QByteArray rgba = second.GetRgba();
    EXPECT_EQ(PixelOf(rgba, {10, 20}, {5, 2}), (Colour{255, 255, 255, 255}));
    EXPECT_EQ(PixelOf(rgba, {10, 20}, {5, 17}), (Colour{0, 0, 0, 255}));
    EXPECT_EQ(PixelOf(rgba, {10, 20}, {5, 19}), (Colour{200, 0, 0, 255}));
}
