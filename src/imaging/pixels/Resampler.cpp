#include "imaging/pixels/Resampler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <list>
#include <numbers>

#include "common/ThreadSafety.h"
#include "imaging/pixels/DecodingStop.h"
#include "imaging/pixels/ResamplerKernels.h"

namespace {

using ResamplerKernels::blockRows;
using ResamplerKernels::ColumnTaps;
using ResamplerKernels::Range;
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
        joined.firstWeight.push_back(joined.weights.size());
        joined.weights.insert(joined.weights.end(), column.weights.begin(), column.weights.end());
    }
    return joined;
}

// count: elements.
void StoreOpaque(const float* sums, size_t count, uint8_t* target)
{
    ResamplerKernels::RoundToBytes(sums, count, target);
}

void StorePremultiplied(const float* sums, size_t count, uint8_t* target)
{
    for (size_t i = 0; i < count; i += 4) {
        const float alpha = std::clamp(sums[i + 3], 0.0f, 1.0f);
        for (size_t c = 0; c < 3; ++c) {
            target[i + c] = alpha > 0 ? RoundToByte(sums[i + c] / alpha) : 0;
        }
        target[i + 3] = RoundToByte(alpha * 255);
    }
}

// What a scaling needs to know of both axes. Immutable.
struct Geometry {
    ColumnTaps columns;
    std::vector<Taps> lines;
};

struct GeometryKey {
    QSize sourceSize;
    QRectF window;
    Resampling resampling;

    bool operator==(const GeometryKey&) const = default;
};

Geometry MakeGeometry(const GeometryKey& key)
{
    const QRectF& window = key.window;
    const QSize source = key.sourceSize;
    const QSize result = key.resampling.size;
    const QRect& area = key.resampling.area;
    return {
        JoinTaps(MakeTaps({window.x(), window.width(), source.width(), result.width()}, area.left(),
                          area.width())),
        MakeTaps({window.y(), window.height(), source.height(), result.height()}, area.top(), area.height())};
}

// The latest geometries: the photographs of one camera share theirs. Thread-safe.
std::shared_ptr<const Geometry> FindGeometry(const GeometryKey& key)
{
    constexpr size_t kept = 16;
    static CMutex mutex;
    static std::list<std::pair<GeometryKey, std::shared_ptr<const Geometry>>> latest;
    {
        const CMutexLock lock(mutex);
        const auto found = std::find_if(latest.begin(), latest.end(),
                                        [&key](const auto& each) { return each.first == key; });
        if (found != latest.end()) {
            latest.splice(latest.begin(), latest, found);
            return found->second;
        }
    }
    auto made = std::make_shared<const Geometry>(MakeGeometry(key));
    const CMutexLock lock(mutex);
    latest.emplace_front(key, made);
    latest.resize(std::min(latest.size(), kept));
    return made;
}

// So many pixels are made ready and scaled while they are in the processor's nearest cache.
constexpr size_t pixelsAtOnce = 128;

// So much of each row in reach is, for all lines that are made together. Whole pixels, whole tiles.
constexpr size_t elementsAtOnce = 192;

} // namespace

// One of the results. The rows in reach of one row of it are kept, scaled horizontally.
class CResampler::CScaling {
public:
    CScaling(const PixelGrid& grid, const Resampling& resampling)
        : channels(static_cast<size_t>(grid.channels)),
          area(resampling.area),
          geometry(FindGeometry({grid.size, grid.window, resampling})),
          columns(geometry->columns),
          lines(geometry->lines),
          // The kernels work on 16 pixels at once.
          stride(RoundedUp(columns.first.size(), tileElements) * channels),
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

    bool IsFull() const { return nextLine == lines.size(); }
    bool NeedsBlock(int top) const
    {
        return !IsFull() && top + static_cast<int>(blockRows) > lines.front().first;
    }

    // Pixels of the block up to endPixel are there: scales the columns that need no others.
    void TakePixels(const float* block, int top, size_t endPixel)
    {
        const size_t begin = nextColumn;
        while (nextColumn < columns.first.size() && IsThere(nextColumn, endPixel)) {
            nextColumn = std::min(nextColumn + tileElements, columns.first.size());
        }
        ResamplerKernels::ScaleColumns(block, columns, {begin, nextColumn}, static_cast<int>(channels),
                                       {PlaceOf(top), stride});
    }

    void EndBlock(int top)
    {
        nextColumn = 0;
        size_t endLine = nextLine;
        while (endLine < lines.size() &&
               lines[endLine].first + static_cast<int>(lines[endLine].weights.size()) <=
                   top + static_cast<int>(blockRows)) {
            ++endLine;
        }
        MakeLines(endLine);
    }

    CPixels Finish() { return MakePixels(area.size(), static_cast<int>(channels), std::move(bytes)); }

private:
    // Whether all source pixels of the 16 columns from this one are.
    bool IsThere(size_t column, size_t endPixel) const
    {
        const size_t last = std::min(column + tileElements, columns.first.size()) - 1;
        return static_cast<size_t>(columns.first[last]) + static_cast<size_t>(columns.count[last]) <=
               endPixel;
    }

    float* PlaceOf(int y) { return &ring[static_cast<size_t>(y) * stride % ring.size()]; }

    // Lines next to each other are made of much the same rows: piece by piece, so that these stay in the
    // processor's nearest cache meanwhile.
    void MakeLines(size_t endLine)
    {
        const size_t elements = columns.first.size() * channels;
        for (size_t begin = 0; begin < elements && nextLine < endLine; begin += elementsAtOnce) {
            for (size_t line = nextLine; line < endLine; ++line) {
                MakePiece(line, {begin, std::min(begin + elementsAtOnce, elements)});
            }
        }
        nextLine = endLine;
    }

    void MakePiece(size_t lineNumber, Range elements)
    {
        const Taps& line = lines[lineNumber];
        for (size_t tap = 0; tap < line.weights.size(); ++tap) {
            inReach[tap] = PlaceOf(line.first + static_cast<int>(tap)) + elements.begin;
        }
        const size_t count = elements.end - elements.begin;
        std::array<float, elementsAtOnce> sums;
        ResamplerKernels::SumRows(inReach.data(), line.weights.data(), line.weights.size(),
                                  RoundedUp(count, tileElements), sums.data());
        const size_t lineBytes = static_cast<size_t>(area.width()) * channels;
        uint8_t* const target = &bytes[lineNumber * lineBytes + elements.begin];
        (channels == 3 ? StoreOpaque : StorePremultiplied)(sums.data(), count, target);
    }

    const size_t channels;
    const QRect area;
    const std::shared_ptr<const Geometry> geometry;
    const ColumnTaps& columns;
    const std::vector<Taps>& lines;
    const size_t stride; // of a row of floats; at least as many as there are, the rest of no meaning
    std::vector<const float*> inReach;
    std::vector<float> ring;
    size_t nextColumn = 0;
    size_t nextLine = 0;
    std::vector<uint8_t> bytes;
};

CResampler::CResampler(const PixelGrid& grid, const std::vector<Resampling>& resamplings)
    : grid(grid),
      rowBytes(static_cast<size_t>(grid.size.width()) * static_cast<size_t>(grid.channels)),
      rows(rowBytes * blockRows),
      block(rowBytes * blockRows)
{
    for (const Resampling& resampling : resamplings) {
        scalings.push_back(std::make_unique<CScaling>(grid, resampling));
    }
}

CResampler::~CResampler() = default;

void CResampler::TakeRow()
{
    static_assert(blockRows == ResamplerKernels::blockRows);
    const size_t place = static_cast<size_t>(nextRow) % blockRows;
    ++nextRow;
    if (place + 1 == blockRows || nextRow == grid.size.height()) {
        TakeBlock(static_cast<int>(place) + 1);
    }
}

bool CResampler::IsFull() const
{
    return std::all_of(scalings.begin(), scalings.end(),
                       [](const auto& scaling) { return scaling->IsFull(); });
}

std::vector<CPixels> CResampler::Finish()
{
    std::vector<CPixels> results;
    for (const auto& scaling : scalings) {
        results.push_back(scaling->Finish());
    }
    return results;
}

void CResampler::TakeBlock(int rowCount)
{
    const int top = nextRow - rowCount;
    std::vector<CScaling*> needing;
    for (const auto& scaling : scalings) {
        if (scaling->NeedsBlock(top)) {
            needing.push_back(scaling.get());
        }
    }
    if (needing.empty()) {
        return;
    }
    std::array<const uint8_t*, blockRows> pointers;
    for (size_t r = 0; r < blockRows; ++r) {
        pointers[r] = &rows[std::min(r, static_cast<size_t>(rowCount) - 1) * rowBytes];
    }
    const auto width = static_cast<size_t>(grid.size.width());
    const auto channels = static_cast<size_t>(grid.channels);
    for (size_t pixel = 0; pixel < width; pixel += pixelsAtOnce) {
        const size_t end = std::min(pixel + pixelsAtOnce, width);
        ResamplerKernels::SpreadRows(pointers.data(), {pixel * channels, end * channels}, block.data());
        if (channels == 4) {
            Premultiply(pixel, end);
        }
        for (CScaling* const scaling : needing) {
            scaling->TakePixels(block.data(), top, end);
        }
    }
    for (CScaling* const scaling : needing) {
        scaling->EndBlock(top);
    }
}

void CResampler::Premultiply(size_t firstPixel, size_t endPixel)
{
    for (size_t pixel = firstPixel; pixel < endPixel; ++pixel) {
        float* const values = &block[pixel * 4 * blockRows];
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
    const auto rowBytes = static_cast<size_t>(pixels.size.width()) * static_cast<size_t>(pixels.channels);
    CResampler resampler(grid, {resampling});
    for (int y = 0; y < pixels.size.height() && !resampler.IsFull(); ++y) {
        std::copy_n(pixels.GetRow(y), rowBytes, resampler.GetPlace());
        resampler.TakeRow();
        CDecodingStop::ThrowIfWanted();
    }
    return resampler.Finish().front();
}
