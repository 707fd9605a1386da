#include "ftpengine/session/FTPDialogue.h"

#include "ftpengine/messages/EngineStatus.h"

namespace {

std::string LineOf(std::string_view verb, std::string_view argument)
{
    std::string line(verb);
    if (!argument.empty()) {
        line += ' ';
        line += argument;
    }
    return line;
}

// A command with a transfer that belongs to somebody else.
class CTransferCommand final : public CFTPCommand {
public:
    CTransferCommand(std::string_view text, CDataTransfer& transfer) : CFTPCommand(text), transfer(transfer)
    {}

    FTPReply Execute(CSocketStream& stream, const std::shared_ptr<CEvent>&, Milliseconds,
                     Milliseconds) override
    {
        return CTransferExchange(stream, transfer, stream.GetTimeouts().lastWords).Run(GetText());
    }

private:
    CDataTransfer& transfer;
};

} // namespace

FTPReply CFTPDialogue::Say(std::string_view verb, std::string_view argument)
{
    CFTPCommand command(LineOf(verb, argument));
    return Execute(command);
}

std::string CFTPDialogue::Ask(std::string_view verb, std::string_view argument)
{
    CFTPCommand command(LineOf(verb, argument));
    Execute(command);
    return command.GetWholeReply();
}

std::optional<std::string> CFTPDialogue::TryToAsk(std::string_view verb, std::string_view argument)
{
    try {
        return Ask(verb, argument);
    } catch (const FTPReply& refusal) {
        TraceNumber("TryToAsk catches: ", refusal.code);
        return std::nullopt;
    }
}

ServerFeatures CFTPDialogue::AgreeOnFeatures()
{
    const ServerFeatures features = ParseFeatures(TryToAsk("FEAT").value_or(std::string()));
    if (features.utf8) {
        TryToAsk("OPTS", "UTF8 ON"); // for old servers; others speak it anyway
    }
    return features;
}

DataEndpoint CFTPDialogue::AskForEndpoint(bool extended)
{
    if (!extended || refusesExtended) {
        return AskForDataEndpoint();
    }
    try {
        return AskForDataEndpointExtended();
    } catch (const FTPReply& refusal) {
        if (refusal.GetGroup() != 5) {
            throw;
        }
        refusesExtended = true; // a router between may not let it pass (RFC 2428 has no word for that)
    }
    return AskForDataEndpoint();
}

FTPReply CFTPDialogue::Transfer(std::string_view verb, std::string_view argument, CDataTransfer& transfer)
{
    CTransferCommand command(LineOf(verb, argument), transfer);
    return Execute(command);
}
