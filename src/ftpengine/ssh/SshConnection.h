#pragma once

#include <functional>
#include <memory>

#include "ftpengine/net/Socket.h"
#include "ftpengine/session/SessionSetting.h"

struct ssh_session_struct;
struct ssh_key_struct;

// A second descriptor of a socket, for the library: whether that closes what it was given, and when, depends
// on its version and on how far it came. Closed at the end if it is still there.
class CLentDescriptor final {
public:
    // socket: borrowed; outlives this. Throws an int.
    explicit CLentDescriptor(const CSocket& socket);
    ~CLentDescriptor();
    CLentDescriptor(const CLentDescriptor&) = delete;
    CLentDescriptor& operator=(const CLentDescriptor&) = delete;

    int Get() const { return descriptor; }

private:
    const CSocket& socket;
    const int descriptor;
};

// An encrypted connection to a server that has shown who it is; nobody is logged in yet. Owns the library's
// session and its socket. Used on one thread at a time. The library never waits: all waits are made here, so
// that the abort event breaks each of them, and silence ends it.
class CSshConnection final {
public:
    // Connects and agrees on keys. Sets the identity in the log, and throws 12045 if it is in doubt; another
    // int if the network fails. log: borrowed; outlives the connection.
    CSshConnection(const SessionSetting& setting, SessionLog& log);
    ~CSshConnection() = default;
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
    // Has closed or reset the connection.
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

    const SessionSetting setting;
    SessionLog& log;
    CSocket socket;
    CLentDescriptor lent;
    std::unique_ptr<ssh_session_struct, CloseSession> session;
};
