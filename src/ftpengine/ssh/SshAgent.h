#pragma once

#include <chrono>
#include <memory>
#include <thread>

#include "common/Descriptor.h"
#include "ftpengine/net/Event.h"

struct ssh_session_struct;

// The library writes to the agent without a word against the signal that ends a program whose reader has gone
// (SIGPIPE): as long as this lives, its thread doesn't get that. To be destroyed on the same thread.
class CNoPipeSignal final {
public:
    CNoPipeSignal();
    ~CNoPipeSignal();
    CNoPipeSignal(const CNoPipeSignal&) = delete;
    CNoPipeSignal& operator=(const CNoPipeSignal&) = delete;

private:
    bool wasBlocked = false; // by somebody else
};

// The connection to the user's agent (SSH_AUTH_SOCK), which holds keys and signs with them. The library waits
// for the agent's answers by itself, and an agent may ask a person first; so a thread of this object breaks
// the connection when the abort event is signalled or the time is over, and the library goes on without an
// agent. Owned by the login, which needs no agent after it, and lives on its thread.
class CSshAgent final {
public:
    CSshAgent() = default;
    ~CSshAgent();
    CSshAgent(const CSshAgent&) = delete;
    CSshAgent& operator=(const CSshAgent&) = delete;

    // False if the user has no agent, or it doesn't answer. To be called once. Throws an int if the system
    // has no thread left. session: of the library; ends when its connection to the agent does.
    bool Connect(ssh_session_struct* session, const std::shared_ptr<CEvent>& abort,
                 std::chrono::milliseconds patience);

private:
    const CNoPipeSignal noPipeSignal;
    CDescriptor descriptor{-1}; // the library has another one for the same connection
    CEvent finished;
    std::thread guard;
};
