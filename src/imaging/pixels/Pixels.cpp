#include "imaging/pixels/Pixels.h"

#include <algorithm>
#include <cstring>

namespace {

size_t ByteCount(QSize size, int channels)
{
    return static_cast<size_t>(size.width()) * static_cast<size_t>(size.height()) *
           static_cast<size_t>(channels);
}

// EXIF's eight orientations as three steps in this order.
struct Steps {
    bool transpose;
    bool mirrorX;
    bool mirrorY;
};

Steps StepsFor(int orientation)
{
    switch (orientation) {
    case 2:
        return {false, true, false};
    case 3:
        return {false, true, true};
    case 4:
        return {false, false, true};
    case 5:
        return {true, false, false};
    case 6:
        return {true, true, false};
    case 7:
        return {true, true, true};
    case 8:
        return {true, false, true};
    default:
        return {false, false, false};
    }
}

QRectF UprightWindow(const CPixels& pixels, const Steps& steps, QSize result)
{
    const QRectF& w = pixels.window;
    QRectF turned = steps.transpose ? QRectF(w.y(), w.x(), w.height(), w.width()) : w;
    if (steps.mirrorX) {
        turned.moveLeft(result.width() - turned.x() - turned.width());
    }
    if (steps.mirrorY) {
        turned.moveTop(result.height() - turned.y() - turned.height());
    }
    return turned;
}

} // namespace

bool IsComputable(QSize size)
{
    return !size.isEmpty() && static_cast<int64_t>(size.width()) * size.height() <= maximumPixels;
}

QPoint CentredOffset(QSize outer, QSize inner)
{
    return {(outer.width() - inner.width()) / 2, (outer.height() - inner.height()) / 2};
}

CPixels MakePixels(QSize size, int channels, std::vector<uint8_t> bytes)
{
    return {size, channels, std::make_shared<const std::vector<uint8_t>>(std::move(bytes)),
            QRectF(QPointF(0, 0), QSizeF(size))};
}

QSize UprightSize(QSize size, int orientation)
{
    return StepsFor(orientation).transpose ? size.transposed() : size;
}

CPixels Upright(const CPixels& pixels, int orientation)
{
    if (orientation <= 1 || orientation > 8) {
        return pixels;
    }
    const Steps steps = StepsFor(orientation);
    const QSize size = UprightSize(pixels.size, orientation);
    const int channels = pixels.channels;
    std::vector<uint8_t> bytes(ByteCount(size, channels));
    uint8_t* target = bytes.data();
    // Where the source's pixel pointer goes for one step to the right in the result.
    const ptrdiff_t rowBytes = static_cast<ptrdiff_t>(pixels.size.width()) * channels;
    const ptrdiff_t step = (steps.mirrorX ? -1 : 1) * (steps.transpose ? rowBytes : channels);
    for (int y = 0; y < size.height(); ++y) {
        const int fromY = steps.mirrorY ? size.height() - 1 - y : y;
        const int fromX = steps.mirrorX ? size.width() - 1 : 0;
        const uint8_t* source = steps.transpose ? pixels.GetRow(fromX) + fromY * channels
                                                : pixels.GetRow(fromY) + fromX * channels;
        for (int x = 0; x < size.width(); ++x, source += step) {
            for (int c = 0; c < channels; ++c) {
                *target++ = source[c];
            }
        }
    }
    CPixels upright = MakePixels(size, channels, std::move(bytes));
    upright.window = UprightWindow(pixels, steps, size);
    return upright;
}

CPixels WithAlpha(const CPixels& pixels)
{
    if (pixels.channels == 4) {
        return pixels;
    }
    std::vector<uint8_t> bytes(ByteCount(pixels.size, 4), 255);
    const uint8_t* source = pixels.bytes->data();
    for (size_t target = 0; target < bytes.size(); target += 4, source += 3) {
        std::memcpy(&bytes[target], source, 3);
    }
    CPixels result = MakePixels(pixels.size, 4, std::move(bytes));
    result.window = pixels.window;
    return result;
}

CPixels Flattened(const CPixels& pixels, uint8_t grey)
{
    if (pixels.channels == 3) {
        return pixels;
    }
    std::vector<uint8_t> bytes(ByteCount(pixels.size, 3));
    const uint8_t* source = pixels.bytes->data();
    for (size_t target = 0; target < bytes.size(); target += 3, source += 4) {
        const int alpha = source[3];
        for (int c = 0; c < 3; ++c) {
            bytes[target + c] = static_cast<uint8_t>((source[c] * alpha + grey * (255 - alpha) + 127) / 255);
        }
    }
    CPixels result = MakePixels(pixels.size, 3, std::move(bytes));
    result.window = pixels.window;
    return result;
}

CPixels Cut(const CPixels& pixels, const QRect& area)
{
    const QRect inside = area.intersected(QRect(QPoint(0, 0), pixels.size));
    if (inside == QRect(QPoint(0, 0), pixels.size) && inside == area) {
        return pixels;
    }
    const CPixels source = inside == area ? pixels : WithAlpha(pixels);
    const size_t channels = static_cast<size_t>(source.channels);
    std::vector<uint8_t> bytes(ByteCount(area.size(), source.channels), 0);
    for (int y = inside.top(); y <= inside.bottom() && !inside.isEmpty(); ++y) {
        const size_t target =
            (static_cast<size_t>(y - area.top()) * area.width() + (inside.left() - area.left())) * channels;
        std::memcpy(&bytes[target], source.GetRow(y) + inside.left() * channels, inside.width() * channels);
    }
    return MakePixels(area.size(), source.channels, std::move(bytes));
}
