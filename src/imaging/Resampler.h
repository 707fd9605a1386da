#pragma once

#include <memory>
#include <vector>

#include "imaging/Pixels.h"
#include "imaging/Resampling.h"

// Scaling of pictures: Lanczos with three lobes where a picture gets smaller, bicubic (Catmull-Rom) where it
// gets larger; alpha is premultiplied meanwhile. A picture can be scaled to several sizes while its rows come
// in.

// The pixels that a picture comes in.
struct PixelGrid {
    QSize size;
    int channels = 3;
    QRectF window; // the picture's place on them
};

// Some rows of a picture, made ready for all scalings of it.
class CRowBlock {
public:
    // size: of the whole picture, in pixels.
    CRowBlock(QSize size, int channels);

    static int GetRowCount();
    // top: a multiple of the row count. rows: one behind the other; at the picture's foot only those there
    // are.
    void Fill(int top, const uint8_t* rows);

    int GetTop() const { return top; }
    const float* GetFloats() const { return floats.data(); }

private:
    void Premultiply();

    const int height;
    const int channels;
    const size_t elements; // of a row
    std::vector<float> floats;
    int top = 0;
};

// One scaling of a picture whose rows come in blocks, from the top. Needs memory for a few rows beside the
// result.
class CResampler {
public:
    // The scaling has to be one, see IsUnscaled, and its area not empty.
    CResampler(const PixelGrid& grid, const Resampling& resampling);
    ~CResampler();
    CResampler(CResampler&& other) noexcept;

    // Whether the block of that top says anything about the result.
    bool Needs(int top) const;
    bool IsFull() const;
    void TakeBlock(const CRowBlock& block);
    // To be called once, when all blocks have been taken.
    CPixels Finish();

private:
    struct State;
    std::unique_ptr<State> state;
};

// Whether the pixels are those of the result already.
bool IsUnscaled(const PixelGrid& grid, const Resampling& resampling);

// Of a picture in memory.
CPixels Resample(const CPixels& pixels, const Resampling& resampling);
