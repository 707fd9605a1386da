#pragma once

#include <array>
#include <cstdint>

#include "resources/StringTable.h"

// Where a stamp goes on its picture, as nine places of a 3 by 3 grid, row by row from the top left.
struct StampPlace {
    int32_t position; // of CStampParams
    const char* objectName;
    StringId name;
};

inline constexpr int StampGridWidth = 3;

inline constexpr std::array<StampPlace, 9> StampPlaces{{
    {5, "topLeft", StringId::PlaceTopLeft},
    {4, "top", StringId::PlaceTop},
    {6, "topRight", StringId::PlaceTopRight},
    {1, "left", StringId::PlaceLeft},
    {0, "centre", StringId::PlaceCentre},
    {2, "right", StringId::PlaceRight},
    {9, "bottomLeft", StringId::PlaceBottomLeft},
    {8, "bottom", StringId::PlaceBottom},
    {10, "bottomRight", StringId::PlaceBottomRight},
}};

// The place at which any position shows its stamp: left goes before right, and top before bottom.
constexpr int32_t CanonicalPosition(int32_t position)
{
    const int32_t horizontal = position & 1 ? 1 : position & 2;
    const int32_t vertical = position & 4 ? 4 : position & 8;
    return horizontal | vertical;
}
