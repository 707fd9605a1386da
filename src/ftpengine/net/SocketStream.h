#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ftpengine/messages/ReplyAssembler.h"
#include "ftpengine/net/Channel.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/FTPTimeouts.h"
#include "ftpengine/net/TlsClient.h"

// A control connection: blocking operations with time-outs, broken by an abort event. Serves one task or
// session, which owns it and uses it on one thread. The destructor closes the connection.
class CSocketStream {
public:
    explicit CSocketStream(const FTPTimeouts& timeouts = {}) : timeouts(timeouts) {}
    ~CSocketStream();
    CSocketStream(const CSocketStream&) = delete;
    CSocketStream& operator=(const CSocketStream&) = delete;

    // Takes a connected socket. To be called once.
    void Open(CSocket connected, const std::shared_ptr<CEvent>& abortEvent);

    // From here on by TLS. What has come in clear before counts for nothing: somebody on the way may have
    // said it. Throws an int: 12157 if the two sides don't agree, 10060, 995.
    void Protect(std::unique_ptr<CTlsClient> client);
    // None in clear. For the data connections.
    CTlsClient* GetTls() const { return tls.get(); }
    // As the server has shown it; of a protected stream.
    ServerIdentity GetIdentity() const { return channel.GetTls()->GetIdentity(); }

    // Returns when the platform has taken all bytes. Replies that have come before are passed over: they
    // belong to what was said before. Throws an int: 10060 after the time-out, 995 if aborted while it waits,
    // or the connection's failure.
    void Send(std::chrono::milliseconds timeout, std::string_view bytes);

    // The next reply, up to its first zero byte, as soon as its final line is there (RFC 959, 4.2); or what
    // has come of it when the peer closes, breaks off, or is silent after a line without its end. Once empty
    // when the peer has closed. timeout: without a byte. Throws as Send does, and 10040 for a reply without
    // end; a reply that is there goes before an abort and before a failure.
    std::string Receive(std::chrono::milliseconds timeout);
    // The same without waiting; nothing if it would have to.
    std::optional<std::string> TryReceive();
    // A line that has come without its end, when the wait for that is over; nothing if there is none.
    std::optional<std::string> TakeLineWithoutEnd();
    // For whoever waits in its place, after TryReceive.
    WaitedDescriptor GetWanted() const { return channel.GetWanted(); }
    // Bytes, so that a wait can begin anew with each.
    std::size_t GetReceived() const { return received; }

    // For those who speak on this stream.
    const FTPTimeouts& GetTimeouts() const { return timeouts; }
    const CEvent& GetAbortEvent() const { return *abortEvent; }
    // Whom it is connected with. Throws an int if there is no connection any more.
    SocketAddress GetPeer() const;

private:
    enum class End { None, Closed, ClosedAndTold, Broken };

    bool ReadSome();
    std::string TakeEnd();
    void PassOverOldReplies();

    const FTPTimeouts timeouts;
    std::shared_ptr<CEvent> abortEvent; // the task's
    std::unique_ptr<CTlsClient> tls;
    CChannel channel; // after what it uses
    CReplyAssembler incoming;
    std::string farewell; // "421 ...", said unasked before the peer closed
    std::size_t received = 0;
    End end = End::None;
    int failure = 0; // if it is broken
};
