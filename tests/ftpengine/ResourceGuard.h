#pragma once

#include <cstddef>

// Expects, when it is destroyed, that there are as many descriptors and threads in this process as when it
// was made. To be the first member or base of a test. Threads that are about to end get a moment to do so.
class CResourceGuard {
public:
    CResourceGuard();
    ~CResourceGuard();
    CResourceGuard(const CResourceGuard&) = delete;
    CResourceGuard& operator=(const CResourceGuard&) = delete;

    // Waits until there are no more threads than at first; false if that takes too long.
    bool AwaitThreads() const;

private:
    const std::size_t descriptors;
    const std::size_t threads;
};
