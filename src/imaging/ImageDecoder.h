#pragma once

#include <QSize>
#include <QString>

#include "imaging/Image.h"
#include "imaging/Pixels.h"

// Reading of picture files: JPEG, PNG, GIF (first frame), BMP, PCX, TIFF and WebP, told apart by their first
// bytes, never by their names. Thread-safe; no state is kept between calls.

struct ImageHeader {
    QSize size;          // as stored, before the orientation is undone
    int orientation = 1; // EXIF, tag 0x0112
    bool canShrink = false;
};

// Throws CNoPixelsException.
ImageHeader ReadImageHeader(const QString& path);

struct DecodedImage {
    CPixels pixels; // upright
    ImageCondition condition;
};

// shrink: 1, 2, 4 or 8; other than 1 only if the header says so. Throws CNoPixelsException.
DecodedImage DecodeImage(const QString& path, const ImageHeader& header, int shrink);
