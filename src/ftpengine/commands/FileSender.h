#pragma once

#include <chrono>
#include <optional>
#include <string_view>

#include <QFile>

#include "ftpengine/commands/FTPCommandSTOR.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/Socket.h"

// Sends one file over one data connection. Used by the worker of CFTPCommandSTOR alone, and destroyed with
// the command. Throws nothing and reports no failure: the server's reply tells the story.
class CFileSender {
public:
    // stall: how long the connection may take no byte before it is given up.
    CFileSender(const CFTPCommandSTOR::Transfer& transfer, std::chrono::milliseconds stall);

    // stop: from its signal on, there is time for as long as a stall to bring the file to its end.
    void Run(const CEvent& stop);

private:
    using Clock = std::chrono::steady_clock;

    bool Connect();
    bool OpenFile();
    void SendFile(const CEvent& stop);
    bool SendBlock(std::string_view block, const CEvent& stop);
    bool WaitUntilWritable(const CEvent& stop);
    bool IsOverdue(const CEvent& stop);

    const CFTPCommandSTOR::Transfer transfer;
    const std::chrono::milliseconds stall;
    CSocket socket;
    QFile file;
    std::optional<Clock::time_point> deadline; // none before the stop is signalled
};
