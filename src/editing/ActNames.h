#pragma once

#include <cstdint>
#include <set>

#include <QString>

#include "resources/StringTable.h"

class CGalleryProject;

// What the makers of acts share.

// "Delete Picture" or "Delete 3 Pictures".
inline QString NameFor(StringId one, StringId many, qsizetype count)
{
    return count == 1 ? Text(one) : Text(many, static_cast<int>(count));
}

// The gallery, those that list it and those that it lists: what removing it touches.
std::set<int32_t> GalleriesAround(const CGalleryProject& project, int32_t index);
