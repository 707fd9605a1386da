#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

// The inner loops of the resampler, on blocks of rows side by side: element e of row r is at [e][r], so that
// one instruction works on the same element of several rows. Each sum is taken in the order of its weights
// and without fused operations, whatever the processor: every machine makes the same pixels. Pure functions.
namespace ResamplerKernels {

inline constexpr size_t blockRows = 16;
inline constexpr size_t tileElements = 16;

// The source pixels that the pixels of one row of a result are made of.
struct ColumnTaps {
    std::vector<int> first;
    std::vector<int> count;
    std::vector<size_t> firstWeight; // its place in weights
    std::vector<float> weights;      // of all columns, one after the other; the sum of each column's is 1
};

// Of elements or columns.
struct Range {
    size_t begin = 0;
    size_t end = 0;
};

// rows: blockRows pointers, each to bytes up to the range's end. block: room for blockRows floats for each
// byte.
void SpreadRows(const uint8_t* const* rows, Range elements, float* block);

// block: pixels of the source, channels elements each. columns: of the result; begins at a multiple of
// tileElements. target: room for a row of result pixels, of as many elements, rounded up to tileElements
// pixels, in each of blockRows rows that are stride floats apart.
struct ScaleTarget {
    float* floats;
    size_t stride;
};
void ScaleColumns(const float* block, const ColumnTaps& taps, Range columns, int channels,
                  ScaleTarget target);

// sums[e] = weights[0] * rows[0][e] + weights[1] * rows[1][e] + ... elements: a multiple of tileElements.
void SumRows(const float* const* rows, const float* weights, size_t rowCount, size_t elements, float* sums);

// To the nearest of 0 to 255; halves upwards.
inline uint8_t RoundToByte(float value)
{
    return static_cast<uint8_t>(std::min(std::max(value + 0.5f, 0.0f), 255.0f));
}
void RoundToBytes(const float* values, size_t count, uint8_t* bytes);

} // namespace ResamplerKernels
