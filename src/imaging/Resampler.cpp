#include "imaging/Resampler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "imaging/ResamplerKernels.h"

namespace {

using ResamplerKernels::blockRows;
using ResamplerKernels::ColumnTaps;
using ResamplerKernels::RoundToByte;
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

size_t RoundedUp(size_t count, size_t multiple)
{
    return (count + multiple - 1) / multiple * multiple;
}

ColumnTaps JoinTaps(const std::vector<Taps>& columns)
{
    ColumnTaps joined;
    for (const Taps& column : columns) {
        joined.first.push_back(column.first);
        joined.count.push_back(static_cast<int>(column.weights.size()));
        joined.weights.insert(joined.weights.end(), column.weights.begin(), column.weights.end());
    }
    return joined;
}

void StoreOpaqueRow(const float* sums, size_t count, uint8_t* target)
{
    ResamplerKernels::RoundToBytes(sums, 3 * count, target);
}

void StoreRow(const float* sums, size_t count, uint8_t* target)
{
    for (size_t i = 0; i < count; ++i, sums += 4, target += 4) {
        const float alpha = std::clamp(sums[3], 0.0f, 1.0f);
        for (int c = 0; c < 3; ++c) {
            target[c] = alpha > 0 ? RoundToByte(sums[c] / alpha) : 0;
        }
        target[3] = RoundToByte(alpha * 255);
    }
}

} // namespace

// The rows in reach of one row of the result are kept, scaled horizontally.
struct CResampler::State {
    State(const PixelGrid& grid, const Resampling& resampling)
        : channels(static_cast<size_t>(grid.channels)),
          area(resampling.area),
          columns(JoinTaps(
              MakeTaps({grid.window.x(), grid.window.width(), grid.size.width(), resampling.size.width()},
                       area.left(), area.width()))),
          lines(
              MakeTaps({grid.window.y(), grid.window.height(), grid.size.height(), resampling.size.height()},
                       area.top(), area.height())),
          // 16 pixels fill whole tiles.
          stride(RoundedUp(columns.first.size() * channels, tileElements * channels)),
          sums(stride),
          bytes(static_cast<size_t>(area.width()) * static_cast<size_t>(area.height()) * channels)
    {
        size_t reach = 1;
        for (const Taps& line : lines) {
            reach = std::max(reach, line.weights.size());
        }
        inReach.resize(reach);
        // What is in reach may begin at the last row of one block and end at the first of another.
        ring.resize((reach / blockRows + 2) * blockRows * stride);
    }

    float* PlaceOf(int y) { return &ring[static_cast<size_t>(y) * stride % ring.size()]; }

    void MakeLine()
    {
        const Taps& line = lines[nextLine];
        for (size_t tap = 0; tap < line.weights.size(); ++tap) {
            inReach[tap] = PlaceOf(line.first + static_cast<int>(tap));
        }
        ResamplerKernels::SumRows(inReach.data(), line.weights.data(), line.weights.size(), stride,
                                  sums.data());
        uint8_t* const target = &bytes[nextLine * static_cast<size_t>(area.width()) * channels];
        (channels == 3 ? StoreOpaqueRow : StoreRow)(sums.data(), columns.first.size(), target);
        ++nextLine;
    }

    const size_t channels;
    const QRect area;
    const ColumnTaps columns;
    const std::vector<Taps> lines;
    const size_t stride; // of a row of floats; at least as many as there are, the rest of no meaning
    std::vector<float> sums;
    std::vector<const float*> inReach;
    std::vector<float> ring;
    size_t nextLine = 0;
    std::vector<uint8_t> bytes;
};

CResampler::CResampler(const PixelGrid& grid, const Resampling& resampling)
    : state(std::make_unique<State>(grid, resampling))
{}

CResampler::~CResampler() = default;
CResampler::CResampler(CResampler&&) noexcept = default;

bool CResampler::Needs(int top) const
{
    return !IsFull() && top + static_cast<int>(blockRows) > state->lines.front().first;
}

bool CResampler::IsFull() const
{
    return state->nextLine == state->lines.size();
}

void CResampler::TakeBlock(const CRowBlock& block)
{
    if (!Needs(block.GetTop())) {
        return;
    }
    const auto isInReach = [this, end = block.GetTop() + static_cast<int>(blockRows)] {
        const Taps& line = state->lines[state->nextLine];
        return line.first + static_cast<int>(line.weights.size()) <= end;
    };
    ResamplerKernels::ScaleColumns(block.GetFloats(), state->columns, static_cast<int>(state->channels),
                                   state->PlaceOf(block.GetTop()), state->stride);
    while (!IsFull() && isInReach()) {
        state->MakeLine();
    }
}

CPixels CResampler::Finish()
{
    return MakePixels(state->area.size(), static_cast<int>(state->channels), std::move(state->bytes));
}

CRowBlock::CRowBlock(QSize size, int channels)
    : height(size.height()),
      channels(channels),
      elements(static_cast<size_t>(size.width()) * static_cast<size_t>(channels)),
      floats(elements * blockRows)
{}

int CRowBlock::GetRowCount()
{
    return static_cast<int>(blockRows);
}

void CRowBlock::Fill(int newTop, const uint8_t* rows)
{
    top = newTop;
    const int present = std::min(static_cast<int>(blockRows), height - top);
    std::array<const uint8_t*, blockRows> pointers;
    for (int r = 0; r < static_cast<int>(blockRows); ++r) {
        pointers[static_cast<size_t>(r)] = rows + static_cast<size_t>(std::min(r, present - 1)) * elements;
    }
    ResamplerKernels::SpreadRows(pointers.data(), elements, floats.data());
    if (channels == 4) {
        Premultiply();
    }
}

void CRowBlock::Premultiply()
{
    for (size_t pixel = 0; pixel < floats.size(); pixel += 4 * blockRows) {
        float* const values = &floats[pixel];
        for (size_t r = 0; r < blockRows; ++r) {
            const float alpha = values[3 * blockRows + r] / 255.0f;
            values[r] *= alpha;
            values[blockRows + r] *= alpha;
            values[2 * blockRows + r] *= alpha;
            values[3 * blockRows + r] = alpha;
        }
    }
}

bool IsUnscaled(const PixelGrid& grid, const Resampling& resampling)
{
    return grid.size == resampling.size && grid.window == QRectF(QPointF(0, 0), QSizeF(resampling.size));
}

CPixels Resample(const CPixels& pixels, const Resampling& resampling)
{
    const PixelGrid grid{pixels.size, pixels.channels, pixels.window};
    if (IsUnscaled(grid, resampling)) {
        return Cut(pixels, resampling.area);
    }
    if (resampling.area.isEmpty()) {
        return MakePixels(resampling.area.size(), pixels.channels, {});
    }
    CResampler resampler(grid, resampling);
    CRowBlock block(pixels.size, pixels.channels);
    for (int top = 0; top < pixels.size.height() && !resampler.IsFull(); top += static_cast<int>(blockRows)) {
        if (resampler.Needs(top)) {
            block.Fill(top, pixels.GetRow(top));
            resampler.TakeBlock(block);
        }
    }
    return resampler.Finish();
}
