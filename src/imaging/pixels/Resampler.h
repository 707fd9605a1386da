#pragma once

#include <memory>
#include <vector>

#include <QRect>

#include "imaging/pixels/Pixels.h"

// A scaling of a picture: what size the whole of it gets, and which part of that is wanted. A plain value.
struct Resampling {
    QSize size;
    QRect area;       // inside size
    double scale = 1; // the least at which the picture serves

    bool operator==(const Resampling&) const = default;
};

// The pixels that a picture comes in.
struct PixelGrid {
    QSize size;
    int channels = 3;
    QRectF window; // the picture's place on them
};

// Scales one picture to several sizes while its rows come in: Lanczos with three lobes where it gets smaller,
// bicubic (Catmull-Rom) where it gets larger; alpha is premultiplied meanwhile. Needs memory for a few rows
// beside the results. One thread.
class CResampler {
public:
    // No area may be empty.
    CResampler(const PixelGrid& grid, const std::vector<Resampling>& resamplings);
    ~CResampler();
    CResampler(const CResampler&) = delete;
    CResampler& operator=(const CResampler&) = delete;

    // Where the next row of the picture is to be put, from the top to the bottom.
    uint8_t* GetPlace() { return &rows[static_cast<size_t>(nextRow) % blockRows * rowBytes]; }
    // It has been put there.
    void TakeRow();
    // Whether no more rows are needed.
    bool IsFull() const;
    // To be called once, when all needed rows have been taken. In the order of the resamplings.
    std::vector<CPixels> Finish();

private:
    class CScaling;
    static constexpr size_t blockRows = 16; // that many are scaled together

    void TakeBlock(int rowCount);
    void Premultiply(size_t firstPixel, size_t endPixel);

    const PixelGrid grid;
    const size_t rowBytes;
    std::vector<std::unique_ptr<CScaling>> scalings;
    std::vector<uint8_t> rows; // of the block that is being collected
    int nextRow = 0;
    std::vector<float> block;
};

// Whether the pixels are those of the result already.
bool IsUnscaled(const PixelGrid& grid, const Resampling& resampling);

// Of a picture in memory.
CPixels Resample(const CPixels& pixels, const Resampling& resampling);
