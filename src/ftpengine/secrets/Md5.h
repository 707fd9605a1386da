#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// The MD5 message digest (RFC 1321). Only for one-time passwords; it protects nothing else here.
std::array<uint8_t, 16> Md5(std::string_view message);
