#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

// The bytes of an open file, read in pieces, so that memory does not grow with the file. Thread-safe as far
// as the descriptor is used by nobody else.
class CFileBytes {
public:
    // descriptor: borrowed, of a file that can be read at any place.
    explicit CFileBytes(int descriptor);

    size_t GetLength() const { return length; }
    // How many bytes there are at offset, at most count. Fewer at the file's end, and where it can't be read.
    size_t Read(size_t offset, uint8_t* buffer, size_t count) const;

    // The place of the last such byte before end.
    std::optional<size_t> FindLast(uint8_t byte, size_t end) const;
    // Whether all bytes of a range are alike. Those after the file's end don't count.
    bool AreAlike(size_t begin, size_t end) const;

private:
    const int descriptor;
    size_t length = 0;
};
