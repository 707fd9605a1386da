#pragma once

#include <string>
#include <string_view>

#include "ftpengine/commands/FTPCommandSequences.h"
#include "ftpengine/commands/TransferExchange.h"
#include "ftpengine/messages/ServerFeatures.h"

// What a session says to an FTP server, command by command. Owned by the session and used on its thread.
// Everything here throws an FTPReply for a refusal, and an int.
class CFTPDialogue final : public CFTPTransferSequence {
public:
    using CFTPTransferSequence::CFTPTransferSequence;

    // "DELE a name"; argument in the bytes that go out.
    FTPReply Say(std::string_view verb, std::string_view argument = {});
    // All lines of the reply.
    std::string Ask(std::string_view verb, std::string_view argument = {});
    // Nothing if the server refuses.
    std::optional<std::string> TryToAsk(std::string_view verb, std::string_view argument = {});

    // What it can do, as far as it tells; names are in UTF-8 from here on, if it can.
    ServerFeatures AgreeOnFeatures();
    // Where to open the data connection of the next command. extended: by EPSV, if the server takes it.
    DataEndpoint AskForEndpoint(bool extended);
    // The reply, when the transfer is complete.
    FTPReply Transfer(std::string_view verb, std::string_view argument, CDataTransfer& transfer);

private:
    bool refusesExtended = false;
};
