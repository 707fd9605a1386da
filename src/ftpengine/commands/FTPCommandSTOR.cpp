#include "ftpengine/commands/FTPCommandSTOR.h"

#include <array>
#include <cerrno>

#include <QFile>
#include <QFileInfo>

#include "common/Trace.h"
#include "ftpengine/commands/TransferExchange.h"
#include "ftpengine/messages/EngineStatus.h"

// Sends the blocks of one file.
class CFileSender final : public CDataTransfer {
public:
    explicit CFileSender(const CFTPCommandSTOR::Transfer& transfer)
        : CDataTransfer(transfer.endpoint), transfer(transfer), file(transfer.localPath)
    {}

    bool IsSending() const override { return true; }

protected:
    Moved Move(CChannel& channel) override;
    void TraceFailure(State in, int status) const override;

private:
    static constexpr qint64 blockSize = 8192;

    void OpenFile();
    bool ReadBlock();

    const CFTPCommandSTOR::Transfer transfer;
    QFile file;
    std::array<char, blockSize> block;
    qint64 size = 0;       // of what is in it
    std::string_view left; // of that, to be sent
    int broken = 0;        // the failure of the connection, once it has failed
};

CDataTransfer::Moved CFileSender::Move(CChannel& channel)
{
    if (!file.isOpen()) {
        OpenFile();
    }
    if (left.empty() && !ReadBlock()) {
        file.close();
        if (broken != 0) {
            throw broken;
        }
        return Moved::All;
    }
    const SocketResult result = broken != 0 ? SocketResult{} : channel.Send(left.data(), left.size());
    if (result.wouldBlock) {
        return Moved::MustWait;
    }
    // Odd on purpose: the blocks after the break of a connection are counted as well.
    broken = broken != 0 ? broken : result.error;
    left.remove_prefix(broken != 0 ? left.size() : result.bytes);
    if (left.empty()) {
        PostTo<FTPMessage>(
            transfer.progressTarget,
            FTP_UPLOAD_PROGRESS{.localPath = transfer.localPath, .bytes = static_cast<uint32_t>(size)});
    }
    return Moved::Some;
}

void CFileSender::OpenFile()
{
    // Only a regular file: opening a pipe would wait for its other end.
    if (!QFileInfo(transfer.localPath).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        throw EngineStatus::FromErrno(errno);
    }
}

// False at the end of the file.
bool CFileSender::ReadBlock()
{
    size = file.read(block.data(), blockSize);
    if (size < 0) {
        throw EngineStatus::FromErrno(errno); // what has been sent is a part
    }
    left = {block.data(), static_cast<std::size_t>(size)};
    return size > 0;
}

void CFileSender::TraceFailure(State, int status) const
{
    Trace(QStringLiteral("Error number:") + QString::number(status, 16).leftJustified(10));
}

CFTPCommandSTOR::CFTPCommandSTOR(std::string_view remoteName, const Transfer& transfer)
    : CFTPCommand("STOR " + std::string(remoteName)), sender(std::make_unique<CFileSender>(transfer))
{}

CFTPCommandSTOR::~CFTPCommandSTOR() = default;

FTPReply CFTPCommandSTOR::Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                                  Milliseconds, Milliseconds)
{
    const TraceScope scope(QStringLiteral("CFTPCommandSTOR::Execute"));
    const FTPReply reply = CTransferExchange(stream, *sender, std::nullopt).Run(GetText());
    if (reply.GetGroup() != 2) {
        abortEvent->Set();
    }
    return reply;
}
