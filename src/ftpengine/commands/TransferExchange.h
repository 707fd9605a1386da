#pragma once

#include <chrono>
#include <optional>
#include <string_view>

#include "ftpengine/commands/DataTransfer.h"
#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/net/SocketStream.h"

// A command and the transfer that belongs to it, side by side on one thread. Used once, on the stack of the
// command; borrows stream and transfer.
class CTransferExchange {
public:
    // How long the server is listened to when the data connection has failed, which it may have words about,
    // before the failure is thrown. None: until its own time-out, and the failure counts for nothing.
    using LastWords = std::optional<std::chrono::milliseconds>;

    CTransferExchange(CSocketStream& stream, CDataTransfer& transfer, LastWords lastWords)
        : stream(stream), transfer(transfer), lastWords(lastWords)
    {}

    // Sends the command and waits for its final reply while the transfer goes on, then, after a success, for
    // the end of the transfer; after any other reply that is given up. The time for the reply begins with the
    // end of the data. Throws an int: 995, 10060, or the failure of either connection.
    FTPReply Run(std::string_view command);

private:
    using Clock = CDataTransfer::Clock;

    FTPReply AwaitReply();
    void AwaitEnd();
    Clock::time_point GetDeadline() const;
    bool WaitUntil(Clock::time_point deadline, bool listens, bool isReady);
    std::optional<FTPReply> HandleTimeout();

    CSocketStream& stream;
    CDataTransfer& transfer;
    const LastWords lastWords;
    Clock::time_point lastHeard = Clock::now();
};
