#include "ftpengine/sftp/SftpChannel.h"

#include <array>

#include "ftpengine/messages/EngineStatus.h"

namespace {

constexpr uint32_t ourVersion = 3;
constexpr int versionNotSupported = 10043;
constexpr std::size_t lengthSize = sizeof(uint32_t);
// No server sends more: names come in hundreds, and nobody here asks for more than 32 KiB of a file.
constexpr std::size_t longestPacket = 1 << 20;

} // namespace

void CSftpChannel::Start()
{
    CSftpRequest(SftpType::Init).AddUint32(ourVersion).AppendTo(outgoing, 0);
    while (!isStarted) {
        Exchange();
    }
    CSftpFields fields(version);
    if (fields.TakeUint32() < ourVersion) {
        ThrowTracedLiterally("CSftpChannel, version too old", versionNotSupported);
    }
    extensions = ReadExtensions(fields);
}

uint32_t CSftpChannel::Post(const CSftpRequest& request)
{
    ++lastId;
    unanswered.insert(lastId);
    request.AppendTo(outgoing, lastId);
    return lastId;
}

SftpAnswer CSftpChannel::Await(uint32_t id)
{
    auto answer = answers.extract(id);
    while (!answer) {
        Exchange();
        answer = answers.extract(id);
    }
    return std::move(answer.mapped());
}

// One step: what can be sent is sent, and what has come is taken; waits if there was neither.
void CSftpChannel::Exchange()
{
    const bool hasSent = SendSome();
    const bool hasReceived = ReceiveSome();
    if (!hasSent && !hasReceived) {
        stream.Wait();
    }
}

bool CSftpChannel::SendSome()
{
    if (sent == outgoing.size()) {
        return false;
    }
    const std::size_t count = stream.Write(std::string_view(outgoing).substr(sent));
    sent += count;
    if (sent == outgoing.size()) {
        outgoing.clear();
        sent = 0;
    }
    return count > 0;
}

bool CSftpChannel::ReceiveSome()
{
    std::array<char, 65536> block;
    const std::size_t count = stream.Read(block.data(), block.size());
    incoming.append(block.data(), count);
    while (TakePacket()) {
    }
    incoming.erase(0, taken);
    taken = 0;
    return count > 0;
}

// False if the next packet isn't there whole.
bool CSftpChannel::TakePacket()
{
    const std::string_view rest = std::string_view(incoming).substr(taken);
    if (rest.size() < lengthSize) {
        return false;
    }
    const std::size_t length = CSftpFields(rest).TakeUint32();
    if (length > longestPacket) {
        ThrowTracedLiterally("CSftpChannel, packet too long", EngineStatus::MessageTooLong);
    }
    if (rest.size() < lengthSize + length) {
        return false;
    }
    taken += lengthSize + length;
    FileAnswer(rest.substr(lengthSize, length));
    return true;
}

void CSftpChannel::FileAnswer(std::string_view packet)
{
    if (packet.empty()) {
        ThrowTracedLiterally("CSftpChannel, empty packet", EngineStatus::UnknownReply);
    }
    const auto type = static_cast<SftpType>(packet[0]);
    packet.remove_prefix(1);
    if (!isStarted) {
        if (type != SftpType::Version) {
            ThrowTracedLiterally("CSftpChannel, no version", EngineStatus::UnknownReply);
        }
        version = packet;
        isStarted = true;
        return;
    }
    const uint32_t id = CSftpFields(packet).TakeUint32();
    if (unanswered.erase(id) == 0) {
        ThrowTracedLiterally("CSftpChannel, answer without request", EngineStatus::UnknownReply);
    }
    answers[id] = {.type = type, .fields = std::string(packet.substr(sizeof id))};
}
