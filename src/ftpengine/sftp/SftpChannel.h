#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "ftpengine/sftp/SftpPackets.h"

// The two-way stream of bytes to a server's SFTP. Used on one thread at a time. Throws an int
// (EngineStatus.h), after which it is of no further use.
class CSftpStream {
public:
    virtual ~CSftpStream() = default;
    CSftpStream(const CSftpStream&) = delete;
    CSftpStream& operator=(const CSftpStream&) = delete;

    // As many of the first bytes as are taken without waiting.
    virtual std::size_t Write(std::string_view bytes) = 0;
    // As many as are there and fit, without waiting; 0 if there are none.
    virtual std::size_t Read(char* bytes, std::size_t size) = 0;
    // Until one of the two may have more to do.
    virtual void Wait() = 0;
    // The goodbye. Throws nothing.
    virtual void Close() = 0;

protected:
    CSftpStream() = default;
};

// Sends requests and finds the answer of each, in whatever order they come, so that many can be on their way
// at once. Used on one thread at a time.
class CSftpChannel {
public:
    // stream: borrowed; outlives the channel.
    explicit CSftpChannel(CSftpStream& stream) : stream(stream) {}

    // Agrees on version 3, to be called once. Throws an int; 10043 if the server has older versions only.
    void Start();
    // "posix-rename@openssh.com".
    bool Offers(std::string_view extension) const { return extensions.count(extension) != 0; }

    // Puts a request into the queue and returns its number. The queue is sent by the next Await.
    uint32_t Post(const CSftpRequest& request);
    // Waits for the answer of a request. To be called once for each.
    SftpAnswer Await(uint32_t id);
    SftpAnswer Ask(const CSftpRequest& request) { return Await(Post(request)); }

private:
    void Exchange();
    bool SendSome();
    bool ReceiveSome();
    bool TakePacket();
    void FileAnswer(std::string_view packet);

    CSftpStream& stream;
    std::map<std::string, std::string, std::less<>> extensions;
    std::string outgoing;
    std::size_t sent = 0; // bytes of outgoing
    std::string incoming;
    std::size_t taken = 0;         // bytes of incoming
    std::string version;           // the first packet, until it is read
    bool isStarted = false;        // the first packet has come: the others have numbers
    uint32_t lastId = 0;           // of the last request
    std::set<uint32_t> unanswered; // requests whose answers have not come
    std::map<uint32_t, SftpAnswer> answers;
};
