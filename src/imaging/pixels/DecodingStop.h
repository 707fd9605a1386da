#pragma once

#include <functional>

// For as long as it lives, decoding on its thread ends at the next rows once somebody wants it to: the
// picture has no pixels then. For threads that others wait for. On the stack of that thread, one at a time.
class CDecodingStop final {
public:
    // isWanted: asked often.
    explicit CDecodingStop(std::function<bool()> isWanted);
    ~CDecodingStop();
    CDecodingStop(const CDecodingStop&) = delete;
    CDecodingStop& operator=(const CDecodingStop&) = delete;

    // For the decoders. False on a thread that has no such object.
    static bool IsWanted();
    // Throws CNoPixelsException.
    static void ThrowIfWanted();

private:
    const std::function<bool()> isWanted;
};
