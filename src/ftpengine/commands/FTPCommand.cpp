#include "ftpengine/commands/FTPCommand.h"

#include <initializer_list>

#include "ftpengine/messages/EngineStatus.h"

namespace {

using Clock = std::chrono::steady_clock;

// Against a server that never comes to an end. Real ones send one preliminary reply, or two.
constexpr std::size_t maximalPreliminaryBytes = 1024 * 1024;

constexpr std::string_view lineEnd = "\r\n";

// In one piece: a password leaves no copies behind.
std::string Joined(std::initializer_list<std::string_view> parts)
{
    std::size_t size = 0;
    for (const std::string_view part : parts) {
        size += part.size();
    }
    std::string whole;
    whole.reserve(size);
    for (const std::string_view part : parts) {
        whole += part;
    }
    return whole;
}

} // namespace

bool BreaksLine(const QString& name)
{
    return name.contains(QLatin1Char('\r')) || name.contains(QLatin1Char('\n')) || name.contains(QChar(0));
}

bool BreaksLine(std::string_view bytes)
{
    return bytes.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

CFTPCommand::CFTPCommand(std::string_view text) : text(text.empty() ? std::string() : Joined({text, lineEnd}))
{}

CFTPCommand::CFTPCommand(std::string_view verb, std::string_view argument)
    : text(Joined({verb, " ", argument, lineEnd}))
{}

bool CFTPCommand::IsOneLine() const
{
    return !BreaksLine(std::string_view(text).substr(0, text.size() - std::min<std::size_t>(text.size(), 2)));
}

FTPReply CFTPCommand::Execute(CSocketStream& stream, const std::shared_ptr<CEvent>&, Milliseconds sendTimeout,
                              Milliseconds receiveTimeout)
{
    stream.Send(sendTimeout, text);
    return AwaitReply(stream, receiveTimeout, receiveTimeout);
}

FTPReply CFTPCommand::AwaitReply(CSocketStream& stream, Milliseconds firstTimeout, Milliseconds timeout)
{
    CPreliminaryReplies preliminary(stream.GetTimeouts().preliminary);
    wholeReply = stream.Receive(firstTimeout);
    while (preliminary.Includes(wholeReply)) {
        wholeReply = stream.Receive(timeout);
    }
    return ReadReply(wholeReply);
}

CPreliminaryReplies::CPreliminaryReplies(std::chrono::milliseconds limit)
    : deadline(limit == NoLimit ? Clock::time_point::max() : Clock::now() + limit)
{}

bool CPreliminaryReplies::Includes(std::string_view reply)
{
    if (ReadReply(reply).GetGroup() != 1) {
        return false;
    }
    bytes += reply.size();
    if (bytes > maximalPreliminaryBytes) {
        ThrowTraced("PreliminaryReplies throws: ", EngineStatus::MessageTooLong);
    }
    if (Clock::now() >= deadline) {
        ThrowTraced("PreliminaryReplies throws: ", EngineStatus::TimedOut);
    }
    return true;
}

CFTPCommandUser::CFTPCommandUser(std::string_view user) : CFTPCommand("USER", user) {}

CFTPCommandPassword::CFTPCommandPassword(std::string_view password) : CFTPCommand("PASS", password) {}

CFTPCommandPassword::~CFTPCommandPassword()
{
    Wipe();
}

std::string CFTPCommandPassword::GetShownText() const
{
    return "PASS ****\r\n";
}

CFTPCommandChangeDirectory::CFTPCommandChangeDirectory(std::string_view path) : CFTPCommand("CWD", path) {}

CFTPCommandCreateDirectory::CFTPCommandCreateDirectory(std::string_view name) : CFTPCommand("MKD", name) {}

CFTPCommandRenameFrom::CFTPCommandRenameFrom(std::string_view name) : CFTPCommand("RNFR", name) {}

CFTPCommandRenameTo::CFTPCommandRenameTo(std::string_view name) : CFTPCommand("RNTO", name) {}

CFTPCommandWelcomeReply::CFTPCommandWelcomeReply() : CFTPCommand("") {}

FTPReply CFTPCommandWelcomeReply::Execute(CSocketStream& stream, const std::shared_ptr<CEvent>&, Milliseconds,
                                          Milliseconds receiveTimeout)
{
    try {
        AwaitReply(stream, stream.GetTimeouts().greeting, receiveTimeout);
    } catch (int error) {
        ThrowTraced("WelcomeReply throws: ", error);
    }
    return ReadGreeting(GetWholeReply());
}
