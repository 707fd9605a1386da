#pragma once

#include <QRect>
#include <QSize>

#include "imaging/Pixels.h"

// Scales the picture in the window of pixels to size and returns area, a part of the result that lies inside
// it. Lanczos with three lobes where the picture gets smaller, bicubic (Catmull-Rom) where it gets larger;
// alpha is premultiplied meanwhile. Needs memory for a few rows beside source and result.
CPixels Resample(const CPixels& pixels, QSize size, const QRect& area);
