#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include <QPoint>
#include <QRect>

#include "imaging/Image.h"
#include "imaging/TextLayout.h"
#include "imaging/pixels/Pixels.h"

// What a picture is painted on: pixels of 8-bit sRGB with alpha, white at alpha 0 at first. Lives on one
// thread's stack while a painted picture is computed; several threads may each use one. Coordinates are
// pixels from the top left corner; what lies outside is cut off.
class CCanvas {
public:
    // size: can be computed, see IsComputable.
    explicit CCanvas(QSize size);

    QSize GetSize() const { return size; }
    QRect GetArea() const { return {QPoint(0, 0), size}; }

    // An empty or negative area draws nothing.
    void FillRectangle(const QRect& area, const CanvasColour& colour);

    // Lines one pixel wide through the corners. They lie on the far side of the area's right and bottom
    // edges, so that the outline is one pixel wider and higher than the filled area.
    void DrawRectangle(const QRect& area, const CanvasColour& colour);

    // Scaled to the area, its proportions not kept. A picture without pixels draws nothing.
    void DrawImage(const CImage& image, const QRect& area);

    // Unscaled, with its top left corner at the place. opacity: 0 to 1.
    void DrawImage(const CImage& image, QPoint place, double opacity);

    // The size of the text in pixels, truncated; wrapped where it is wider than the canvas.
    QSize MeasureText(const CanvasText& text) const;

    // Anti-aliased; each line centred in the box and wrapped at its width. Cut off well outside the box, so
    // that letters may hang over. alpha is not used: a text is opaque.
    void DrawText(const CanvasText& text, const QRect& box, const CanvasColour& colour);

    // Nothing for a place outside.
    std::optional<CanvasColour> GetPixel(QPoint place) const;

    // Leaves the canvas empty. Without alpha if everything is opaque.
    CPixels TakePixels();

private:
    void Lay(const CPixels& pixels, QPoint place, double opacity);
    uint8_t* GetPixelBytes(int x, int y);

    QSize size;
    std::vector<uint8_t> bytes; // red, green, blue, alpha
};

// Paints what becomes of a picture onto a canvas of the picture's size. Called when pixels are asked for, on
// any thread and on several at once, perhaps long after it was handed over: it owns what it needs. picture
// has its pixels already.
using Painting = std::function<void(CCanvas& canvas, const CImage& picture)>;

// The picture repainted, in its own size. Nothing is painted of a picture that has no pixels.
CImage Painted(const CImage& picture, Painting painting);
