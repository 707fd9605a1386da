#include "effects/ImageEffectTextStamp.h"

#include "effects/FileNames.h"
#include "imaging/Canvas.h"

namespace {

enum FontStyleBit { BoldBit = 1, ItalicBit = 2, UnderlineBit = 4, StrikeoutBit = 8 };

CTextStampParams WithDefaults(const QString& text, int32_t position)
{
    CTextStampParams params;
    params.text = text;
    params.position = position;
    return params;
}

CanvasText CanvasTextOf(const CTextStampParams& params)
{
    return {.text = params.text,
            .family = params.font,
            .points = params.font_size,
            .bold = (params.font_style & BoldBit) != 0,
            .italic = (params.font_style & ItalicBit) != 0,
            .underline = (params.font_style & UnderlineBit) != 0,
            .strikeout = (params.font_style & StrikeoutBit) != 0};
}

// Odd on purpose: size and colour share their bits. Published names rely on it.
int32_t FontKey(const CTextStampParams& params)
{
    const uint32_t key = CharSum(params.font) + static_cast<uint32_t>(params.font_size) * 65536u +
                         params.color * 65536u + static_cast<uint32_t>(params.font_style) * 16777216u;
    return static_cast<int32_t>(key);
}

bool IsBright(const CCanvas& canvas, const QRect& rectangle)
{
    constexpr int pointCount = 5;
    const QRect visible = rectangle.intersected(canvas.GetArea());
    const QPoint step(visible.width() / pointCount, visible.height() / pointCount);
    int red = 0;
    int green = 0;
    int blue = 0;
    for (int i = 0; i < pointCount; ++i) {
        if (const auto pixel = canvas.GetPixel(visible.topLeft() + step * i)) {
            red += pixel->red;
            green += pixel->green;
            blue += pixel->blue;
        }
    }
    return (red / pointCount + green / pointCount + blue / pointCount) / 3 > 127;
}

} // namespace

CImageEffectTextStamp::CImageEffectTextStamp(const CTextStampParams& params)
    : CImageEffectStamp(QStringLiteral("t"), params.text), params(params)
{}

CImageEffectTextStamp::CImageEffectTextStamp(const QString& text, int32_t position)
    : CImageEffectTextStamp(WithDefaults(text, position))
{}

QString CImageEffectTextStamp::GetResultFileName(const QString& fileName) const
{
    return WithSuffix(CImageEffectStamp::GetResultFileName(fileName), QString::number(FontKey(params)));
}

QString CImageEffectTextStamp::GetKey() const
{
    const QString numbers = QStringLiteral("text %1 %2 %3 %4 %5 ")
                                .arg(params.position)
                                .arg(params.margin)
                                .arg(params.font_size)
                                .arg(params.font_style)
                                .arg(params.color);
    // The length keeps font and text apart, whatever stands in them.
    return numbers + QString::number(params.font.size()) + QLatin1Char(' ') + params.font + params.text;
}

QSize CImageEffectTextStamp::GetStampSize(const CCanvas& canvas) const
{
    return canvas.MeasureText(CanvasTextOf(params));
}

void CImageEffectTextStamp::DrawStamp(CCanvas& canvas, const QRect& rectangle) const
{
    canvas.DrawText(CanvasTextOf(params), rectangle, GetColour(canvas, rectangle));
}

CanvasColour CImageEffectTextStamp::GetColour(const CCanvas& canvas, const QRect& rectangle) const
{
    if (params.color == 0) {
        return IsBright(canvas, rectangle) ? CanvasColour{0, 0, 0, 255} : CanvasColour{255, 255, 255, 255};
    }
    return {static_cast<uint8_t>(params.color & 0xff), static_cast<uint8_t>(params.color >> 8 & 0xff),
            static_cast<uint8_t>(params.color >> 16 & 0xff), 255};
}

std::shared_ptr<const CImageEffectStamp> CImageEffectTextStamp::Copy() const
{
    return std::make_shared<const CImageEffectTextStamp>(*this);
}
