#include "ftpengine/secrets/OneTimePassword.h"

#include <array>

#include <QCryptographicHash>

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/secrets/SecretText.h"

namespace {

// Servers count down from some hundreds or thousands.
constexpr int32_t maximalSequenceNumber = 1000000;

using Key = std::array<uint8_t, 8>;

// RFC 2289, appendix A: the 16 bytes of the digest become 8.
Key FoldedDigest(std::string_view message)
{
    const QByteArray digest = QCryptographicHash::hash(
        QByteArray(message.data(), static_cast<qsizetype>(message.size())), QCryptographicHash::Md5);
    Key key{};
    for (std::size_t i = 0; i < key.size(); ++i) {
        const auto at = static_cast<qsizetype>(i);
        key[i] = static_cast<uint8_t>(digest[at] ^ digest[at + digest.size() / 2]);
    }
    return key;
}

// The sum of the 32 pairs of bits; its low two bits are the checksum.
unsigned ChecksumOf(const Key& key)
{
    unsigned sum = 0;
    for (const uint8_t byte : key) {
        sum += (byte >> 6) + (byte >> 4 & 3) + (byte >> 2 & 3) + (byte & 3);
    }
    return sum & 3;
}

std::string WordsOf(const Key& key)
{
    constexpr unsigned wordBits = 11;
    std::array<uint8_t, 9> bytes{};
    std::copy(key.begin(), key.end(), bytes.begin());
    bytes[8] = static_cast<uint8_t>(ChecksumOf(key) << 6);
    std::string words;
    for (unsigned word = 0; word < 6; ++word) {
        unsigned index = 0;
        for (unsigned bit = word * wordBits; bit < (word + 1) * wordBits; ++bit) {
            index = index << 1 | (bytes[bit / 8] >> (7 - bit % 8) & 1);
        }
        words += words.empty() ? "" : " ";
        words += OneTimePasswordWords[index];
    }
    return words;
}

} // namespace

std::optional<OtpChallenge> FindOtpChallenge(std::string_view reply)
{
    constexpr std::size_t prefixLength = 8; // "otp-md5" and the blank after it
    const std::size_t position = reply.find("otp-md5");
    if (position == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view rest = reply.substr(std::min(position + prefixLength, reply.size()));
    const std::size_t numberEnd = rest.find(' ');
    OtpChallenge challenge{.sequenceNumber = ParseInteger(rest.substr(0, numberEnd)), .seed = {}};
    if (numberEnd != std::string_view::npos) {
        rest.remove_prefix(numberEnd + 1);
        // From the second character on: so a blank at the head belongs to the seed. The end of the line is an
        // end, too (RFC 2289, 6.0).
        challenge.seed = rest.substr(0, rest.find_first_of(" \r\n", 1));
    }
    return challenge;
}

std::string MakeOtpResponse(const OtpChallenge& challenge, std::string_view password)
{
    std::string secret;
    secret.reserve(challenge.seed.size() + password.size()); // no copy is left behind by its growth
    secret.append(challenge.seed).append(password);
    Key key = FoldedDigest(secret);
    WipeText(secret);
    for (int32_t i = 0; i < challenge.sequenceNumber; ++i) {
        key = FoldedDigest({reinterpret_cast<const char*>(key.data()), key.size()});
    }
    return WordsOf(key);
}

std::string AnswerPasswordRequest(std::string_view reply, std::string_view password)
{
    const auto challenge = FindOtpChallenge(reply);
    if (!challenge) {
        return std::string(password);
    }
    if (challenge->sequenceNumber > maximalSequenceNumber) {
        ThrowTraced("AnswerPasswordRequest throws: ", EngineStatus::UnknownReply);
    }
    return MakeOtpResponse(*challenge, password);
}
