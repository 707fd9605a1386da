#include "ftpengine/commands/FTPCommand.h"

#include "ftpengine/messages/EngineStatus.h"

namespace {

// Against a server that never comes to an end. Real ones send one preliminary reply, or two, and a greeting
// of a few chunks.
constexpr int maximalPreliminaryReplies = 100;
constexpr int maximalGreetingChunks = 100;

std::string WithLineEnd(std::string_view text)
{
    return text.empty() ? std::string() : std::string(text) + "\r\n";
}

std::string Line(std::string_view verb, std::string_view argument)
{
    return std::string(verb) + ' ' + std::string(argument);
}

} // namespace

CFTPCommand::CFTPCommand(std::string_view text) : text(WithLineEnd(text)) {}

bool CFTPCommand::IsOneLine() const
{
    const std::string_view line =
        std::string_view(text).substr(0, text.size() - std::min<std::size_t>(text.size(), 2));
    return line.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

FTPReply CFTPCommand::Execute(CSocketStream& stream, const std::shared_ptr<CEvent>&, Milliseconds sendTimeout,
                              Milliseconds receiveTimeout)
{
    stream.Send(sendTimeout, text);
    FTPReply reply;
    for (int i = 0; i < maximalPreliminaryReplies; ++i) {
        CSocketBuffer chunk;
        stream.Receive(receiveTimeout, chunk);
        reply = ReadReply(chunk.GetText());
        if (reply.GetGroup() != 1) {
            break;
        }
    }
    return reply;
}

CFTPCommandUser::CFTPCommandUser(std::string_view user) : CFTPCommand(Line("USER", user)) {}

CFTPCommandPassword::CFTPCommandPassword(std::string_view password) : CFTPCommand(Line("PASS", password)) {}

CFTPCommandChangeDirectory::CFTPCommandChangeDirectory(std::string_view path) : CFTPCommand(Line("CWD", path))
{}

CFTPCommandCreateDirectory::CFTPCommandCreateDirectory(std::string_view name) : CFTPCommand(Line("MKD", name))
{}

CFTPCommandRenameFrom::CFTPCommandRenameFrom(std::string_view name) : CFTPCommand(Line("RNFR", name)) {}

CFTPCommandRenameTo::CFTPCommandRenameTo(std::string_view name) : CFTPCommand(Line("RNTO", name)) {}

CFTPCommandWelcomeReply::CFTPCommandWelcomeReply() : CFTPCommand("") {}

FTPReply CFTPCommandWelcomeReply::Execute(CSocketStream& stream, const std::shared_ptr<CEvent>&, Milliseconds,
                                          Milliseconds)
{
    CSocketBuffer buffer;
    bool closed = false;
    try {
        for (int i = 0; !closed; ++i) {
            if (i == maximalGreetingChunks) {
                throw EngineStatus::UnknownReply;
            }
            CSocketBuffer chunk;
            stream.Receive(stream.GetTimeouts().greetingSilence, chunk);
            closed = chunk.GetText().empty();
            if (!closed) {
                buffer = chunk;
            }
        }
    } catch (int error) {
        // The silence is what tells that the greeting is complete.
        if (error != EngineStatus::TimedOut || buffer.GetText().empty()) {
            ThrowTraced("WelcomeReply throws: ", error);
        }
    }
    return ReadGreeting(buffer.GetText());
}
