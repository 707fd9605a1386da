#include "Check.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/secrets/OneTimePassword.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const std::string_view reply(reinterpret_cast<const char*>(bytes), size);
    const std::string password = "This is a test.";
    const auto challenge = FindOtpChallenge(reply);
    // The work grows with the number; that great ones are refused is left to the tests.
    if (challenge && challenge->sequenceNumber > 1000) {
        return 0;
    }
    try {
        const std::string answer = AnswerPasswordRequest(reply, password);
        Check(challenge.has_value() || answer == password, "without a challenge the password is the answer");
        Check(answer.find('\n') == std::string::npos, "an answer is one line");
    } catch (int status) {
        Check(status == EngineStatus::UnknownReply, "a refused challenge has its number");
    }
    return 0;
}
