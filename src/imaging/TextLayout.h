#pragma once

#include <cstdint>

#include <QRect>
#include <QSize>
#include <QString>

#include "imaging/pixels/Pixels.h"

// A text and its font. A family that isn't installed gives way to the system's sans serif.
struct CanvasText {
    QString text;
    QString family;
    int32_t points = 8; // 1/72 inch, of which 96 pixels make one; below 1 there is no text
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeout = false;
};

// Texts in lines, by Pango. Thread-safe: Pango's fonts belong to one thread each.

// The size in pixels, truncated, of the text wrapped at width. 0 by 0 for a font size below 1.
QSize MeasureLayout(const CanvasText& text, int width);

struct LayoutPart {
    int width;  // pixels: lines are centred in it and wrapped at it
    QRect area; // what of it is wanted, from the layout's top left corner; may reach beyond it
};

// The area in the text's colour on nothing. At most 32767 pixels wide and high, Cairo's limit: what lies
// beyond, to the right and below, stays without text.
CPixels RenderLayout(const CanvasText& text, const LayoutPart& part, const CanvasColour& colour);
