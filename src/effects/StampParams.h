#pragma once

#include <cstdint>

#include <QString>

// Settings of what is laid over a finished picture: plain records, copied by value, kept in project files.
struct CStampParams {
    int32_t position = 0; // bits: 1 left, 2 right, 4 top, 8 bottom; no bit of a pair centres
    int32_t margin = 10;  // pixels from the edges that the bits name

    bool operator==(const CStampParams&) const = default;
};

// A watermark picture.
struct CImageStampParams : CStampParams {
    QString file;             // path; empty means no stamp
    int32_t transparency = 0; // percent: 0 opaque, 100 invisible

    bool operator==(const CImageStampParams&) const = default;
};

// A text signature.
struct CTextStampParams : CStampParams {
    QString text; // empty means no stamp
    QString font = QStringLiteral("MS Sans Serif");
    int32_t font_size = 8;  // points
    int32_t font_style = 0; // bits: 1 bold, 2 italic, 4 underline, 8 strikeout
    uint32_t color = 0;     // red in the low byte, then green, then blue; 0: by contrast with the picture

    bool operator==(const CTextStampParams&) const = default;
};
