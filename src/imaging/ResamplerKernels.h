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
    std::vector<float> weights; // of all columns, one behind the other; the sum of each column's is 1
};

// rows: blockRows pointers, each to elements bytes. block: room for blockRows floats for each element.
void SpreadRows(const uint8_t* const* rows, size_t elements, float* block);

// block: pixels of the source, channels elements each. target: room for a row of result pixels, of as many
// elements, rounded up to whole tiles, in each of blockRows rows that are stride floats apart.
void ScaleColumns(const float* block, const ColumnTaps& taps, int channels, float* target, size_t stride);

// sums[e] = weights[0] * rows[0][e] + weights[1] * rows[1][e] + ... elements: a multiple of tileElements.
void SumRows(const float* const* rows, const float* weights, size_t rowCount, size_t elements, float* sums);

// To the nearest of 0 to 255; halves upwards.
inline uint8_t RoundToByte(float value)
{
    return static_cast<uint8_t>(std::min(std::max(value + 0.5f, 0.0f), 255.0f));
}
void RoundToBytes(const float* values, size_t count, uint8_t* bytes);

} // namespace ResamplerKernels
