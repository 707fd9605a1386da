#pragma once

#include <memory>

#include "ftpengine/sftp/SftpChannel.h"
#include "ftpengine/ssh/SshConnection.h"

struct ssh_channel_struct;

// SFTP's stream over a connection on which somebody is logged in. Owns the connection.
class CSshChannelStream final : public CSftpStream {
public:
    // Opens the channel and asks for SFTP. Throws an int, and a refusal with 502 if the server has none.
    explicit CSshChannelStream(std::unique_ptr<CSshConnection> connection);

    std::size_t Write(std::string_view bytes) override;
    std::size_t Read(char* bytes, std::size_t size) override;
    void Wait() override { connection->Wait(); }
    void Close() override;

private:
    void Request(const std::function<int()>& step);
    void RequireOpen() const;

    const std::unique_ptr<CSshConnection> connection;
    ssh_channel_struct* channel = nullptr; // freed with the connection's session
};
