#include "imaging/Canvas.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "imaging/ImageNodes.h"

namespace {

// "Over" of Porter and Duff, for colours that are not premultiplied. colour: three bytes. alpha: 0 to 255.
void Blend(uint8_t* target, const uint8_t* colour, int alpha)
{
    const int below = target[3] * (255 - alpha);
    const int total = alpha * 255 + below;
    if (total == 0) {
        return;
    }
    for (int c = 0; c < 3; ++c) {
        target[c] = static_cast<uint8_t>((colour[c] * alpha * 255 + target[c] * below + total / 2) / total);
    }
    target[3] = static_cast<uint8_t>((total + 127) / 255);
}

class CPaintedNode final : public CDerivedNode {
public:
    CPaintedNode(Parent picture, Painting painting)
        : CDerivedNode(picture->GetSize(), picture), painting(std::move(painting))
    {
        parent->Announce(1);
    }

    CPixels Evaluate(double) const override
    {
        const CImage picture(std::make_shared<const CPixelsNode>(parent->Evaluate(1)));
        CCanvas canvas(GetSize());
        painting(canvas, picture);
        return canvas.TakePixels();
    }

private:
    const Painting painting;
};

} // namespace

CCanvas::CCanvas(QSize size) : size(size), bytes(static_cast<size_t>(size.width()) * size.height() * 4, 255)
{
    for (size_t alpha = 3; alpha < bytes.size(); alpha += 4) {
        bytes[alpha] = 0;
    }
}

uint8_t* CCanvas::GetPixelBytes(int x, int y)
{
    return &bytes[(static_cast<size_t>(y) * static_cast<size_t>(size.width()) + static_cast<size_t>(x)) * 4];
}

void CCanvas::FillRectangle(const QRect& area, const CanvasColour& colour)
{
    if (area.isEmpty()) {
        return;
    }
    const std::array<uint8_t, 3> rgb{colour.red, colour.green, colour.blue};
    const QRect visible = area.intersected(GetArea());
    for (int y = visible.top(); y <= visible.bottom(); ++y) {
        for (int x = visible.left(); x <= visible.right(); ++x) {
            Blend(GetPixelBytes(x, y), rgb.data(), colour.alpha);
        }
    }
}

void CCanvas::DrawRectangle(const QRect& area, const CanvasColour& colour)
{
    if (area.isEmpty()) {
        return;
    }
    const int right = area.x() + area.width();
    const int bottom = area.y() + area.height();
    FillRectangle(QRect(area.x(), area.y(), area.width() + 1, 1), colour);
    FillRectangle(QRect(area.x(), bottom, area.width() + 1, 1), colour);
    // No corner is painted twice: the colour may be translucent.
    FillRectangle(QRect(area.x(), area.y() + 1, 1, area.height() - 1), colour);
    FillRectangle(QRect(right, area.y() + 1, 1, area.height() - 1), colour);
}

void CCanvas::DrawImage(const CImage& image, const QRect& area)
{
    DrawImage(image.Resampled(area.size()), area.topLeft(), 1);
}

void CCanvas::DrawImage(const CImage& image, QPoint place, double opacity)
{
    try {
        Lay(image.GetNode()->Evaluate(1), place, opacity);
    } catch (const CNoPixelsException&) {
        // A watermark that can't be read must not cost the picture.
    }
}

void CCanvas::Lay(const CPixels& pixels, QPoint place, double opacity)
{
    const QRect visible = QRect(place, pixels.size).intersected(GetArea());
    const double factor = std::clamp(opacity, 0.0, 1.0);
    std::array<uint8_t, 256> alphas;
    for (size_t alpha = 0; alpha < alphas.size(); ++alpha) {
        alphas[alpha] = static_cast<uint8_t>(std::lround(static_cast<double>(alpha) * factor));
    }
    for (int y = visible.top(); y <= visible.bottom(); ++y) {
        const uint8_t* source = pixels.GetRow(y - place.y()) +
                                static_cast<ptrdiff_t>(visible.left() - place.x()) * pixels.channels;
        for (int x = visible.left(); x <= visible.right(); ++x, source += pixels.channels) {
            Blend(GetPixelBytes(x, y), source, alphas[pixels.channels == 4 ? source[3] : 255]);
        }
    }
}

QSize CCanvas::MeasureText(const CanvasText& text) const
{
    return MeasureLayout(text, size.width());
}

void CCanvas::DrawText(const CanvasText& text, const QRect& box, const CanvasColour& colour)
{
    // Some letters reach beyond their box, italic ones above all.
    const int reach = std::clamp(text.points, 0, 1000) * 2;
    const QRect area = box.adjusted(-reach, -reach, reach, reach).intersected(GetArea());
    if (!box.isEmpty() && !area.isEmpty()) {
        const CPixels pixels =
            RenderLayout(text, {.width = box.width(), .area = area.translated(-box.topLeft())}, colour);
        Lay(pixels, area.topLeft(), 1);
    }
}

std::optional<CanvasColour> CCanvas::GetPixel(QPoint place) const
{
    if (!GetArea().contains(place)) {
        return std::nullopt;
    }
    const size_t at = (static_cast<size_t>(place.y()) * static_cast<size_t>(size.width()) +
                       static_cast<size_t>(place.x())) *
                      4;
    return CanvasColour{bytes[at], bytes[at + 1], bytes[at + 2], bytes[at + 3]};
}

CPixels CCanvas::TakePixels()
{
    bool isOpaque = true;
    for (size_t alpha = 3; alpha < bytes.size() && isOpaque; alpha += 4) {
        isOpaque = bytes[alpha] == 255;
    }
    const CPixels pixels = MakePixels(size, 4, std::exchange(bytes, {}));
    size = QSize(0, 0);
    return isOpaque ? Flattened(pixels, 255) : pixels;
}

CImage Painted(const CImage& picture, Painting painting)
{
    if (picture.GetSize().isEmpty()) {
        return picture;
    }
    return CImage(std::make_shared<const CPaintedNode>(picture.GetNode(), std::move(painting)));
}
