#pragma once

#include <deque>
#include <optional>
#include <string>

#include "ftpengine/session/RemoteSession.h"
#include "ftpengine/sftp/SftpChannel.h"

// Sends one file to an open handle: many blocks are on their way at once, and the questions for the size and
// the closing follow the last one without waiting for it, since a server answers what is about one file in
// order. Used once, on the session's thread.
class CSftpUpload {
public:
    // All borrowed for as long as the upload lives.
    CSftpUpload(CSftpChannel& channel, std::string_view handle, QIODevice& source);

    struct Result {
        std::optional<SftpStatus> refusal; // the first one of any step
        std::optional<uint64_t> size;      // as the server tells it at the end
        uint64_t sent = 0;                 // bytes
        bool isSourceRead = true;          // false: the source could not be read to its end
    };
    // Returns when the server has closed the handle, after a refusal as well. Throws an int if the connection
    // breaks.
    Result Run(const CRemoteSession::Progress& progress);

private:
    struct Block {
        uint32_t id;
        int64_t bytes;
    };

    void PostBlocks();
    void AwaitBlock(const CRemoteSession::Progress& progress);
    void Keep(const SftpAnswer& answer);

    CSftpChannel& channel;
    const std::string_view handle;
    QIODevice& source;
    std::string block;
    std::deque<Block> underWay;
    bool atEnd = false;
    Result result;
};
