#pragma once

#include <cstdint>
#include <optional>

#include "common/Exceptions.h"

class CGalleryProject;

// What can't be done with the root, the gallery that all others stand below: why, and what to do instead.
// Nothing for all that is possible.

// It goes if exactly one gallery can take its place.
std::optional<CGenericException> WhyNotRemoved(const CGalleryProject& project, int32_t gallery);
// There is no place beside it.
std::optional<CGenericException> WhyNotDuplicated(const CGalleryProject& project, int32_t gallery);
