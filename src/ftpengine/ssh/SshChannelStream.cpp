#include "ftpengine/ssh/SshChannelStream.h"

#include <algorithm>
#include <libssh/libssh.h>

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/FTPReply.h"
#include "ftpengine/sftp/SftpRefusal.h"
#include "resources/StringTable.h"

namespace {

// The library counts in int.
constexpr std::size_t mostAtOnce = 1 << 20;

} // namespace

CSshChannelStream::CSshChannelStream(std::unique_ptr<CSshConnection> openConnection)
    : connection(std::move(openConnection)), channel(ssh_channel_new(connection->Get()))
{
    if (channel == nullptr) {
        throw EngineStatus::NoBufferSpace;
    }
    Request([this] { return ssh_channel_open_session(channel); });
    Request([this] { return ssh_channel_request_subsystem(channel, "sftp"); });
}

void CSshChannelStream::Request(const std::function<int()>& step)
{
    if (connection->Repeat(SSH_AGAIN, step) == SSH_OK) {
        return;
    }
    if (ssh_get_error_code(connection->Get()) == SSH_REQUEST_DENIED && ssh_is_connected(connection->Get())) {
        throw MakeRefusal(RefusalCode::NotImplemented, Text(StringId::ServerHasNoSftp));
    }
    connection->Fail(EngineStatus::UnknownReply);
}

std::size_t CSshChannelStream::Write(std::string_view bytes)
{
    RequireOpen();
    const auto size = static_cast<uint32_t>(std::min(bytes.size(), mostAtOnce));
    const int written = ssh_channel_write(channel, bytes.data(), size);
    if (written < 0 && written != SSH_AGAIN) {
        connection->Fail(EngineStatus::ConnectionReset);
    }
    return static_cast<std::size_t>(std::max(written, 0));
}

std::size_t CSshChannelStream::Read(char* bytes, std::size_t size)
{
    RequireOpen();
    const int read =
        ssh_channel_read_nonblocking(channel, bytes, static_cast<uint32_t>(std::min(size, mostAtOnce)), 0);
    if (read > 0) {
        return static_cast<std::size_t>(read);
    }
    // A server that ends its SFTP has ended the session.
    const bool isOver = (read < 0 && read != SSH_AGAIN) || ssh_channel_is_eof(channel) != 0 ||
                        ssh_channel_is_closed(channel) != 0;
    if (isOver) {
        ThrowTracedLiterally("CSshChannelStream, the server has ended it", EngineStatus::ConnectionReset);
    }
    return 0;
}

void CSshChannelStream::Close()
{
    channel = nullptr;
    connection->Close();
}

void CSshChannelStream::RequireOpen() const
{
    if (channel == nullptr) {
        ThrowTracedLiterally("CSshChannelStream, used after its end", EngineStatus::ConnectionReset);
    }
}
