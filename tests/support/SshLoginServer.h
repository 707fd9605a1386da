#pragma once

#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/net/Event.h"
#include "support/MemorySftpServer.h"
#include "support/ScriptedServer.h"

// A server of SSH that asks for passwords as a test tells it, with SFTP in memory after that. One client
// after the other, on a thread of its own.
class CSshLoginServer {
public:
    struct Question {
        std::string text = {};
        bool isShown = false;    // what is typed
        std::string answer = {}; // the right one
    };
    struct Rules {
        std::string user = "anna";
        bool takesNothing = false;                         // a login without anything
        std::string password = {};                         // empty: not asked for as such
        std::vector<std::vector<Question>> questions = {}; // rounds; none: not asked
        bool wantsBoth = false;                            // password, and then questions
        bool hasSftp = true;
        bool disconnectsRefused = false; // hangs up after the first refusal
    };

    explicit CSshLoginServer(Rules rules);
    ~CSshLoginServer();
    CSshLoginServer(const CSshLoginServer&) = delete;
    CSshLoginServer& operator=(const CSshLoginServer&) = delete;

    FTPDestinationConnection GetDestination(const QString& password) const;
    // The host key's blob.
    QByteArray GetHostKey() const { return hostKey; }
    // What clients have sent as passwords and answers, "password:..." or "answer:...", in order.
    std::vector<std::string> GetSecretsSeen();

private:
    struct Visit;

    void Serve(CSocket client);

    const Rules rules;
    CListener listener;
    CEvent stop;
    std::string keyFile; // the key itself, in the form of key files
    QByteArray hostKey;
    std::mutex lock;
    std::vector<std::string> secretsSeen; // guarded by lock
    std::thread thread;
};
