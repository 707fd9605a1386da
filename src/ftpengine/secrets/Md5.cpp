#include "ftpengine/secrets/Md5.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <string>

namespace {

using State = std::array<uint32_t, 4>;

constexpr std::size_t blockSize = 64;

// RFC 1321, 3.4: the integer part of 4294967296 times abs(sin(i)), i in radians.
std::array<uint32_t, 64> MakeSines()
{
    std::array<uint32_t, 64> sines{};
    for (std::size_t i = 0; i < sines.size(); ++i) {
        sines[i] =
            static_cast<uint32_t>(std::floor(std::abs(std::sin(static_cast<double>(i + 1))) * 4294967296.0));
    }
    return sines;
}

uint32_t LittleEndianWord(const char* bytes)
{
    uint32_t word = 0;
    for (int i = 3; i >= 0; --i) {
        word = word << 8 | static_cast<uint8_t>(bytes[i]);
    }
    return word;
}

// One of the 64 steps: a function of three words by round, and which word of the block goes in.
struct Step {
    uint32_t mixed;
    std::size_t word;
};

Step StepOf(std::size_t i, uint32_t b, uint32_t c, uint32_t d)
{
    switch (i / 16) {
    case 0:
        return {(b & c) | (~b & d), i};
    case 1:
        return {(d & b) | (~d & c), (5 * i + 1) % 16};
    case 2:
        return {b ^ c ^ d, (3 * i + 5) % 16};
    default:
        return {c ^ (b | ~d), 7 * i % 16};
    }
}

void AddBlock(State& state, const char* block)
{
    static const std::array<uint32_t, 64> sines = MakeSines();
    constexpr int shifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
    auto [a, b, c, d] = state;
    for (std::size_t i = 0; i < sines.size(); ++i) {
        const Step step = StepOf(i, b, c, d);
        const uint32_t sum = a + step.mixed + sines[i] + LittleEndianWord(block + 4 * step.word);
        a = d;
        d = c;
        c = b;
        b += std::rotl(sum, shifts[i / 16][i % 4]);
    }
    state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d};
}

// RFC 1321, 3.1 and 3.2: one bit, zeros, and the length in bits, up to a whole number of blocks.
std::string Padded(std::string_view message)
{
    constexpr std::size_t lengthSize = 8;
    std::string padded(message);
    padded += '\x80';
    while (padded.size() % blockSize != blockSize - lengthSize) {
        padded += '\0';
    }
    const uint64_t bits = uint64_t{message.size()} * 8;
    for (std::size_t i = 0; i < lengthSize; ++i) {
        padded += static_cast<char>(bits >> 8 * i);
    }
    return padded;
}

} // namespace

std::array<uint8_t, 16> Md5(std::string_view message)
{
    State state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    const std::string padded = Padded(message);
    for (std::size_t i = 0; i < padded.size(); i += blockSize) {
        AddBlock(state, padded.data() + i);
    }
    std::array<uint8_t, 16> digest{};
    for (std::size_t i = 0; i < digest.size(); ++i) {
        digest[i] = static_cast<uint8_t>(state[i / 4] >> 8 * (i % 4));
    }
    return digest;
}
