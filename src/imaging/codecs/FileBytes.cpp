#include "imaging/codecs/FileBytes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr size_t pieceSize = 16384;

} // namespace

CFileBytes::CFileBytes(int descriptor) : descriptor(descriptor)
{
    struct stat status {};
    if (::fstat(descriptor, &status) == 0 && status.st_size > 0) {
        length = static_cast<size_t>(status.st_size);
    }
}

size_t CFileBytes::Read(size_t offset, uint8_t* buffer, size_t count) const
{
    size_t done = 0;
    while (done < count) {
        const ssize_t part =
            ::pread(descriptor, buffer + done, count - done, static_cast<off_t>(offset + done));
        if (part < 0 && errno == EINTR) {
            continue;
        }
        if (part <= 0) {
            break;
        }
        done += static_cast<size_t>(part);
    }
    return done;
}

std::optional<size_t> CFileBytes::FindLast(uint8_t byte, size_t end) const
{
    std::array<uint8_t, pieceSize> piece;
    while (end > 0) {
        const size_t begin = end - std::min(end, piece.size());
        const size_t count = Read(begin, piece.data(), end - begin);
        for (size_t i = count; i > 0; --i) {
            if (piece[i - 1] == byte) {
                return begin + i - 1;
            }
        }
        end = begin;
    }
    return std::nullopt;
}

bool CFileBytes::AreAlike(size_t begin, size_t end) const
{
    std::array<uint8_t, pieceSize> piece;
    std::optional<uint8_t> first;
    while (begin < end) {
        const size_t count = Read(begin, piece.data(), std::min(end - begin, piece.size()));
        if (count == 0) {
            break;
        }
        first = first.value_or(piece[0]);
        if (std::any_of(piece.begin(), piece.begin() + static_cast<ptrdiff_t>(count),
                        [&](uint8_t each) { return each != *first; })) {
            return false;
        }
        begin += count;
    }
    return true;
}
