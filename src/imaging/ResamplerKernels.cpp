#include "imaging/ResamplerKernels.h"

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
using HalfBytes = uint8_t __attribute__((vector_size(8)));
using Integers = int32_t __attribute__((vector_size(32)));
using Floats = float __attribute__((vector_size(32)));

constexpr size_t floatsInVector = 8;

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

VISTORAMA_KERNEL void StoreAsFloats(const Bytes& bytes, float* to)
{
    HalfBytes halves[2];
    std::memcpy(halves, &bytes, sizeof bytes);
    for (const HalfBytes& half : halves) {
        Store(to, __builtin_convertvector(__builtin_convertvector(half, Integers), Floats));
        to += floatsInVector;
    }
}

VISTORAMA_KERNEL void Spread(const uint8_t* const* rows, size_t elements, float* block)
{
    size_t e = 0;
    for (; e + 16 <= elements; e += 16) {
        std::array<Bytes, 16> tile;
        std::array<Bytes, 16> turned;
        for (size_t r = 0; r < 16; ++r) {
            Load(tile[r], rows[r] + e);
        }
        Interleave(tile, turned);
        Interleave(turned, tile);
        Interleave(tile, turned);
        Interleave(turned, tile);
        for (size_t i = 0; i < 16; ++i) {
            StoreAsFloats(tile[i], block + (e + i) * blockRows);
        }
    }
    for (; e < elements; ++e) {
        for (size_t r = 0; r < blockRows; ++r) {
            block[e * blockRows + r] = rows[r][e];
        }
    }
}

// A tile of elements by rows becomes one of rows by elements.
VISTORAMA_KERNEL void TurnTile(const float (&tile)[tileElements][blockRows], float* target, size_t stride)
{
    for (size_t row = 0; row < blockRows; row += floatsInVector) {
        for (size_t element = 0; element < tileElements; element += floatsInVector) {
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

// The sums of one result pixel in all rows: Channels elements of the tile.
template <size_t Channels>
VISTORAMA_KERNEL void ScalePixel(const float* source, const float* weights, int count,
                                 float (*result)[blockRows])
{
    Floats sums[Channels][2]{};
    for (int tap = 0; tap < count; ++tap) {
        const Floats weight = weights[tap] - Floats{};
        for (size_t c = 0; c < Channels; ++c) {
            Floats low;
            Floats high;
            Load(low, source);
            Load(high, source + floatsInVector);
            sums[c][0] += weight * low;
            sums[c][1] += weight * high;
            source += blockRows;
        }
    }
    for (size_t c = 0; c < Channels; ++c) {
        Store(&result[c][0], sums[c][0]);
        Store(&result[c][floatsInVector], sums[c][1]);
    }
}

template <size_t Channels>
VISTORAMA_KERNEL void Scale(const float* block, const ColumnTaps& taps, float* target, size_t stride)
{
    // 16 pixels fill a whole number of tiles, whatever the channels.
    constexpr size_t pixels = tileElements;
    alignas(32) float tiles[Channels][tileElements][blockRows] = {};
    const float* weights = taps.weights.data();
    for (size_t column = 0; column < taps.first.size(); column += pixels) {
        const size_t present = std::min(pixels, taps.first.size() - column);
        for (size_t i = 0; i < present; ++i) {
            const float* source = block + static_cast<size_t>(taps.first[column + i]) * Channels * blockRows;
            const int count = taps.count[column + i];
            ScalePixel<Channels>(source, weights, count, &tiles[0][0] + i * Channels);
            weights += count;
        }
        const size_t used = (present * Channels + tileElements - 1) / tileElements;
        for (size_t tile = 0; tile < used; ++tile) {
            TurnTile(tiles[tile], target + column * Channels + tile * tileElements, stride);
        }
    }
}

VISTORAMA_KERNEL void Sum(const float* const* rows, const float* weights, size_t rowCount, size_t elements,
                          float* sums)
{
    constexpr size_t step = 2 * floatsInVector;
    static_assert(tileElements % step == 0);
    for (size_t e = 0; e < elements; e += step) {
        Floats low{};
        Floats high{};
        for (size_t r = 0; r < rowCount; ++r) {
            const Floats weight = weights[r] - Floats{};
            Floats a;
            Floats b;
            Load(a, rows[r] + e);
            Load(b, rows[r] + e + floatsInVector);
            low += weight * a;
            high += weight * b;
        }
        Store(sums + e, low);
        Store(sums + e + floatsInVector, high);
    }
}

struct Kernels {
    void (*spread)(const uint8_t* const* rows, size_t elements, float* block);
    void (*scale3)(const float* block, const ColumnTaps& taps, float* target, size_t stride);
    void (*scale4)(const float* block, const ColumnTaps& taps, float* target, size_t stride);
    void (*sum)(const float* const* rows, const float* weights, size_t rowCount, size_t elements,
                float* sums);
};

#define VISTORAMA_DEFINE_KERNELS(name, attribute)                                                            \
    attribute void Spread##name(const uint8_t* const* rows, size_t elements, float* block)                   \
    {                                                                                                        \
        Spread(rows, elements, block);                                                                       \
    }                                                                                                        \
    attribute void Scale3##name(const float* block, const ColumnTaps& taps, float* target, size_t stride)    \
    {                                                                                                        \
        Scale<3>(block, taps, target, stride);                                                               \
    }                                                                                                        \
    attribute void Scale4##name(const float* block, const ColumnTaps& taps, float* target, size_t stride)    \
    {                                                                                                        \
        Scale<4>(block, taps, target, stride);                                                               \
    }                                                                                                        \
    attribute void Sum##name(const float* const* rows, const float* weights, size_t rowCount,                \
                             size_t elements, float* sums)                                                   \
    {                                                                                                        \
        Sum(rows, weights, rowCount, elements, sums);                                                        \
    }                                                                                                        \
    constexpr Kernels kernels##name{Spread##name, Scale3##name, Scale4##name, Sum##name};

VISTORAMA_DEFINE_KERNELS(Plain, )
#ifdef VISTORAMA_WIDE_KERNELS
VISTORAMA_DEFINE_KERNELS(Avx2, [[gnu::target("avx2")]])
#endif

const Kernels& GetKernels()
{
#ifdef VISTORAMA_WIDE_KERNELS
    static const bool isWide = __builtin_cpu_supports("avx2") != 0;
    if (isWide) {
        return kernelsAvx2;
    }
#endif
    return kernelsPlain;
}

} // namespace

void SpreadRows(const uint8_t* const* rows, size_t elements, float* block)
{
    GetKernels().spread(rows, elements, block);
}

void ScaleColumns(const float* block, const ColumnTaps& taps, int channels, float* target, size_t stride)
{
    const Kernels& kernels = GetKernels();
    (channels == 3 ? kernels.scale3 : kernels.scale4)(block, taps, target, stride);
}

void SumRows(const float* const* rows, const float* weights, size_t rowCount, size_t elements, float* sums)
{
    GetKernels().sum(rows, weights, rowCount, elements, sums);
}

} // namespace ResamplerKernels
