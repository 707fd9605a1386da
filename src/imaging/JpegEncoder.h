#pragma once

#include <QByteArray>

#include "imaging/Pixels.h"

// The bytes of a JPEG file: baseline, without metadata; from quality 90 on, colours are as fine as
// brightness. pixels: three channels. quality: 1 to 100. Thread-safe. Throws std::bad_alloc, and
// CNoPixelsException for a size that JPEG can't hold.
QByteArray EncodeJpeg(const CPixels& pixels, int quality);
