#pragma once

#include <array>
#include <cstdint>

#include <QColor>
#include <QFont>
#include <QString>

#include "effects/StampParams.h"

// What the records of stamps hold, as their dialogs show it: place, colour and font.

// Where a stamp goes on its picture, as nine places of a 3 by 3 grid, row by row from the top left.
struct StampPlace {
    int32_t position; // of CStampParams
    const char* objectName;
    const char* name; // for people
};

inline constexpr int StampGridWidth = 3;

inline constexpr std::array<StampPlace, 9> StampPlaces{{
    {5, "topLeft", "Top left"},
    {4, "top", "Top"},
    {6, "topRight", "Top right"},
    {1, "left", "Left"},
    {0, "centre", "Centre"},
    {2, "right", "Right"},
    {9, "bottomLeft", "Bottom left"},
    {8, "bottom", "Bottom"},
    {10, "bottomRight", "Bottom right"},
}};

// The place at which any position shows its stamp: left goes before right, and top before bottom.
constexpr int32_t CanonicalPosition(int32_t position)
{
    const int32_t horizontal = position & 1 ? 1 : position & 2;
    const int32_t vertical = position & 4 ? 4 : position & 8;
    return horizontal | vertical;
}

// The colour of a signature: red in the low byte, then green, then blue. 0 is no black but a colour by
// contrast with the picture, so black itself can't be chosen; 1 is as good as black.
QColor ToQColor(uint32_t colour);
uint32_t FromQColor(const QColor& colour);

// A font as the font dialog and a signature's record exchange it.
struct LogFont {
    int32_t height = 0; // pixels at 96 to the inch; below 0: of the characters without their leading
    int32_t weight = 400;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    QString faceName = {};

    bool operator==(const LogFont&) const = default;
};

LogFont LogFontOf(const CTextStampParams& params);

// The size goes into the record as the number that it is, in pixels, though the stamp takes it as points: the
// stamp is a third larger than the font in the dialog. Projects hold it so.
void StoreLogFont(const LogFont& font, CTextStampParams& params);

// For the font dialog, which counts in points.
QFont ToQFont(const LogFont& font);
LogFont FromQFont(const QFont& font);
