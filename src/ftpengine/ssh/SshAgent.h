#pragma once

#include <chrono>
#include <memory>
#include <thread>

#include "common/Descriptor.h"
#include "ftpengine/net/Event.h"

struct ssh_session_struct;

// The connection to the user's agent (SSH_AUTH_SOCK), which holds keys and signs with them. The library waits
// for the agent's answers by itself, and an agent may ask a person first; so a thread of this object breaks
// the connection when the abort event is signalled or the time is over, and the library goes on without an
// agent. Owned by the login, which needs no agent after it.
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
    CDescriptor descriptor{-1}; // the library has another one for the same connection
    CEvent finished;
    std::thread guard;
};
