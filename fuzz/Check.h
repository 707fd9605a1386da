#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the program if what must hold for every input does not hold for this one.
inline void Check(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}
