#pragma once

#include <chrono>
#include <string>

#include "ftpengine/net/Channel.h"

// Where a data connection goes, in passive mode.
struct DataEndpoint {
    SocketAddress address;     // the control connection's peer, with the port that it has named
    CTlsClient* tls = nullptr; // protects it; none in clear. Borrowed from the control connection's stream
};

// The data connection of one transfer and what goes over it, in one direction. Never waits, so that one
// thread looks after it and after the control connection at once. Lives on the stack of its command; its
// destruction resets a connection that hasn't come to its end.
class CDataTransfer {
public:
    using Clock = std::chrono::steady_clock;

    explicit CDataTransfer(const DataEndpoint& endpoint) : endpoint(endpoint) {}
    virtual ~CDataTransfer();
    CDataTransfer(const CDataTransfer&) = delete;
    CDataTransfer& operator=(const CDataTransfer&) = delete;

    // Begins to connect.
    void Begin();
    // Goes on with it for a while. True if there is more to be done at once, false if it has to wait, or is
    // over.
    bool Advance();
    // What to wait for before it is worth while to go on; only if it isn't over.
    WaitedDescriptor GetWanted() const;

    bool IsOver() const { return state == State::Finished || failure != 0; }
    // EngineStatus.h; 0 if it is under way or finished.
    int GetFailure() const { return failure; }
    // Of the last byte, or of its end.
    Clock::time_point GetLastProgress() const { return lastProgress; }

    // Ends it: with a reset, so that the peer doesn't take a part for the whole. Nothing if it is over.
    void GiveUp(int status);
    virtual bool IsSending() const = 0;

protected:
    enum class State { Unborn, Connecting, Protecting, Moving, Ending, Finished };
    enum class Moved { Some, MustWait, All };

    // Moves as much as one call does. Throws an int.
    virtual Moved Move(CChannel& channel) = 0;
    // in: where it was when it failed.
    virtual void TraceFailure(State in, int status) const;

private:
    Moved Step();
    Moved Connect();
    Moved Protect();
    Moved End();

    const DataEndpoint endpoint;
    CChannel channel;
    State state = State::Unborn;
    int failure = 0;
    Clock::time_point lastProgress = Clock::now();
};

// Takes what a server sends, up to a limit; more is a failure, 10040.
class CDataReceiver : public CDataTransfer {
public:
    CDataReceiver(const DataEndpoint& endpoint, std::size_t maximum)
        : CDataTransfer(endpoint), maximum(maximum)
    {}

    bool IsSending() const override { return false; }
    const std::string& GetBytes() const { return bytes; }
    std::string TakeBytes() { return std::move(bytes); }

protected:
    Moved Move(CChannel& channel) override;

private:
    const std::size_t maximum;
    std::string bytes;
};
