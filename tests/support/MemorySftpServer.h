#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ftpengine/sftp/SftpChannel.h"

// A server of SFTP, version 3, with its files in memory, that does what is right but where a test tells it
// otherwise. Takes bytes and gives bytes; whoever owns it carries them. Single-threaded.
class CMemorySftpServer {
public:
    struct Node {
        bool isDirectory = false;
        std::string bytes;
        std::string target; // of a link
        uint32_t permissions = 0;
        uint32_t modified = 1'700'000'000;
    };

    CMemorySftpServer();

    // What a client has sent, in pieces of any size.
    void Take(std::string_view bytes);
    // What is to be sent to the client. Whoever sends it empties it.
    std::string outgoing;

    // By absolute path; "/home" is the login's folder and there from the start.
    std::map<std::string, Node> nodes;
    std::map<std::string, std::string> extensions = {{"posix-rename@openssh.com", "1"},
                                                     {"statvfs@openssh.com", "2"}};
    uint32_t version = 3;
    // Asked before each request: a status to answer with instead of doing it. path: empty for a request about
    // a handle.
    std::function<std::optional<SftpStatus>(SftpType type, const std::string& path)> refuse;
    std::size_t namesAtOnce = 100;          // of a listing
    std::size_t readAtOnce = SIZE_MAX;      // bytes
    uint64_t freeBlocks = 1000;             // of 4096 bytes
    std::vector<std::string> listedBesides; // names in every listing
    std::optional<uint64_t> shownSize;      // instead of the true size of an open file
    bool answersLastFirst = false;          // what has come at once

    // The requests so far, as "OPEN /home/a".
    std::vector<std::string> requests;
    std::size_t answers = 0;

private:
    struct Handle {
        std::string path;
        std::size_t nextName = 0;
    };

    std::string Answer(SftpType type, uint32_t id, CSftpFields fields);
    std::string AnswerPath(SftpType type, uint32_t id, CSftpFields fields);
    std::string AnswerHandle(SftpType type, uint32_t id, CSftpFields fields);
    std::string AnswerExtended(uint32_t id, CSftpFields fields);
    std::string Open(uint32_t id, const std::string& path, CSftpFields fields);
    std::string OpenHandle(uint32_t id, const std::string& path);
    std::string ListSome(uint32_t id, Handle& handle);
    std::string Rename(uint32_t id, const std::string& from, const std::string& to, bool replaces);
    std::string Remove(uint32_t id, const std::string& path, bool isDirectory);
    std::string Resolve(std::string_view path) const;
    const Node* Find(std::string path) const;

    std::string incoming;
    std::map<std::string, Handle> handles;
    int lastHandle = 0;
};

// Carries bytes between a client in the test and the server. Has no time: where a client would wait for ever,
// it throws 10060.
class CMemorySftpStream final : public CSftpStream {
public:
    // server: borrowed.
    explicit CMemorySftpStream(CMemorySftpServer& server) : server(server) {}

    std::size_t Write(std::string_view bytes) override;
    std::size_t Read(char* bytes, std::size_t size) override;
    void Wait() override;
    void Close() override { isClosed = true; }

    std::size_t atOnce = 50'000;             // bytes, in both directions
    std::optional<std::size_t> answersToCut; // breaks after so many answers

    bool isClosed = false;

private:
    bool IsCut() const { return answersToCut && server.answers >= *answersToCut; }

    CMemorySftpServer& server;
};
