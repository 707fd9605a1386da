#include "imaging/pixels/ResamplerKernels.h"

#include <algorithm>
#include <array>
#include <cstring>

#if defined(__x86_64__)
#define VISTORAMA_WIDE_KERNELS 1
#endif

namespace ResamplerKernels {

namespace {

// Vectors as GCC and Clang have them on every processor; where it has shorter registers, they take several.
using Bytes = uint8_t __attribute__((vector_size(16)));
using Floats = float __attribute__((vector_size(32)));

// What one instruction works on.
struct Narrow {
    static constexpr size_t count = 8;
    using Floats = ResamplerKernels::Floats;
};
struct Wide {
    static constexpr size_t count = 16;
    using Floats = float __attribute__((vector_size(64)));
};

// The kernels are inlined into one function for each set of instructions.
#define VISTORAMA_KERNEL [[gnu::always_inline]] inline

template <class Vector, class Element>
VISTORAMA_KERNEL void Load(Vector& vector, const Element* from)
{
    std::memcpy(&vector, from, sizeof vector);
}

template <class Vector, class Element>
VISTORAMA_KERNEL void Store(Element* to, const Vector& vector)
{
    std::memcpy(to, &vector, sizeof vector);
}

// One of the four rounds that turn 16 rows of 16 bytes into 16 columns.
VISTORAMA_KERNEL void Interleave(const std::array<Bytes, 16>& from, std::array<Bytes, 16>& to)
{
    for (size_t i = 0; i < 8; ++i) {
        to[2 * i] = __builtin_shufflevector(from[i], from[i + 8], 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6,
                                            22, 7, 23);
        to[2 * i + 1] = __builtin_shufflevector(from[i], from[i + 8], 8, 24, 9, 25, 10, 26, 11, 27, 12, 28,
                                                13, 29, 14, 30, 15, 31);
    }
}

// 16 elements of 16 rows, so that those of one column stand side by side.
VISTORAMA_KERNEL void TurnBytes(const uint8_t* const* rows, size_t place, uint8_t* turnedBytes)
{
    std::array<Bytes, 16> tile;
    std::array<Bytes, 16> turned;
    for (size_t r = 0; r < 16; ++r) {
        Load(tile[r], rows[r] + place);
    }
    Interleave(tile, turned);
    Interleave(turned, tile);
    Interleave(tile, turned);
    Interleave(turned, tile);
    std::memcpy(turnedBytes, tile.data(), sizeof tile);
}

VISTORAMA_KERNEL void Spread(const uint8_t* const* rows, Range elements, float* block)
{
    constexpr size_t tilesAtOnce = 8;
    constexpr size_t tileBytes = 16 * blockRows;
    alignas(64) uint8_t turned[tilesAtOnce * tileBytes];
    size_t e = elements.begin;
    while (e + 16 <= elements.end) {
        const size_t tiles = std::min((elements.end - e) / 16, tilesAtOnce);
        for (size_t tile = 0; tile < tiles; ++tile) {
            TurnBytes(rows, e + tile * 16, turned + tile * tileBytes);
        }
        // A loop of its own: compilers make one instruction of its conversions, but none of a vector's; and
        // by now the bytes can be loaded in larger pieces than they were stored in.
        for (size_t i = 0; i < tiles * tileBytes; ++i) {
            block[e * blockRows + i] = turned[i];
        }
        e += tiles * 16;
    }
    for (; e < elements.end; ++e) {
        for (size_t r = 0; r < blockRows; ++r) {
            block[e * blockRows + r] = rows[r][e];
        }
    }
}

// A tile of elements by rows becomes one of rows by elements.
VISTORAMA_KERNEL void TurnTile(const float (&tile)[tileElements][blockRows], float* target, size_t stride)
{
    for (size_t row = 0; row < blockRows; row += Narrow::count) {
        for (size_t element = 0; element < tileElements; element += Narrow::count) {
            std::array<Floats, 8> a;
            std::array<Floats, 8> b;
            for (size_t i = 0; i < 8; ++i) {
                Load(a[i], &tile[element + i][row]);
            }
            for (size_t i = 0; i < 4; ++i) {
                b[2 * i] = __builtin_shufflevector(a[i], a[i + 4], 0, 8, 1, 9, 2, 10, 3, 11);
                b[2 * i + 1] = __builtin_shufflevector(a[i], a[i + 4], 4, 12, 5, 13, 6, 14, 7, 15);
            }
            for (size_t i = 0; i < 4; ++i) {
                a[2 * i] = __builtin_shufflevector(b[i], b[i + 4], 0, 8, 1, 9, 2, 10, 3, 11);
                a[2 * i + 1] = __builtin_shufflevector(b[i], b[i + 4], 4, 12, 5, 13, 6, 14, 7, 15);
            }
            for (size_t i = 0; i < 4; ++i) {
                b[2 * i] = __builtin_shufflevector(a[i], a[i + 4], 0, 8, 1, 9, 2, 10, 3, 11);
                b[2 * i + 1] = __builtin_shufflevector(a[i], a[i + 4], 4, 12, 5, 13, 6, 14, 7, 15);
            }
            for (size_t i = 0; i < 8; ++i) {
                Store(target + (row + i) * stride + element, b[i]);
            }
        }
    }
}

// The sums of one result pixel in all rows.
template <size_t Channels, class Width>
using PixelSums = typename Width::Floats[Channels][blockRows / Width::count];

template <size_t Channels, class Width>
VISTORAMA_KERNEL void AddTap(const float* source, float weight, PixelSums<Channels, Width>& sums)
{
    using Vector = typename Width::Floats;
    const Vector factor = weight - Vector{};
    for (size_t c = 0; c < Channels; ++c) {
        for (size_t part = 0; part < blockRows / Width::count; ++part) {
            Vector values;
            Load(values, source + c * blockRows + part * Width::count);
            sums[c][part] += factor * values;
        }
    }
}

// Channels elements of a tile.
template <size_t Channels, class Width>
VISTORAMA_KERNEL void StorePixel(const PixelSums<Channels, Width>& sums, float (*result)[blockRows])
{
    for (size_t c = 0; c < Channels; ++c) {
        for (size_t part = 0; part < blockRows / Width::count; ++part) {
            Store(&result[c][part * Width::count], sums[c][part]);
        }
    }
}

// Two pixels next to each other: while the sum of the one waits for its last term, the other goes on.
template <size_t Channels, class Width>
VISTORAMA_KERNEL void ScaleTwo(const float* block, const ColumnTaps& taps, size_t column,
                               float (*result)[blockRows])
{
    constexpr size_t pixelElements = Channels * blockRows;
    const float* a = block + static_cast<size_t>(taps.first[column]) * pixelElements;
    const float* b = block + static_cast<size_t>(taps.first[column + 1]) * pixelElements;
    const float* weightA = &taps.weights[taps.firstWeight[column]];
    const float* weightB = &taps.weights[taps.firstWeight[column + 1]];
    const float* const endA = weightA + taps.count[column];
    const float* const endB = weightB + taps.count[column + 1];
    PixelSums<Channels, Width> sumsA{};
    PixelSums<Channels, Width> sumsB{};
    for (int tap = std::min(taps.count[column], taps.count[column + 1]); tap > 0; --tap) {
        AddTap<Channels, Width>(a, *weightA++, sumsA);
        AddTap<Channels, Width>(b, *weightB++, sumsB);
        a += pixelElements;
        b += pixelElements;
    }
    for (; weightA < endA; a += pixelElements) {
        AddTap<Channels, Width>(a, *weightA++, sumsA);
    }
    for (; weightB < endB; b += pixelElements) {
        AddTap<Channels, Width>(b, *weightB++, sumsB);
    }
    StorePixel<Channels, Width>(sumsA, result);
    StorePixel<Channels, Width>(sumsB, result + Channels);
}

template <size_t Channels, class Width>
VISTORAMA_KERNEL void ScaleOne(const float* block, const ColumnTaps& taps, size_t column,
                               float (*result)[blockRows])
{
    constexpr size_t pixelElements = Channels * blockRows;
    const float* source = block + static_cast<size_t>(taps.first[column]) * pixelElements;
    const float* const weights = &taps.weights[taps.firstWeight[column]];
    PixelSums<Channels, Width> sums{};
    for (int tap = 0; tap < taps.count[column]; ++tap, source += pixelElements) {
        AddTap<Channels, Width>(source, weights[tap], sums);
    }
    StorePixel<Channels, Width>(sums, result);
}

template <size_t Channels, class Width>
VISTORAMA_KERNEL void Scale(const float* block, const ColumnTaps& taps, Range columns, ScaleTarget target)
{
    // 16 pixels fill a whole number of tiles, whatever the channels.
    constexpr size_t pixels = tileElements;
    alignas(64) float tiles[Channels][tileElements][blockRows] = {};
    for (size_t column = columns.begin; column < columns.end; column += pixels) {
        const size_t present = std::min(pixels, columns.end - column);
        size_t i = 0;
        for (; i + 2 <= present; i += 2) {
            ScaleTwo<Channels, Width>(block, taps, column + i, &tiles[0][0] + i * Channels);
        }
        if (i < present) {
            ScaleOne<Channels, Width>(block, taps, column + i, &tiles[0][0] + i * Channels);
        }
        const size_t used = (present * Channels + tileElements - 1) / tileElements;
        for (size_t tile = 0; tile < used; ++tile) {
            TurnTile(tiles[tile], target.floats + column * Channels + tile * tileElements, target.stride);
        }
    }
}

// Sums of so many vectors side by side: none waits for the one before it.
template <class Width, size_t Vectors>
VISTORAMA_KERNEL void SumVectors(const float* const* rows, const float* weights, size_t rowCount,
                                 size_t place, float* sums)
{
    using Vector = typename Width::Floats;
    Vector parted[Vectors]{};
    for (size_t r = 0; r < rowCount; ++r) {
        const Vector weight = weights[r] - Vector{};
        for (size_t part = 0; part < Vectors; ++part) {
            Vector values;
            Load(values, rows[r] + place + part * Width::count);
            parted[part] += weight * values;
        }
    }
    for (size_t part = 0; part < Vectors; ++part) {
        Store(sums + place + part * Width::count, parted[part]);
    }
}

template <class Width>
VISTORAMA_KERNEL void Sum(const float* const* rows, const float* weights, size_t rowCount, size_t elements,
                          float* sums)
{
    constexpr size_t manyVectors = 6;
    constexpr size_t many = manyVectors * Width::count;
    size_t e = 0;
    for (; e + many <= elements; e += many) {
        SumVectors<Width, manyVectors>(rows, weights, rowCount, e, sums);
    }
    for (; e < elements; e += tileElements) {
        SumVectors<Width, tileElements / Width::count>(rows, weights, rowCount, e, sums);
    }
}

VISTORAMA_KERNEL void Round(const float* values, size_t count, uint8_t* bytes)
{
    for (size_t i = 0; i < count; ++i) {
        bytes[i] = RoundToByte(values[i]);
    }
}

struct Kernels {
    void (*spread)(const uint8_t* const* rows, Range elements, float* block);
    void (*scale3)(const float* block, const ColumnTaps& taps, Range columns, ScaleTarget target);
    void (*scale4)(const float* block, const ColumnTaps& taps, Range columns, ScaleTarget target);
    void (*sum)(const float* const* rows, const float* weights, size_t rowCount, size_t elements,
                float* sums);
    void (*round)(const float* values, size_t count, uint8_t* bytes);
};

#define VISTORAMA_DEFINE_KERNELS(Name, Width, attribute)                                                     \
    attribute void Spread##Name(const uint8_t* const* rows, Range elements, float* block)                    \
    {                                                                                                        \
        Spread(rows, elements, block);                                                                       \
    }                                                                                                        \
    attribute void Scale3##Name(const float* block, const ColumnTaps& taps, Range columns,                   \
                                ScaleTarget target)                                                          \
    {                                                                                                        \
        Scale<3, Width>(block, taps, columns, target);                                                       \
    }                                                                                                        \
    attribute void Scale4##Name(const float* block, const ColumnTaps& taps, Range columns,                   \
                                ScaleTarget target)                                                          \
    {                                                                                                        \
        Scale<4, Width>(block, taps, columns, target);                                                       \
    }                                                                                                        \
    attribute void Sum##Name(const float* const* rows, const float* weights, size_t rowCount,                \
                             size_t elements, float* sums)                                                   \
    {                                                                                                        \
        Sum<Width>(rows, weights, rowCount, elements, sums);                                                 \
    }                                                                                                        \
    attribute void Round##Name(const float* values, size_t count, uint8_t* bytes)                            \
    {                                                                                                        \
        Round(values, count, bytes);                                                                         \
    }                                                                                                        \
    constexpr Kernels kernels##Name{Spread##Name, Scale3##Name, Scale4##Name, Sum##Name, Round##Name};

VISTORAMA_DEFINE_KERNELS(Plain, Narrow, )
#ifdef VISTORAMA_WIDE_KERNELS
VISTORAMA_DEFINE_KERNELS(Avx2, Narrow, [[gnu::target("avx2")]])
VISTORAMA_DEFINE_KERNELS(Avx512, Wide, [[gnu::target("avx512f,avx512bw,avx512vl,avx512dq")]])
#endif

const Kernels& FindKernels()
{
#ifdef VISTORAMA_WIDE_KERNELS
    if (__builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
        __builtin_cpu_supports("avx512dq")) {
        return kernelsAvx512;
    }
    if (__builtin_cpu_supports("avx2")) {
        return kernelsAvx2;
    }
#endif
    return kernelsPlain;
}

const Kernels& GetKernels()
{
    static const Kernels& kernels = FindKernels();
    return kernels;
}

} // namespace

void SpreadRows(const uint8_t* const* rows, Range elements, float* block)
{
    GetKernels().spread(rows, elements, block);
}

void ScaleColumns(const float* block, const ColumnTaps& taps, Range columns, int channels, ScaleTarget target)
{
    const Kernels& kernels = GetKernels();
    (channels == 3 ? kernels.scale3 : kernels.scale4)(block, taps, columns, target);
}

void SumRows(const float* const* rows, const float* weights, size_t rowCount, size_t elements, float* sums)
{
    GetKernels().sum(rows, weights, rowCount, elements, sums);
}

void RoundToBytes(const float* values, size_t count, uint8_t* bytes)
{
    GetKernels().round(values, count, bytes);
}

} // namespace ResamplerKernels
