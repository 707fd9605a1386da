#include "ftpengine/sftp/SftpUpload.h"

#include <QIODevice>

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/sftp/SftpRefusal.h"

namespace {

constexpr std::size_t blockSize = 32768; // what every server takes (section 3 of the draft)
constexpr std::size_t mostUnderWay = 64; // as much as the window of a usual server

} // namespace

CSftpUpload::CSftpUpload(CSftpChannel& channel, std::string_view handle, QIODevice& source)
    : channel(channel), handle(handle), source(source), block(blockSize, '\0')
{}

CSftpUpload::Result CSftpUpload::Run(const CRemoteSession::Progress& progress)
{
    PostBlocks();
    while (!atEnd) {
        AwaitBlock(progress);
        PostBlocks();
    }
    const uint32_t size = channel.Post(CSftpRequest(SftpType::FStat).AddString(handle));
    const uint32_t closed = channel.Post(CSftpRequest(SftpType::Close).AddString(handle));
    while (!underWay.empty()) {
        AwaitBlock(progress);
    }
    const SftpAnswer attributes = channel.Await(size);
    if (attributes.type == SftpType::Attrs) {
        result.size = CSftpFields(attributes.fields).TakeAttributes().size;
    }
    Keep(channel.Await(closed));
    return result;
}

// As many as may be under way, unless something has failed.
void CSftpUpload::PostBlocks()
{
    while (!atEnd && underWay.size() < mostUnderWay) {
        const qint64 count = source.read(block.data(), static_cast<qint64>(block.size()));
        result.isSourceRead = count >= 0;
        atEnd = count <= 0;
        if (!atEnd) {
            const auto bytes = std::string_view(block).substr(0, static_cast<std::size_t>(count));
            const uint32_t id = channel.Post(
                CSftpRequest(SftpType::Write).AddString(handle).AddUint64(result.sent).AddString(bytes));
            underWay.push_back({.id = id, .bytes = count});
            result.sent += static_cast<uint64_t>(count);
        }
    }
}

void CSftpUpload::AwaitBlock(const CRemoteSession::Progress& progress)
{
    const Block oldest = underWay.front();
    underWay.pop_front();
    Keep(channel.Await(oldest.id));
    if (!result.refusal && progress) {
        progress(oldest.bytes);
    }
}

void CSftpUpload::Keep(const SftpAnswer& answer)
{
    const std::optional<SftpStatus> status = answer.ReadStatus();
    if (!status) {
        ThrowTracedLiterally("CSftpUpload, unknown answer", EngineStatus::UnknownReply);
    }
    if (status->code != SftpCode::Ok) {
        atEnd = true;
        if (!result.refusal) {
            result.refusal = status;
        }
    }
}
