#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// One-time passwords (RFC 2289) with MD5. Pure functions over bytes.

// What a server asks for: "331 otp-md5 99 seed ext" has the number 99 and the seed "seed".
struct OtpChallenge {
    int32_t sequenceNumber = 0; // how often the hash is repeated; 0 if it isn't readable
    std::string seed;           // exactly as received, not folded to lower case
};

// None if the reply has no challenge.
std::optional<OtpChallenge> FindOtpChallenge(std::string_view reply);

// "INCH SEA ANNE LONG AHEM TOUR", see appendix D. The work grows with the sequence number.
std::string MakeOtpResponse(const OtpChallenge& challenge, std::string_view password);

// What to send as the password in answer to this reply: the password itself if there is no challenge in it.
// Throws an int, 6, for a sequence number beyond all reason, which would keep this thread busy for long.
std::string AnswerPasswordRequest(std::string_view reply, std::string_view password);

// The standard dictionary of RFC 2289, appendix D: each word stands for 11 bits, its index. Words of up to
// four letters, filled with zeros.
extern const char OneTimePasswordWords[2048][5];
