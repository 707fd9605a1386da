#pragma once

#include <cstddef>
#include <functional>

// Does the work for each number below count, on all cores, and returns when all is done; a single one is done
// on the caller's thread. The first failure ends it at the next number of each thread and is rethrown.
void OnAllCores(size_t count, const std::function<void(size_t)>& work);
