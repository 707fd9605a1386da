#include <cmath>
#include <numbers>

#include <QFile>

#include "SampleFiles.h"

namespace {

using State = ImageCondition::State;

CImage Painted(QSize size, const Painter& painter)
{
    return CImage::FromRgba(size, Paint(size, painter));
}

double Lanczos(double x)
{
    const double angle = std::numbers::pi * x;
    return x == 0 ? 1 : std::abs(x) >= 3 ? 0 : 3 * std::sin(angle) * std::sin(angle / 3) / (angle * angle);
}

// One row of grey values reduced by the formula.
std::vector<double> ReducedRow(const std::vector<int>& row, int count)
{
    std::vector<double> result;
    const double ratio = static_cast<double>(row.size()) / count;
    for (int i = 0; i < count; ++i) {
        double sum = 0;
        double weights = 0;
        for (size_t x = 0; x < row.size(); ++x) {
            const double weight = Lanczos((static_cast<double>(x) + 0.5 - (i + 0.5) * ratio) / ratio);
            sum += weight * row[x];
            weights += weight;
        }
        result.push_back(std::clamp(sum / weights, 0.0, 255.0));
    }
    return result;
}

} // namespace

TEST(ImageResample, ReducesByLanczosWithThreeLobes)
{
    std::vector<int> row;
    for (int x = 0; x < 61; ++x) {
        row.push_back(x * 37 % 256);
    }
    const CImage image = Painted({61, 9}, [&row](int x, int) { return Colour{row[x], row[x], 7, 255}; });
    for (const int count : {1, 2, 7, 20, 31, 60}) {
        const QByteArray rgba = image.Resampled({count, 4}).GetRgba();
        const std::vector<double> expected = ReducedRow(row, count);
        for (int i = 0; i < count; ++i) {
            EXPECT_NEAR(PixelOf(rgba, {count, 4}, {i, 2})[0], expected[i], 1.0) << count << " " << i;
            EXPECT_EQ(PixelOf(rgba, {count, 4}, {i, 2})[2], 7);
        }
    }
}

TEST(ImageResample, AnEvenSurfaceStaysEvenAtAnySize)
{
    const CImage image = Painted({33, 21}, [](int, int) { return Colour{207, 3, 128, 255}; });
    for (const QSize size : {QSize(1, 1), QSize(500, 2), QSize(5, 300), QSize(34, 20), QSize(33, 21)}) {
        EXPECT_EQ(image.Resampled(size).GetRgba(), Paint(size, [](int, int) {
                      return Colour{207, 3, 128, 255};
                  }));
    }
}

TEST(ImageResample, EnlargesSmoothly)
{
    const CImage image = Painted({60, 40}, Waves);
    const QByteArray enlarged = image.Resampled({240, 160}).GetRgba();
    const QByteArray expected = Paint({240, 160}, [](int x, int y) {
        const auto at = [](int i) {
            return (i + 0.5) / 4 - 0.5;
        };
        return Colour{static_cast<int>(std::lround(128 + 90 * std::sin(at(x) / 17.0))),
                      static_cast<int>(std::lround(128 + 90 * std::cos(at(y) / 23.0))),
                      static_cast<int>(std::lround(128 + 90 * std::sin((at(x) + at(y)) / 31.0))), 255};
    });
    EXPECT_LT(MeanError(enlarged, expected), 1.0);
}

TEST(ImageResample, TransparentPixelsLendNoColour)
{
    // Green that can't be seen beside red that can.
    const CImage image = Painted({40, 40}, [](int x, int) {
        return x < 20 ? Colour{255, 0, 0, 255} : Colour{0, 255, 0, 0};
    });
    const QByteArray rgba = image.Resampled({9, 9}).GetRgba();
    for (int x = 0; x < 9; ++x) {
        EXPECT_EQ(PixelOf(rgba, {9, 9}, {x, 4})[1], 0) << x;
    }
    EXPECT_EQ(PixelOf(rgba, {9, 9}, {0, 4}), (Colour{255, 0, 0, 255}));
    EXPECT_EQ(PixelOf(rgba, {9, 9}, {8, 4})[3], 0);
}

TEST(ImageResample, OfTheOwnSizeItKeepsThePixels)
{
    const CImage image = Painted({50, 30}, Detail);
    EXPECT_EQ(image.Resampled({50, 30}).GetRgba(), Paint({50, 30}, Detail));
}

TEST(ImageResample, CropsAroundTheMiddle)
{
    const CImage image = Painted({100, 60}, Waves);
    const QByteArray whole = image.Resampled({50, 30}).GetRgba();
    const struct {
        QSize box;
        QPoint offset; // of the box in the scaled picture
    } rows[] = {
        {{20, 30}, {15, 0}}, {{50, 11}, {0, 9}}, {{21, 29}, {14, 0}}, {{1, 1}, {24, 14}}, {{50, 30}, {0, 0}},
    };
    for (const auto& row : rows) {
        const CImage cropped = image.ResampledAndCropped({50, 30}, row.box);
        EXPECT_EQ(cropped.GetSize(), row.box);
        EXPECT_EQ(cropped.GetRgba(), Paint(row.box, [&](int x, int y) {
                      return PixelOf(whole, {50, 30}, row.offset + QPoint(x, y));
                  }));
    }
}

TEST(ImageResample, ABoxLargerThanThePictureIsTransparentAround)
{
    const CImage image = Painted({10, 10}, [](int, int) { return Colour{1, 2, 3, 255}; });
    const QByteArray rgba = image.ResampledAndCropped({10, 10}, {13, 12}).GetRgba();
    EXPECT_EQ(rgba, Paint({13, 12}, [](int x, int y) {
                  return x >= 1 && x < 11 && y >= 1 && y < 11 ? Colour{1, 2, 3, 255} : Colour{0, 0, 0, 0};
              }));
}

TEST(ImageResample, ACardIsGreyAroundThePicture)
{
    const CImage image = Painted({10, 10}, [](int, int) { return Colour{10, 20, 30, 255}; });
    const QByteArray rgba = image.OnCard({5, 5}, {12, 9}).GetRgba();
    EXPECT_EQ(
        rgba, Paint({12, 9}, [](int x, int y) {
            return x >= 3 && x < 8 && y >= 2 && y < 7 ? Colour{10, 20, 30, 255} : Colour{207, 207, 207, 255};
        }));
}

TEST(ImageResample, WhatIsTransparentShowsTheCard)
{
    const CImage image = Painted({10, 10}, [](int, int) { return Colour{0, 0, 0, 51}; });
    const QByteArray rgba = image.OnCard({10, 10}, {10, 10}).GetRgba();
    EXPECT_EQ(PixelOf(rgba, {10, 10}, {5, 5}), (Colour{166, 166, 166, 255})); // four fifths of 207
    EXPECT_EQ(PixelOf(CImage::Blank({3, 3}).OnCard({3, 3}, {3, 3}).GetRgba(), {3, 3}, {1, 1}),
              (Colour{207, 207, 207, 255}));
}

TEST(ImageResample, TurnsByQuarters)
{
    const QSize size(7, 4);
    const CImage image = Painted(size, [](int x, int y) { return Colour{x, y, 0, 255}; });
    const QByteArray right = image.Rotated(1).GetRgba();
    EXPECT_EQ(image.Rotated(1).GetSize(), QSize(4, 7));
    EXPECT_EQ(right, Paint({4, 7}, [](int x, int y) { return Colour{y, 3 - x, 0, 255}; }));
    EXPECT_EQ(image.Rotated(2).GetRgba(), Paint(size, [](int x, int y) {
                  return Colour{6 - x, 3 - y, 0, 255};
              }));
    EXPECT_EQ(image.Rotated(3).GetRgba(), Paint({4, 7}, [](int x, int y) {
                  return Colour{6 - y, x, 0, 255};
              }));
    EXPECT_EQ(image.Rotated(-1).GetRgba(), image.Rotated(3).GetRgba());
    EXPECT_EQ(image.Rotated(2147483647).GetRgba(), image.Rotated(3).GetRgba());
    EXPECT_EQ(image.Rotated(-2147483647 - 1).GetRgba(), image.GetRgba());
    EXPECT_TRUE(image.Rotated(4).IsSameAs(image));
}

TEST(ImageResample, ABlankIsWhiteAtAlphaZero)
{
    EXPECT_EQ(CImage::Blank({3, 2}).GetRgba(), Paint({3, 2}, [](int, int) {
                  return Colour{255, 255, 255, 0};
              }));
}

TEST(ImageResample, SizesThatCantBeDrawnGiveNoPixelsAndSayWhy)
{
    const CImage image = Painted({10, 10}, Waves);
    for (const QSize size :
         {QSize(0, 0), QSize(0, 5), QSize(5, 0), QSize(-3, 5), QSize(-1, -1), QSize(2147483647, 2147483647),
          QSize(2147483647, 1), QSize(-2147483647 - 1, 4)}) {
        for (const CImage& result :
             {image.Resampled(size), image.ResampledAndCropped({10, 10}, size), image.OnCard(size, {5, 5}),
              image.OnCard({5, 5}, size), CImage::Blank(size), image.Resampled(size).Rotated(1),
              image.Resampled(size).Resampled({4, 4})}) {
            EXPECT_TRUE(result.GetRgba().isEmpty());
            EXPECT_EQ(result.GetCondition().state, State::NotDecodable);
            EXPECT_TRUE(result.GetCondition().reason.contains(QStringLiteral("can't be made")));
        }
    }
}

TEST(ImageResample, AHugeScaledSizeIsNoMatterWhenTheBoxIsSmall)
{
    const CImage image = Painted({10, 10}, [](int, int) { return Colour{9, 9, 9, 255}; });
    EXPECT_EQ(PixelOf(image.ResampledAndCropped({2000000, 2000000}, {3, 3}).GetRgba(), {3, 3}, {1, 1}),
              (Colour{9, 9, 9, 255}));
}

TEST(ImageResample, WithoutAPictureThereIsNone)
{
    const CImage none;
    EXPECT_EQ(none.GetSize(), QSize(0, 0));
    for (const CImage& result :
         {none, none.Resampled({5, 5}), none.ResampledAndCropped({5, 5}, {3, 3}), none.OnCard({5, 5}, {9, 9}),
          none.Rotated(1), CImage::FromRgba({4, 4}, "short")}) {
        EXPECT_TRUE(result.GetRgba().isEmpty());
        EXPECT_EQ(result.GetCondition().state, State::NotDecodable);
    }
}

TEST(ImageResample, TheDecodersScaleKeepsTheQuality)
{
    // Sizes that don't divide by 8, and targets just below and just above each step of the decoder.
    const CScratchFolder folder;
    const QSize full(1203, 907);
    for (const bool subsampled : {false, true}) {
        const QString path = folder.Write(QStringLiteral("detail.jpg"),
                                          JpegOf(full, Grain, {.quality = 92, .subsampled = subsampled}));
        const CImage decoded = CImage::FromRgba(full, CImage::FromFile(path).GetRgba());
        for (const int width : {481, 300, 240, 150, 120, 60}) {
            const QSize size(width, width * 907 / 1203);
            const double quality =
                Psnr(CImage::FromFile(path).Resampled(size).GetRgba(), decoded.Resampled(size).GetRgba());
            EXPECT_GT(quality, 41.0) << width << (subsampled ? " subsampled" : "");
        }
    }
}

TEST(ImageResample, TheDecodersScaleKeepsEveryPlaceUnderOrientationAndTurns)
{
    const CScratchFolder folder;
    const QSize full(403, 305);
    const QByteArray jpeg = JpegOf(full, Detail);
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const QString path = folder.Write(QStringLiteral("o.jpg"),
                                          WithSegment(jpeg, 0xe1, ExifOrientation(orientation, true)));
        for (const int turns : {0, 1, 2, 3}) {
            const CImage file = CImage::FromFile(path).Rotated(turns);
            const CImage decoded = CImage::FromRgba(file.GetSize(), file.GetRgba());
            const CImage fresh = CImage::FromFile(path).Rotated(turns);
            for (const int part : {5, 10}) {
                const QSize size = file.GetSize() / part;
                EXPECT_GT(Psnr(fresh.Resampled(size).GetRgba(), decoded.Resampled(size).GetRgba()), 41.0)
                    << orientation << " " << turns << " " << part;
            }
        }
    }
}

TEST(ImageResample, AFileIsDecodedOnceForAllThatWasDerivedBefore)
{
    const CScratchFolder folder;
    const QSize full(800, 600);
    const CImage source = Opened(folder, JpegOf(full, Detail));
    const CImage small = source.Resampled({40, 30});
    const CImage large = source.Rotated(1).Resampled({120, 160});
    const CImage card = source.OnCard({80, 60}, {100, 75});
    EXPECT_FALSE(small.GetRgba().isEmpty());
    ASSERT_TRUE(QFile::remove(folder.Path(QStringLiteral("picture.jpg"))));
    EXPECT_FALSE(large.GetRgba().isEmpty());
    EXPECT_FALSE(card.GetRgba().isEmpty());
    EXPECT_EQ(source.GetCondition().state, State::Whole);
    // More than anybody announced: the file is needed again.
    EXPECT_TRUE(source.GetRgba().isEmpty());
    EXPECT_EQ(source.GetCondition().state, State::NotDecodable);
}

TEST(ImageResample, ALargerNeedThatComesLaterIsServedInFull)
{
    const CScratchFolder folder;
    const QSize full(800, 600);
    const CImage source = Opened(folder, JpegOf(full, Detail));
    EXPECT_FALSE(source.Resampled({40, 30}).GetRgba().isEmpty());
    const CImage fresh = CImage::FromFile(folder.Path(QStringLiteral("picture.jpg")));
    EXPECT_EQ(source.GetRgba(), fresh.GetRgba());
}

TEST(ImageResample, AnAnnouncedFullSizeIsDecodedAtFirst)
{
    const CScratchFolder folder;
    const CImage source = Opened(folder, JpegOf({800, 600}, Detail));
    source.Rotated(1).AnnounceFullSize();
    EXPECT_FALSE(source.Resampled({40, 30}).GetRgba().isEmpty());
    ASSERT_TRUE(QFile::remove(folder.Path(QStringLiteral("picture.jpg"))));
    EXPECT_FALSE(source.GetRgba().isEmpty());
}
