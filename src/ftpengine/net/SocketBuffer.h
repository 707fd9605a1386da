#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

// Where the bytes of a chunk or a listing are gathered, 128 at a time. A value; filled by one thread.
class CSocketBuffer {
public:
    // The size of one receive. Meant for replies: a reply normally is one receive.
    static constexpr std::size_t ReceiveSize = 128;

    CSocketBuffer() : bytes(ReceiveSize + 1, '\0') {}

    // Room for ReceiveSize bytes and a final zero, where the next receive lands.
    char* GetReceivePosition() { return bytes.data() + receivePosition; }

    // Moves the receive position to ReceiveSize bytes of new, zeroed room.
    void Grow()
    {
        receivePosition = GetCapacity();
        bytes.resize(bytes.size() + ReceiveSize, '\0');
    }

    // In bytes; always a multiple of ReceiveSize.
    std::size_t GetCapacity() const { return bytes.size() - 1; }

    // Up to the first zero byte. Valid until the buffer changes.
    std::string_view GetText() const { return bytes.data(); }

private:
    std::vector<char> bytes; // one more than the capacity, the last one zero
    std::size_t receivePosition = 0;
};
