#pragma once

#include <memory>
#include <netinet/in.h>
#include <string_view>

#include "ftpengine/commands/FTPCommand.h"
#include "ftpengine/net/ThreadDriver.h"

class CListReceiver;

// A command whose answer comes over a data connection, which a worker of its own reads while the task's
// thread waits for the reply. The destructor waits for the worker.
class CFTPCommandList final : public CFTPCommand {
public:
    // verb: "LIST" or "NLST". address: from the reply to PASV.
    CFTPCommandList(std::string_view verb, const sockaddr_in& address, const FTPTimeouts& timeouts);
    ~CFTPCommandList() override;

    // The reply; 10060 without text if the data didn't end after it. When the data connection fails, the
    // abort event is signalled, so that nobody waits for a reply any more; and so it is when the reply is no
    // success.
    FTPReply Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                     Milliseconds sendTimeout, Milliseconds receiveTimeout) override;

    // What was received, up to the first zero byte. To be called after an Execute that was a success.
    std::string_view GetListing() const;

private:
    bool StopWorker();

    const std::shared_ptr<CListReceiver> receiver; // shared with the worker
    std::shared_ptr<CEvent> workerAbort;           // none before Execute
    CThreadDriver driver;
};
