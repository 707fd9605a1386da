#pragma once

#include <memory>
#include <string_view>

#include <QString>

#include "ftpengine/commands/DataTransfer.h"
#include "ftpengine/commands/FTPCommand.h"
#include "ftpengine/messages/FTPMessages.h"

class CFileSender;

// Sends a file over a data connection.
class CFTPCommandSTOR final : public CFTPCommand {
public:
    struct Transfer {
        QString localPath;
        std::weak_ptr<CFTPTarget> progressTarget; // is told of each block; may be none
        DataEndpoint endpoint;
    };

    CFTPCommandSTOR(std::string_view remoteName, const Transfer& transfer);
    ~CFTPCommandSTOR() override;

    // The reply, when the file is sent. A failure of the data connection is left to the server's words, or to
    // the time-out. A reply that is no success signals the abort event.
    FTPReply Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                     Milliseconds sendTimeout, Milliseconds receiveTimeout) override;

private:
    const std::unique_ptr<CFileSender> sender;
};
