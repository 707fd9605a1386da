#pragma once

#include <cstdint>
#include <vector>

#include <QByteArray>
#include <QSize>

// Decoding of JPEG by libjpeg itself: libvips gives up on a file with many small damages, and can't tell the
// damages of one file from those that another thread meets at the same time.

struct JpegPicture {
    QSize size;
    int channels = 0; // 1: grey, 3: RGB, 4: CMYK with 0 for no ink
    std::vector<uint8_t> bytes;
    std::vector<uint8_t> profile; // ICC; empty if there is none
    bool isWhole = true;
};

// file: all bytes of it. shrink: 1, 2, 4 or 8; sizes are rounded up. Damaged parts are grey. Thread-safe.
// Throws CNoPixelsException if nothing at all can be decoded.
JpegPicture DecodeJpeg(const QByteArray& file, int shrink);
