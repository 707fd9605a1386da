#pragma once

#include <cstdint>
#include <vector>

#include <QSize>

#include "imaging/codecs/FileBytes.h"

// Decoding of JPEG by libjpeg itself: libvips gives up on a file with many small damages, and can't tell the
// damages of one file from those that another thread meets at the same time.

struct JpegPicture {
    QSize size;
    int channels = 0;             // 1: grey, 3: RGB, 4: CMYK with 0 for no ink
    std::vector<uint8_t> bytes;   // none if a taker had the rows
    std::vector<uint8_t> profile; // ICC; empty if there is none
    bool isWhole = true;
};

// Has the rows of a picture while it is decoded, so that it never is in memory as a whole.
class CJpegRowTaker {
public:
    // Three channels, no profile. False if the picture is rather wanted as a whole.
    virtual bool Begin(QSize size) = 0;
    // Where the next row is to be put; rows come from the top to the bottom.
    virtual uint8_t* GetPlace() = 0;
    // It has been put there.
    virtual void TakeRow() = 0;

protected:
    ~CJpegRowTaker() = default;
};

// shrink: 1, 2, 4 or 8; sizes are rounded up. Damaged parts are grey. taker: may be null; gets the rows of a
// picture that has three channels and no profile. Thread-safe. Throws CNoPixelsException if nothing at all
// can be decoded; rows that were taken by then are of no use.
JpegPicture DecodeJpeg(const CFileBytes& file, int shrink, CJpegRowTaker* taker = nullptr);
