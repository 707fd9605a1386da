#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

class CGallery;

// True if candidate is the gallery itself or any gallery above it, by whatever road.
bool IsAtOrAbove(const CGallery& candidate, const CGallery& gallery);

// All galleries there are, each behind its children.
std::vector<CGallery*> ChildrenBeforeParents(const std::map<int32_t, std::unique_ptr<CGallery>>& galleries);
