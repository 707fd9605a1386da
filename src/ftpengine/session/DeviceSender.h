#pragma once

#include <memory>

#include "ftpengine/commands/DataTransfer.h"
#include "ftpengine/session/RemoteSession.h"

// Sends what a device has from its position on. On the thread of its session; borrows device and progress.
class CDeviceSender final : public CDataTransfer {
public:
    CDeviceSender(const DataEndpoint& endpoint, QIODevice& source, const CRemoteSession::Progress& progress);

    bool IsSending() const override { return true; }
    // Bytes that the network has taken.
    int64_t GetSent() const { return sent; }

protected:
    Moved Move(CChannel& channel) override;

private:
    // Large enough for the system calls not to count, small enough for the processor's caches.
    static constexpr std::size_t blockSize = 256 * 1024;

    QIODevice& source;
    const CRemoteSession::Progress& progress;
    // Not filled with zeros: most files are much smaller.
    const std::unique_ptr<char[]> block = std::make_unique_for_overwrite<char[]>(blockSize);
    std::string_view left; // of the block
    int64_t sent = 0;
};
