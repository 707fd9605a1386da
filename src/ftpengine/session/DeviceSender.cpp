#include "ftpengine/session/DeviceSender.h"

#include <cerrno>

#include <QIODevice>

#include "ftpengine/messages/EngineStatus.h"

CDeviceSender::CDeviceSender(const DataEndpoint& endpoint, QIODevice& source,
                             const CRemoteSession::Progress& progress)
    : CDataTransfer(endpoint), source(source), progress(progress)
{}

CDataTransfer::Moved CDeviceSender::Move(CChannel& channel)
{
    if (left.empty()) {
        const qint64 size = source.read(block.get(), blockSize);
        if (size < 0) {
            throw EngineStatus::FromErrno(errno);
        }
        if (size == 0) {
            return Moved::All;
        }
        left = {block.get(), static_cast<std::size_t>(size)};
    }
    const SocketResult result = channel.Send(left.data(), left.size());
    if (result.error != 0) {
        throw result.error;
    }
    if (result.wouldBlock) {
        return Moved::MustWait;
    }
    left.remove_prefix(result.bytes);
    sent += static_cast<int64_t>(result.bytes);
    if (progress) {
        progress(static_cast<int64_t>(result.bytes));
    }
    return Moved::Some;
}
