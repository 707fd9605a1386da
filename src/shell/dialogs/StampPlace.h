#pragma once

#include <array>
#include <cstdint>

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
