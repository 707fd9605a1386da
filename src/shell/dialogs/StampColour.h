#pragma once

#include <cstdint>

#include <QColor>

// The colour of a signature: red in the low byte, then green, then blue. 0 is no black but a colour by
// contrast with the picture, so black itself can't be chosen; 1 is as good as black.

inline QColor ToQColor(uint32_t color)
{
    return QColor(static_cast<int>(color & 0xff), static_cast<int>(color >> 8 & 0xff),
                  static_cast<int>(color >> 16 & 0xff));
}

inline uint32_t FromQColor(const QColor& color)
{
    return static_cast<uint32_t>(color.red()) | static_cast<uint32_t>(color.green()) << 8 |
           static_cast<uint32_t>(color.blue()) << 16;
}
