#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <QRectF>
#include <QSize>
#include <QString>

// What is known of the pixels behind an image.
struct ImageCondition {
    enum class State {
        Whole,        // also while no pixel has been asked for
        InPart,       // damaged; as much as could be decoded is there
        NotDecodable, // there are no pixels
    };
    State state = State::Whole;
    QString reason; // for people; empty when whole
};

// Thrown where pixels are asked for and there are none. Doesn't leave this folder.
struct CNoPixelsException {
    QString reason;
};

// Computed pixels: 8-bit sRGB, rows from the top without padding. The bytes are shared and never changed once
// they are in here.
struct CPixels {
    QSize size;
    int channels = 0; // 3: red, green, blue; 4: and alpha, not premultiplied
    std::shared_ptr<const std::vector<uint8_t>> bytes;
    // The picture's place on the grid of these pixels. A decoder that scales rounds to whole pixels, but the
    // picture then ends within the last one.
    QRectF window;

    const uint8_t* GetRow(int y) const
    {
        return bytes->data() + static_cast<size_t>(y) * static_cast<size_t>(size.width()) * channels;
    }
};

// Of one pixel; not premultiplied.
struct CanvasColour {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    uint8_t alpha = 255;

    bool operator==(const CanvasColour&) const = default;
};

// The largest number of pixels that a picture may have: above today's cameras, below what would exhaust
// memory. Headers may claim anything.
constexpr int64_t maximumPixels = 250'000'000;

// Whether a picture of this size can be computed at all.
bool IsComputable(QSize size);

// Where inner lies on the middle of outer. Truncated toward zero, so that of an odd difference the larger
// part is at the right and at the bottom, inside as well as overhanging: published pixels must not move.
QPoint CentredOffset(QSize outer, QSize inner);

CPixels MakePixels(QSize size, int channels, std::vector<uint8_t> bytes);

// orientation: as in EXIF, tag 0x0112, 1 to 8: what has to be undone to see the picture upright.
CPixels Upright(const CPixels& pixels, int orientation);
QSize UprightSize(QSize size, int orientation);

CPixels WithAlpha(const CPixels& pixels);

// Blends onto an opaque colour; three channels.
CPixels Flattened(const CPixels& pixels, uint8_t grey);

// A part of the picture; what lies outside it is transparent. area: in pixels; its size is computable.
CPixels Cut(const CPixels& pixels, const QRect& area);
