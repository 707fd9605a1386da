#include "imaging/ResamplerKernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#if defined(__x86_64__)
#define VISTORAMA_WIDE_KERNELS 1
#endif

namespace ResamplerKernels {

namespace {

// Vectors as GCC and Clang have them on every processor; where it has shorter registers, they take several.
using Bytes = uint8_t __attribute__((vector_size(16)));
using QuarterIntegers = int32_t __attribute__((vector_size(16)));
using QuarterFloats = float __attribute__((vector_size(16)));
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

VISTORAMA_KERNEL void StoreIntegers(const Bytes& bytes, float* to)
{
    QuarterIntegers integers;
    std::memcpy(&integers, &bytes, sizeof integers);
    Store(to, __builtin_convertvector(integers, QuarterFloats));
}

// A conversion of vectors of bytes would be taken apart by the compiler, so zeros are put behind each byte
// until it has grown to an integer. This is the order of bytes of all processors that the program runs on.
static_assert(std::endian::native == std::endian::little);
VISTORAMA_KERNEL void StoreAsFloats(const Bytes& bytes, float* to)
{
    constexpr Bytes zeros{};
    for (const Bytes& pairs :
         {__builtin_shufflevector(bytes, zeros, 0, 16, 1, 16, 2, 16, 3, 16, 4, 16, 5, 16, 6, 16, 7, 16),
          __builtin_shufflevector(bytes, zeros, 8, 16, 9, 16, 10, 16, 11, 16, 12, 16, 13, 16, 14, 16, 15,
                                  16)}) {
        StoreIntegers(
            __builtin_shufflevector(pairs, zeros, 0, 1, 16, 16, 2, 3, 16, 16, 4, 5, 16, 16, 6, 7, 16, 16),
            to);
        StoreIntegers(__builtin_shufflevector(pairs, zeros, 8, 9, 16, 16, 10, 11, 16, 16, 12, 13, 16, 16, 14,
                                              15, 16, 16),
                      to + 4);
        to += 8;
    }
}

VISTORAMA_KERNEL void Spread(const uint8_t* const* rows, Range elements, float* block)
{
    size_t e = elements.begin;
    for (; e + 16 <= elements.end; e += 16) {
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

// The sums of one result pixel in all rows: Channels elements of the tile.
template <size_t Channels, class Width>
VISTORAMA_KERNEL void ScalePixel(const float* source, const float* weights, int count,
                                 float (*result)[blockRows])
{
    constexpr size_t parts = blockRows / Width::count;
    using Vector = typename Width::Floats;
    Vector sums[Channels][parts]{};
    for (int tap = 0; tap < count; ++tap) {
        const Vector weight = weights[tap] - Vector{};
        for (size_t c = 0; c < Channels; ++c) {
            for (size_t part = 0; part < parts; ++part) {
                Vector values;
                Load(values, source + part * Width::count);
                sums[c][part] += weight * values;
            }
            source += blockRows;
        }
    }
    for (size_t c = 0; c < Channels; ++c) {
        for (size_t part = 0; part < parts; ++part) {
            Store(&result[c][part * Width::count], sums[c][part]);
        }
    }
}

template <size_t Channels, class Width>
VISTORAMA_KERNEL void Scale(const float* block, const ColumnTaps& taps, Range columns, ScaleTarget target)
{
    // 16 pixels fill a whole number of tiles, whatever the channels.
    constexpr size_t pixels = tileElements;
    alignas(64) float tiles[Channels][tileElements][blockRows] = {};
    for (size_t column = columns.begin; column < columns.end; column += pixels) {
        const size_t present = std::min(pixels, columns.end - column);
        for (size_t i = 0; i < present; ++i) {
            const float* source = block + static_cast<size_t>(taps.first[column + i]) * Channels * blockRows;
            const float* weights = &taps.weights[taps.firstWeight[column + i]];
            ScalePixel<Channels, Width>(source, weights, taps.count[column + i], &tiles[0][0] + i * Channels);
        }
        const size_t used = (present * Channels + tileElements - 1) / tileElements;
        for (size_t tile = 0; tile < used; ++tile) {
            TurnTile(tiles[tile], target.floats + column * Channels + tile * tileElements, target.stride);
        }
    }
}

template <class Width>
VISTORAMA_KERNEL void Sum(const float* const* rows, const float* weights, size_t rowCount, size_t elements,
                          float* sums)
{
    using Vector = typename Width::Floats;
    constexpr size_t parts = tileElements / Width::count;
    for (size_t e = 0; e < elements; e += tileElements) {
        Vector parted[parts]{};
        for (size_t r = 0; r < rowCount; ++r) {
            const Vector weight = weights[r] - Vector{};
            for (size_t part = 0; part < parts; ++part) {
                Vector values;
                Load(values, rows[r] + e + part * Width::count);
                parted[part] += weight * values;
            }
        }
        for (size_t part = 0; part < parts; ++part) {
            Store(sums + e + part * Width::count, parted[part]);
        }
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
