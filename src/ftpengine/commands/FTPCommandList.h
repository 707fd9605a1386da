#pragma once

#include <string_view>

#include "ftpengine/commands/DataTransfer.h"
#include "ftpengine/commands/FTPCommand.h"

// A command whose answer comes over a data connection.
class CFTPCommandList final : public CFTPCommand {
public:
    // verb: "LIST" or "NLST".
    CFTPCommandList(std::string_view verb, const DataEndpoint& endpoint);
    ~CFTPCommandList() override;

    // The reply, when the listing is there as a whole. Throws also the failure of the data connection, after
    // which nobody waits for a reply. A reply that is no success signals the abort event.
    FTPReply Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                     Milliseconds sendTimeout, Milliseconds receiveTimeout) override;

    // What was received, up to the first zero byte. To be called after an Execute that was a success.
    std::string_view GetListing() const;

private:
    class CReceiver;
    const std::unique_ptr<CReceiver> receiver;
};
