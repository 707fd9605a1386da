#pragma once

#include <optional>
#include <vector>

#include <QSize>
#include <QString>

#include "imaging/pixels/Pixels.h"
#include "imaging/pixels/Resampler.h"

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

struct ScaledDecoding {
    int shrink = 1;
    std::vector<Resampling> resamplings;
};
struct DecodedScaledImages {
    std::vector<CPixels> images; // in the order of the resamplings
    ImageCondition condition;
};

// The same pixels as those of DecodeImage, scaled, but the picture is never in memory as a whole. Nothing if
// it has to be: if it isn't a JPEG file, has to be turned or has a colour profile. Throws CNoPixelsException.
std::optional<DecodedScaledImages> DecodeScaledImages(const QString& path, const ImageHeader& header,
                                                      const ScaledDecoding& wanted);
