#include "imaging/Resampler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "imaging/ResamplerKernels.h"

namespace {

using ResamplerKernels::blockRows;
using ResamplerKernels::ColumnTaps;
using ResamplerKernels::tileElements;

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
    // Those at both ends may be zero, just out of reach.
    const auto isThere = [](double weight) {
        return weight != 0;
    };
    const auto begin = std::find_if(weights.begin(), weights.end(), isThere);
    const auto end = std::find_if(weights.rbegin(), weights.rend(), isThere).base();
    Taps taps{first + static_cast<int>(begin - weights.begin()), {}};
    for (auto weight = begin; weight < end; ++weight) {
        taps.weights.push_back(static_cast<float>(*weight / sum));
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

// Rows of the source, scaled horizontally, a block at a time. Those in reach of one row of the result are
// kept.
class CScaledRows {
public:
    CScaledRows(const CPixels& pixels, const std::vector<Taps>& columns, size_t reach)
        : pixels(pixels),
          taps(JoinTaps(columns)),
          stride(RoundedUp(columns.size() * static_cast<size_t>(pixels.channels),
                           tileElements * static_cast<size_t>(pixels.channels))),
          block(static_cast<size_t>(pixels.size.width()) * pixels.channels * blockRows),
          // What is in reach may begin at the last row of one block and end at the first of another.
          ring((reach / blockRows + 2) * blockRows * stride)
    {}

    // Of a row of pixels; at least as many as there are, the rest of no meaning.
    size_t GetStride() const { return stride; }

    // To be asked for in an order that goes back by no more than the reach.
    const float* GetRow(int y)
    {
        while (y >= end) {
            ScaleBlock(end);
            end += static_cast<int>(blockRows);
        }
        return PlaceOf(y);
    }

    // Rows above this one won't be asked for.
    void BeginAt(int y) { end = y / static_cast<int>(blockRows) * static_cast<int>(blockRows); }

private:
    static size_t RoundedUp(size_t count, size_t multiple)
    {
        return (count + multiple - 1) / multiple * multiple;
    }

    static ColumnTaps JoinTaps(const std::vector<Taps>& columns)
    {
        ColumnTaps joined;
        for (const Taps& column : columns) {
            joined.first.push_back(column.first);
            joined.count.push_back(static_cast<int>(column.weights.size()));
            joined.weights.insert(joined.weights.end(), column.weights.begin(), column.weights.end());
        }
        return joined;
    }

    float* PlaceOf(int y) { return &ring[static_cast<size_t>(y) * stride % ring.size()]; }

    void ScaleBlock(int top)
    {
        std::array<const uint8_t*, blockRows> rows;
        for (size_t r = 0; r < blockRows; ++r) {
            rows[r] = pixels.GetRow(std::min(top + static_cast<int>(r), pixels.size.height() - 1));
        }
        ResamplerKernels::SpreadRows(rows.data(), static_cast<size_t>(pixels.size.width()) * pixels.channels,
                                     block.data());
        if (pixels.channels == 4) {
            Premultiply();
        }
        ResamplerKernels::ScaleColumns(block.data(), taps, pixels.channels, PlaceOf(top), stride);
    }

    void Premultiply()
    {
        for (size_t pixel = 0; pixel < block.size(); pixel += 4 * blockRows) {
            float* const values = &block[pixel];
            for (size_t r = 0; r < blockRows; ++r) {
                const float alpha = values[3 * blockRows + r] / 255.0f;
                values[r] *= alpha;
                values[blockRows + r] *= alpha;
                values[2 * blockRows + r] *= alpha;
                values[3 * blockRows + r] = alpha;
            }
        }
    }

    const CPixels& pixels;
    const ColumnTaps taps;
    const size_t stride;
    std::vector<float> block;
    std::vector<float> ring;
    int end = 0; // the first row that isn't scaled yet
};

uint8_t ToByte(float value)
{
    return static_cast<uint8_t>(std::clamp(value + 0.5f, 0.0f, 255.0f));
}

void StoreOpaqueRow(const float* sums, size_t count, uint8_t* target)
{
    for (size_t i = 0; i < 3 * count; ++i) {
        target[i] = ToByte(sums[i]);
    }
}

void StoreRow(const float* sums, size_t count, uint8_t* target)
{
    for (size_t i = 0; i < count; ++i, sums += 4, target += 4) {
        const float alpha = std::clamp(sums[3], 0.0f, 1.0f);
        for (int c = 0; c < 3; ++c) {
            target[c] = alpha > 0 ? ToByte(sums[c] / alpha) : 0;
        }
        target[3] = ToByte(alpha * 255);
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
    if (area.isEmpty()) {
        return MakePixels(area.size(), pixels.channels, {});
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
    CScaledRows rows(pixels, columns, reach);
    rows.BeginAt(lines.front().first);
    std::vector<uint8_t> bytes(static_cast<size_t>(area.width()) * area.height() * pixels.channels);
    std::vector<float> sums(rows.GetStride());
    std::vector<const float*> inReach(reach);
    uint8_t* target = bytes.data();
    for (const Taps& line : lines) {
        const size_t count = line.weights.size();
        for (size_t tap = 0; tap < count; ++tap) {
            inReach[tap] = rows.GetRow(line.first + static_cast<int>(tap));
        }
        ResamplerKernels::SumRows(inReach.data(), line.weights.data(), count, sums.size(), sums.data());
        (pixels.channels == 3 ? StoreOpaqueRow : StoreRow)(sums.data(), columns.size(), target);
        target += static_cast<size_t>(area.width()) * pixels.channels;
    }
    return MakePixels(area.size(), pixels.channels, std::move(bytes));
}
