#include "Check.h"
#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/messages/ReplyAssembler.h"
#include "ftpengine/messages/ServerFeatures.h"
#include "ftpengine/messages/ServerWords.h"

// All replies, and what is left, of bytes that come in pieces.
static std::string Assembled(std::string_view bytes, size_t pieceSize)
{
    CReplyAssembler assembler;
    std::string text;
    for (size_t at = 0; at < bytes.size(); at += pieceSize) {
        assembler.Append(bytes.substr(at, pieceSize));
        while (const auto one = assembler.Take()) {
            Check(one->ends_with('\n'), "a reply ends with a line");
            text += *one + '|';
        }
    }
    return text + assembler.TakeRest();
}

// Bytes of a control connection: replies, greetings, and where a server has finished speaking.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const std::string_view chunk(reinterpret_cast<const char*>(bytes), size);
    const FTPReply reply = ReadReply(chunk);
    Check(!chunk.empty() || reply.code == 0, "no bytes are no reply");
    Check(reply.text.size() <= static_cast<qsizetype>(size), "a reply's text is a piece of the chunk");
    const FTPReply greeting = ReadGreeting(chunk);
    Check(greeting.code >= -99 && greeting.code <= 999, "a greeting's code has three digits");

    CReplyLines whole;
    whole.Feed(chunk);
    CReplyLines inPieces;
    const size_t half = size / 2;
    inPieces.Feed(chunk.substr(0, half));
    inPieces.Feed(chunk.substr(half));
    Check(whole.IsAtEnd() == inPieces.IsAtEnd(), "the pieces in which bytes arrive make no difference");
    Check(!whole.IsAtEnd() || chunk.back() == '\n', "a reply ends with a line");

    Check(Assembled(chunk, 1) == Assembled(chunk, size + 1), "nor do they for the replies");
    ParseFeatures(chunk);
    const QString clean = CleanServerWords(reply.text);
    Check(CleanServerWords(clean) == clean, "what is clean stays as it is");
    return 0;
}
