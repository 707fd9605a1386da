#pragma once

#include <cerrno>
#include <cstddef>
#include <unistd.h>

// An open file descriptor that is closed on every road. Owned by the function that opened it.
class CDescriptor {
public:
    // descriptor: negative for a file that could not be opened.
    explicit CDescriptor(int descriptor) : descriptor(descriptor) {}
    ~CDescriptor() { Close(); }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;

    int Get() const { return descriptor; }

    // Takes another one in place of what it has.
    void Reset(int other)
    {
        Close();
        descriptor = other;
    }

    // These leave the reason of a failure in errno.
    bool WriteAll(const void* bytes, size_t count)
    {
        const char* next = static_cast<const char*>(bytes);
        while (count > 0) {
            const ssize_t written = ::write(descriptor, next, count);
            if (written < 0 && errno == EINTR) {
                continue;
            }
            if (written < 0) {
                return false;
            }
            next += written;
            count -= static_cast<size_t>(written);
        }
        return true;
    }

    bool Close()
    {
        const int closing = descriptor;
        descriptor = -1;
        return closing < 0 || ::close(closing) == 0;
    }

private:
    int descriptor;
};
