#pragma once

#include <functional>
#include <memory>

#include "ftpengine/net/Socket.h"
#include "ftpengine/session/SessionSetting.h"

struct ssh_session_struct;
struct ssh_key_struct;

// An encrypted connection to a server that has shown who it is; nobody is logged in yet. Owns the library's
// session and its socket. Used on one thread at a time. The library never waits: all waits are made here, so
// that the abort event breaks each of them, and silence ends it.
class CSshConnection final {
public:
    // Connects and agrees on keys. Sets the identity in the log, and throws 12045 if it is in doubt; another
    // int if the network fails. setting, log: borrowed; outlive the connection.
    CSshConnection(const SessionSetting& setting, SessionLog& log);
    ~CSshConnection();
    CSshConnection(const CSshConnection&) = delete;
    CSshConnection& operator=(const CSshConnection&) = delete;

    ssh_session_struct* Get() const { return session.get(); }

    // Repeats a step of the library, with waits between, for as long as it answers `again`; returns its other
    // answer.
    int Repeat(int again, const std::function<int()>& step);
    // Until the server has sent something, or takes what is still to be sent. Throws an int: 995 if aborted,
    // 10060 after a minute's silence.
    void Wait();
    // After a step that failed: throws 10054 if the connection is gone, and otherwise what the caller gives.
    [[noreturn]] void Fail(int otherwise);
    // Once the library has taken what came before the end.
    bool IsPeerGone() const;
    // The library's words for what failed last.
    QString GetFailure() const;

    // The goodbye. Throws nothing.
    void Close();

private:
    struct CloseSession {
        void operator()(ssh_session_struct* session) const;
    };

    void SetOptions();
    void ShakeHands();
    void CheckIdentity();
    ServerIdentity ReadIdentity();

    const SessionSetting& setting;
    SessionLog& log;
    CSocket socket; // the library has a descriptor of its own for it
    int lent = -1;  // that one
    std::unique_ptr<ssh_session_struct, CloseSession> session;
};
