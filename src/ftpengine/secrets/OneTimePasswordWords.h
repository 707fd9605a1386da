#pragma once

// The standard dictionary of RFC 2289, appendix D: each word stands for 11 bits, its index. Words of up to
// four letters, filled with zeros.
extern const char OneTimePasswordWords[2048][5];
