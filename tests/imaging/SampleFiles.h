#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include <QByteArray>
#include <QPoint>
#include <QSize>

#include "imaging/Image.h"
#include "support/ScratchFolder.h"

// Pictures and picture files that tests make themselves.

using Colour = std::array<int, 4>; // red, green, blue, alpha
using Painter = std::function<Colour(int x, int y)>;

// As CImage::FromRgba takes them.
QByteArray Paint(QSize size, const Painter& painter);

Colour PixelOf(const QByteArray& rgba, QSize size, QPoint place);

// Mean of the differences of all colour values.
double MeanError(const QByteArray& a, const QByteArray& b);
// Peak signal to noise ratio in dB.
double Psnr(const QByteArray& a, const QByteArray& b);

// Three soft waves: nothing that a decoder's rounding would change by much.
Colour Waves(int x, int y);
// Detail of all sizes and directions, with hard edges.
Colour Detail(int x, int y);
// The same under strong noise, harder to reduce well than any photograph.
Colour Grain(int x, int y);

struct JpegOptions {
    int quality = 95;
    bool progressive = false;
    bool subsampled = false;
};
QByteArray JpegOf(QSize size, const Painter& painter, const JpegOptions& options = {});

// Puts a segment right after the start of a JPEG.
QByteArray WithSegment(const QByteArray& jpeg, uint8_t marker, const QByteArray& payload);
QByteArray ExifOrientation(int orientation, bool bigEndian);
QByteArray WithProfile(const QByteArray& jpeg, const QByteArray& profile);

// A display's colours: what red, green and blue are in CIE XYZ (D50), and the tone curve.
struct ColourSpace {
    double matrix[3][3]; // row: X, Y, Z; column: red, green, blue
    double gamma;        // 0: the curve of sRGB
};
extern const ColourSpace displayP3;
extern const ColourSpace adobeRgb;
extern const ColourSpace standardRgb;

// ICC version 2, matrix and curves.
QByteArray IccProfileOf(const ColourSpace& space);
// By the formulas alone.
Colour ToStandardRgb(const ColourSpace& space, const Colour& colour);

QByteArray BmpOf(QSize size, const Painter& painter); // 24 bits
QByteArray PcxOf(QSize size, const Painter& painter); // 24 bits in three planes

// Opens the bytes as a file of that name.
CImage Opened(const CScratchFolder& folder, const QByteArray& bytes,
              const QString& name = QStringLiteral("picture.jpg"));
