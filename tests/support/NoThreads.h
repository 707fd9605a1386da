#pragma once

#include <cstddef>

// For as long as it lives, the system refuses to make threads in this process: std::thread throws
// std::system_error. It asks for stacks that no address space has room for.
class CNoThreads {
public:
    CNoThreads();
    ~CNoThreads();
    CNoThreads(const CNoThreads&) = delete;
    CNoThreads& operator=(const CNoThreads&) = delete;

private:
    std::size_t usualSize = 0; // of a stack, in bytes
};
