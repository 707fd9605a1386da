#include "effects/ImageEffectTextStamp.h"

#include <cstring>

#include "TestPictures.h"
#include "effects/ImageEffectSource.h"
#include "imaging/Canvas.h"

namespace {

constexpr CanvasColour blackText{0, 0, 0, 255};
constexpr CanvasColour whiteText{255, 255, 255, 255};

CTextStampParams Signature(const QString& text)
{
    CTextStampParams params;
    params.text = text;
    params.font = QStringLiteral("sans-serif");
    params.font_size = 20;
    return params;
}

CImage Applied(const CTextStampParams& params, const CImage& image)
{
    CImageEffectSource source(image);
    CImageEffectTextStamp(params).Apply(source);
    return source.GetImage();
}

// Around all pixels that differ from the picture's.
QRect Changed(const CImage& picture, const CImage& stamped)
{
    const QByteArray before = picture.GetRgba();
    const QByteArray after = stamped.GetRgba();
    const int width = picture.GetSize().width();
    EXPECT_EQ(before.size(), after.size());
    QRect changed;
    for (int pixel = 0; pixel < before.size() / 4; ++pixel) {
        if (std::memcmp(before.data() + pixel * 4, after.data() + pixel * 4, 4) != 0) {
            changed |= QRect(pixel % width, pixel / width, 1, 1);
        }
    }
    return changed;
}

bool Has(const CImage& image, const Colour& colour)
{
    QByteArray wanted;
    for (const int value : colour) {
        wanted += static_cast<char>(value);
    }
    const QByteArray rgba = image.GetRgba();
    for (int pixel = 0; pixel < rgba.size() / 4; ++pixel) {
        if (std::memcmp(rgba.data() + pixel * 4, wanted.data(), 4) == 0) {
            return true;
        }
    }
    return false;
}

} // namespace

TEST(ImageEffectTextStamp, LiesWhereItsRectangleIs)
{
    const CImage picture = Plain({300, 200}, {20, 20, 20, 255});
    for (const int32_t position : {0, 1, 2, 4, 5, 6, 8, 9, 10}) {
        CTextStampParams params = Signature(QStringLiteral("by Anna"));
        params.position = position;
        params.margin = 12;
        const QRect rectangle = CImageEffectTextStamp(params).GetStampRect(CCanvas(picture.GetSize()));
        const QRect changed = Changed(picture, Applied(params, picture));
        EXPECT_TRUE(rectangle.adjusted(-3, -1, 3, 1).contains(changed)) << position;
        EXPECT_GT(changed.width(), 50) << position;
        EXPECT_EQ(changed.center().x() < 140, (position & 1) != 0) << position;
        EXPECT_EQ(changed.center().x() > 160, (position & 2) != 0) << position;
        EXPECT_EQ(changed.center().y() < 80, (position & 4) != 0) << position;
        EXPECT_EQ(changed.center().y() > 120, (position & 8) != 0) << position;
    }
}

TEST(ImageEffectTextStamp, ColourIsRedInTheLowByte)
{
    CTextStampParams params = Signature(QStringLiteral("MMM"));
    params.color = 0x112233;
    EXPECT_TRUE(Has(Applied(params, Plain({200, 100}, {250, 250, 250, 255})), {0x33, 0x22, 0x11, 255}));
    // The high byte is no alpha: a text is opaque.
    params.color = 0x80112233;
    EXPECT_TRUE(Has(Applied(params, Plain({200, 100}, {250, 250, 250, 255})), {0x33, 0x22, 0x11, 255}));
    params.color = 1;
    EXPECT_TRUE(Has(Applied(params, Plain({200, 100}, {20, 20, 20, 255})), {1, 0, 0, 255}));
}

TEST(ImageEffectTextStamp, WithoutAColourItIsBlackOnBrightAndWhiteOnDark)
{
    const CTextStampParams params = Signature(QStringLiteral("MMM"));
    EXPECT_TRUE(Has(Applied(params, Plain({200, 100}, {250, 250, 250, 255})), {0, 0, 0, 255}));
    EXPECT_TRUE(Has(Applied(params, Plain({200, 100}, {20, 20, 20, 255})), {255, 255, 255, 255}));
}

TEST(ImageEffectTextStamp, ContrastTruncatesEachStep)
{
    const CImageEffectTextStamp stamp(Signature(QStringLiteral("M")));
    const struct {
        CanvasColour picture;
        CanvasColour expected;
    } rows[] = {
        {{127, 127, 127, 255}, whiteText}, {{128, 128, 128, 255}, blackText},
        {{255, 127, 1, 255}, whiteText}, // a sum of 383 is 127 and two thirds
        {{255, 128, 1, 255}, blackText},   {{255, 0, 0, 255}, whiteText},
        {{0, 255, 255, 255}, blackText},
    };
    for (const auto& row : rows) {
        CCanvas canvas({50, 50});
        canvas.FillRectangle(canvas.GetArea(), row.picture);
        EXPECT_EQ(stamp.GetColour(canvas, QRect(10, 10, 21, 11)), row.expected)
            << int{row.picture.red} << " " << int{row.picture.green};
    }
}

TEST(ImageEffectTextStamp, FivePointsOfItsRectangleDecide)
{
    const CImageEffectTextStamp stamp(Signature(QStringLiteral("M")));
    CCanvas canvas({100, 100});
    canvas.FillRectangle(canvas.GetArea(), blackText);
    // Steps of 52 / 5 and 27 / 5, truncated, from the top left corner on.
    const QRect rectangle(10, 20, 52, 27);
    const QPoint points[] = {{10, 20}, {20, 25}, {30, 30}, {40, 35}, {50, 40}};
    for (int i = 0; i < 5; ++i) {
        // Three white points of five are a mean of 153, two one of 102.
        EXPECT_EQ(stamp.GetColour(canvas, rectangle), i < 3 ? whiteText : blackText) << i;
        canvas.FillRectangle(QRect(points[i], QSize(1, 1)), whiteText);
    }
}

TEST(ImageEffectTextStamp, TheVisiblePartOfTheRectangleDecides)
{
    const CImageEffectTextStamp stamp(Signature(QStringLiteral("M")));
    CCanvas canvas({100, 100});
    canvas.FillRectangle(canvas.GetArea(), blackText);
    // Visible are 50 by 50 from 0, 0 on: the points lie at 0, 10, 20, 30 and 40.
    for (const int place : {0, 10, 20}) {
        EXPECT_EQ(stamp.GetColour(canvas, QRect(-50, -50, 100, 100)), whiteText);
        canvas.FillRectangle(QRect(place, place, 1, 1), whiteText);
    }
    EXPECT_EQ(stamp.GetColour(canvas, QRect(-50, -50, 100, 100)), blackText);
    // A rectangle outside has no points of its own and draws nothing either.
    stamp.GetColour(canvas, QRect(500, 500, 10, 10));
}

TEST(ImageEffectTextStamp, IsWrappedWhereItIsWiderThanThePicture)
{
    const CImageEffectTextStamp stamp(Signature(QStringLiteral("a rather long signature of Anna")));
    const QSize oneLine = stamp.GetStampSize(CCanvas({2000, 10}));
    const QSize wrapped = stamp.GetStampSize(CCanvas({150, 10}));
    EXPECT_LE(wrapped.width(), 150);
    EXPECT_GE(wrapped.height(), oneLine.height() * 2);
    const CImage picture = Plain({150, 200}, {0, 0, 0, 255});
    const QRect changed =
        Changed(picture, Applied(Signature(QStringLiteral("a rather long signature of Anna")), picture));
    EXPECT_GT(changed.height(), oneLine.height());
}

TEST(ImageEffectTextStamp, SizeIsInPointsAndStyleInBits)
{
    const auto sizeOf = [](int32_t points, int32_t style) {
        CTextStampParams params = Signature(QStringLiteral("Illinois"));
        params.font_size = points;
        params.font_style = style;
        return CImageEffectTextStamp(params).GetStampSize(CCanvas({2000, 10}));
    };
    EXPECT_GT(sizeOf(40, 0).height(), sizeOf(20, 0).height() * 18 / 10);
    EXPECT_GT(sizeOf(20, 1).width(), sizeOf(20, 0).width()); // bold
    const CImage picture = Plain({300, 100}, {0, 0, 0, 255});
    const auto changedBy = [&](int32_t style) {
        CTextStampParams params = Signature(QStringLiteral("Illinois"));
        params.font_style = style;
        return Applied(params, picture).GetRgba();
    };
    std::vector<QByteArray> seen;
    for (const int32_t style : {0, 1, 2, 4, 8, 15}) {
        for (const QByteArray& other : seen) {
            EXPECT_NE(changedBy(style), other) << style;
        }
        seen.push_back(changedBy(style));
    }
    EXPECT_EQ(changedBy(16), changedBy(0));
}

TEST(ImageEffectTextStamp, TheSecondConstructorKeepsTheDefaults)
{
    const CImageEffectTextStamp stamp(QStringLiteral("2026"), 8);
    EXPECT_EQ(stamp.GetStampParams(), (CStampParams{.position = 8, .margin = 10}));
    CTextStampParams params;
    params.text = QStringLiteral("2026");
    EXPECT_EQ(stamp.GetStampSize(CCanvas({500, 10})),
              CImageEffectTextStamp(params).GetStampSize(CCanvas({500, 10})));
}

TEST(ImageEffectTextStamp, BadParametersLeaveAPictureAllTheSame)
{
    const CImage picture = Plain({60, 40}, {90, 90, 90, 255});
    const auto applied = [&](const std::function<void(CTextStampParams&)>& change) {
        CTextStampParams params = Signature(QStringLiteral("abc"));
        change(params);
        const QByteArray rgba = Applied(params, picture).GetRgba();
        EXPECT_EQ(rgba.size(), 60 * 40 * 4);
        return rgba;
    };
    const QByteArray untouched = picture.GetRgba();
    EXPECT_EQ(applied([](auto& params) { params.font_size = 0; }), untouched);
    EXPECT_EQ(applied([](auto& params) { params.font_size = -2147483647 - 1; }), untouched);
    EXPECT_EQ(applied([](auto& params) {
                  params.margin = 5000;
                  params.position = 5;
              }),
              untouched);
    EXPECT_EQ(applied([](auto& params) {
                  params.margin = 5000;
                  params.position = 10;
              }),
              untouched);
    EXPECT_EQ(applied([](auto& params) { params.text = QString(); }), untouched);
    EXPECT_NE(applied([](auto& params) { params.font = QStringLiteral("No Such Font"); }), untouched);
    EXPECT_NE(applied([](auto& params) { params.font_style = -1; }), untouched);
    applied([](auto& params) { params.font_size = 2147483647; });
    applied([](auto& params) { params.margin = 2147483647; });
    applied([](auto& params) { params.text = QStringLiteral("words ").repeated(1700); });
    applied([](auto& params) { params.text = QString(2000, QLatin1Char('x')); });
    applied([](auto& params) {
        params.text = QString(10000, QLatin1Char('\n'));
        params.position = 10;
    });
}
