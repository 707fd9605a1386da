#pragma once

#include <QByteArray>

#include "imaging/Image.h"
#include "imaging/Pixels.h"

// The bytes of a file. Throws CNoPixelsException if the format can't hold the picture.
QByteArray EncodeImage(const CPixels& pixels, const ImageEncoding& encoding);
