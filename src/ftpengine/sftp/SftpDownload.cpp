#include "ftpengine/sftp/SftpDownload.h"

#include <array>

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/sftp/SftpRefusal.h"

namespace {

constexpr uint32_t blockSize = 32768; // what every server gives at once (section 3 of the draft)
constexpr uint32_t blocksAtOnce = 8;

std::string_view TakeBlock(const SftpAnswer& answer)
{
    if (answer.type != SftpType::Data) {
        ThrowTracedLiterally("ReadContent, no data", EngineStatus::UnknownReply);
    }
    return CSftpFields(answer.fields).TakeString();
}

// Several blocks that follow each other. What comes after one that is short is not taken: the next round
// begins there. False if nothing is to come after it: it began at the end, or the server has refused.
bool ReadRound(CSftpChannel& channel, std::string_view handle, SftpContent& content)
{
    std::array<uint32_t, blocksAtOnce> asked{};
    for (uint32_t i = 0; i < blocksAtOnce; ++i) {
        const uint64_t offset = static_cast<uint64_t>(content.bytes.size()) + i * blockSize;
        asked[i] = channel.Post(
            CSftpRequest(SftpType::Read).AddString(handle).AddUint64(offset).AddUint32(blockSize));
    }
    const qsizetype before = content.bytes.size();
    bool isWhole = true; // no gap before the next block
    for (const uint32_t id : asked) {
        const SftpAnswer answer = channel.Await(id);
        const std::optional<SftpStatus> status = answer.ReadStatus();
        if (status && isWhole && status->code != SftpCode::EndOfFile) {
            content.refusal = status;
        } else if (!status && isWhole) {
            const std::string_view block = TakeBlock(answer);
            content.bytes.append(block.data(), static_cast<qsizetype>(block.size()));
            isWhole = block.size() == blockSize;
        }
        isWhole = isWhole && !status;
    }
    return content.bytes.size() > before && !content.refusal;
}

} // namespace

SftpContent ReadContent(CSftpChannel& channel, std::string_view handle, int64_t maximum)
{
    SftpContent content;
    while (ReadRound(channel, handle, content) && content.bytes.size() <= maximum) {
    }
    return content;
}
