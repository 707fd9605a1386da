#include "imaging/Resampler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

constexpr int lanes = 4; // of one pixel: three colours, and alpha or nothing

double Lanczos3(double x)
{
    if (x == 0) {
        return 1;
    }
    const double angle = std::numbers::pi * x;
    return std::abs(x) < 3 ? 3 * std::sin(angle) * std::sin(angle / 3) / (angle * angle) : 0;
}

double CatmullRom(double x)
{
    x = std::abs(x);
    if (x < 1) {
        return (1.5 * x - 2.5) * x * x + 1;
    }
    return x < 2 ? ((-0.5 * x + 2.5) * x - 4) * x + 2 : 0;
}

// The source pixels that one pixel of the result is made of, along one axis.
struct Taps {
    int first = 0;
    std::vector<float> weights; // their sum is 1
};

struct Axis {
    double origin;   // of the picture on the source's grid
    double extent;   // of the picture on the source's grid
    int sourceCount; // pixels there are
    int resultCount; // pixels of the whole result
};

Taps TapsAt(const Axis& axis, int position)
{
    const double ratio = axis.extent / axis.resultCount;
    const double centre = axis.origin + (position + 0.5) * ratio;
    const double stretch = std::max(ratio, 1.0);
    const double reach = (ratio > 1 ? 3 : 2) * stretch;
    // Beyond the edge there are no pixels; the weights of those that are there make up for them.
    const int first = std::clamp(static_cast<int>(std::floor(centre - reach)), 0, axis.sourceCount - 1);
    const int last = std::clamp(static_cast<int>(std::ceil(centre + reach)), first, axis.sourceCount - 1);
    std::vector<double> weights;
    double sum = 0;
    for (int i = first; i <= last; ++i) {
        const double distance = (i + 0.5 - centre) / stretch;
        weights.push_back(ratio > 1 ? Lanczos3(distance) : CatmullRom(distance));
        sum += weights.back();
    }
    Taps taps{first, {}};
    for (const double weight : weights) {
        taps.weights.push_back(static_cast<float>(weight / sum));
    }
    return taps;
}

std::vector<Taps> MakeTaps(const Axis& axis, int first, int count)
{
    std::vector<Taps> taps;
    taps.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        taps.push_back(TapsAt(axis, first + i));
    }
    return taps;
}

// Rows of the source, scaled horizontally. Those in reach of one row of the result are kept.
class CRowCache {
public:
    CRowCache(const CPixels& pixels, const std::vector<Taps>& columns, size_t capacity)
        : pixels(pixels),
          columns(columns),
          premultiplied(static_cast<size_t>(pixels.size.width()) * lanes),
          rows(capacity),
          numbers(capacity, -1)
    {}

    const float* GetRow(int y)
    {
        const size_t slot = static_cast<size_t>(y) % rows.size();
        if (numbers[slot] != y) {
            rows[slot].resize(columns.size() * lanes);
            ReadRow(y);
            ScaleRow(rows[slot].data());
            numbers[slot] = y;
        }
        return rows[slot].data();
    }

private:
    void ReadRow(int y)
    {
        const uint8_t* source = pixels.GetRow(y);
        float* target = premultiplied.data();
        for (int x = 0; x < pixels.size.width(); ++x, source += pixels.channels, target += lanes) {
            const float alpha = pixels.channels == 4 ? source[3] / 255.0f : 1.0f;
            target[0] = source[0] * alpha;
            target[1] = source[1] * alpha;
            target[2] = source[2] * alpha;
            target[3] = alpha;
        }
    }

    void ScaleRow(float* target) const
    {
        for (const Taps& taps : columns) {
            std::array<float, lanes> sum{};
            const float* source = &premultiplied[static_cast<size_t>(taps.first) * lanes];
            for (const float weight : taps.weights) {
                for (int lane = 0; lane < lanes; ++lane) {
                    sum[lane] += weight * source[lane];
                }
                source += lanes;
            }
            target = std::copy(sum.begin(), sum.end(), target);
        }
    }

    const CPixels& pixels;
    const std::vector<Taps>& columns;
    std::vector<float> premultiplied;
    std::vector<std::vector<float>> rows;
    std::vector<int> numbers; // of the rows in them
};

uint8_t ToByte(float value)
{
    return static_cast<uint8_t>(std::clamp(value + 0.5f, 0.0f, 255.0f));
}

void StoreRow(const std::vector<float>& sums, int channels, uint8_t* target)
{
    for (size_t i = 0; i < sums.size(); i += lanes, target += channels) {
        const float alpha = channels == 4 ? std::clamp(sums[i + 3], 0.0f, 1.0f) : 1.0f;
        for (int c = 0; c < 3; ++c) {
            target[c] = alpha > 0 ? ToByte(sums[i + static_cast<size_t>(c)] / alpha) : 0;
        }
        if (channels == 4) {
            target[3] = ToByte(alpha * 255);
        }
    }
}

bool IsUnscaled(const CPixels& pixels, QSize size)
{
    return pixels.size == size && pixels.window == QRectF(QPointF(0, 0), QSizeF(size));
}

} // namespace

CPixels Resample(const CPixels& pixels, QSize size, const QRect& area)
{
    if (IsUnscaled(pixels, size)) {
        return Cut(pixels, area);
    }
    const QRectF& window = pixels.window;
    const std::vector<Taps> columns =
        MakeTaps({window.x(), window.width(), pixels.size.width(), size.width()}, area.left(), area.width());
    const std::vector<Taps> lines = MakeTaps(
        {window.y(), window.height(), pixels.size.height(), size.height()}, area.top(), area.height());
    size_t reach = 1;
    for (const Taps& line : lines) {
        reach = std::max(reach, line.weights.size());
    }
    CRowCache rows(pixels, columns, reach);
    std::vector<uint8_t> bytes(static_cast<size_t>(area.width()) * area.height() * pixels.channels);
    std::vector<float> sums(columns.size() * lanes);
    uint8_t* target = bytes.data();
    for (const Taps& line : lines) {
        std::fill(sums.begin(), sums.end(), 0.0f);
        for (size_t tap = 0; tap < line.weights.size(); ++tap) {
            const float* row = rows.GetRow(line.first + static_cast<int>(tap));
            const float weight = line.weights[tap];
            for (size_t i = 0; i < sums.size(); ++i) {
                sums[i] += weight * row[i];
            }
        }
        StoreRow(sums, pixels.channels, target);
        target += static_cast<size_t>(area.width()) * pixels.channels;
    }
    return MakePixels(area.size(), pixels.channels, std::move(bytes));
}
