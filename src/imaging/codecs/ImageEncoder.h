#pragma once

#include <QByteArray>

#include "imaging/pixels/Pixels.h"

// How a picture is written. No format carries metadata or a profile.
struct ImageEncoding {
    enum class Format { Jpeg, Png, Bmp };
    Format format = Format::Jpeg;
    int quality = 100; // of a JPEG: 1 to 100; from 90 on, colours are as fine as brightness
};

// The bytes of a file. A JPEG is flattened on white. Thread-safe. Throws std::bad_alloc, and
// CNoPixelsException if the format can't hold the picture.
QByteArray EncodeImage(const CPixels& pixels, const ImageEncoding& encoding);
