#pragma once

class CGallery;

// True if candidate is the gallery itself or any gallery above it, by whatever road.
bool IsAtOrAbove(const CGallery& candidate, const CGallery& gallery);
