#pragma once

#include <memory>
#include <netinet/in.h>
#include <string_view>

#include <QString>

#include "ftpengine/commands/FTPCommand.h"
#include "ftpengine/messages/FTPMessages.h"
#include "ftpengine/net/ThreadDriver.h"

class CFileSender;

// Sends a file over a data connection, by a worker of its own, while the task's thread waits for the reply.
// The destructor waits for the worker, so a failure reaches the task only when the file is sent or given up.
class CFTPCommandSTOR final : public CFTPCommand {
public:
    struct Transfer {
        QString localPath;
        std::weak_ptr<CFTPTarget> progressTarget; // is told of each block; may be none
        sockaddr_in address{};                    // from the reply to PASV
    };

    CFTPCommandSTOR(std::string_view remoteName, const Transfer& transfer, const FTPTimeouts& timeouts);

    // The reply. It has to come within the receive time-out after the preliminary one: the clock doesn't stop
    // for the transfer. A reply that is no success signals the abort event.
    FTPReply Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                     Milliseconds sendTimeout, Milliseconds receiveTimeout) override;

private:
    const std::shared_ptr<CFileSender> sender; // shared with the worker
    CThreadDriver driver;
};
