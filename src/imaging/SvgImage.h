#pragma once

#include <vector>

#include <QByteArray>

#include "imaging/Image.h"

// The program's own artwork as pictures. Any thread.

// A drawing (SVG 1.1) at so many times its own size in pixels. A picture of 0 by 0 for bytes that are none.
CImage RenderSvg(const QByteArray& svg, double scale);

// Pictures beside each other, unscaled, from left to right, as high as the first one. Pictures without pixels
// take no room.
CImage SideBySide(const std::vector<CImage>& pictures);
