#include "ftpengine/commands/FileSender.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <QFileInfo>

#include "ftpengine/EngineStatus.h"
#include "ftpengine/Trace.h"
#include "ftpengine/net/Wait.h"

namespace {

constexpr qint64 blockSize = 8192;

void TraceErrorNumber(int error)
{
    Trace(QStringLiteral("Error number:") + QString::number(error, 16).leftJustified(10));
}

} // namespace

CFileSender::CFileSender(const CFTPCommandSTOR::Transfer& transfer, std::chrono::milliseconds stall)
    : transfer(transfer), stall(stall), file(transfer.localPath)
{}

void CFileSender::Run(const CEvent& stop)
{
    const TraceScope scope(QStringLiteral("CFTPCommandSTOR::ThreadProc"));
    const Clock::time_point begin = Clock::now();
    if (!Connect()) {
        return;
    }
    // The time of the connect counts: a stop during it ends the sending as soon as any other.
    if (stop.IsSet()) {
        deadline = begin + stall;
    }
    // Odd, but settled: without the file, the connection stays open as long as the command lives, so that the
    // server doesn't take the silence for an empty file.
    if (!OpenFile()) {
        return;
    }
    try {
        SendFile(stop);
    } catch (int error) {
        TraceErrorNumber(error);
    }
    file.close();
    socket.Close(); // tells the server that the file is complete
}

bool CFileSender::Connect()
{
    int error = socket.Create();
    if (error == 0) {
        try {
            error = socket.Connect(transfer.address, stall);
        } catch (int waitError) {
            error = waitError;
        }
    }
    if (error != 0) {
        TraceErrorNumber(error);
        socket.Close();
    }
    return error == 0;
}

bool CFileSender::OpenFile()
{
    // Only a regular file: opening a pipe would wait for its other end.
    if (QFileInfo(transfer.localPath).isFile() && file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return true;
    }
    TraceErrorNumber(errno);
    return false;
}

void CFileSender::SendFile(const CEvent& stop)
{
    std::array<char, blockSize> block;
    for (;;) {
        const qint64 size = file.read(block.data(), blockSize);
        if (size <= 0 || !SendBlock({block.data(), static_cast<std::size_t>(size)}, stop)) {
            return;
        }
        PostTo<FTPMessage>(
            transfer.progressTarget,
            FTP_UPLOAD_PROGRESS{.localPath = transfer.localPath, .bytes = static_cast<uint32_t>(size)});
    }
}

// False if the connection is given up. Odd, but settled: whether a block arrives is not looked at, so the
// blocks behind a broken connection are counted as well.
bool CFileSender::SendBlock(std::string_view block, const CEvent& stop)
{
    while (!block.empty()) {
        if (IsOverdue(stop)) {
            return false;
        }
        const SocketResult result = socket.Send(block.data(), block.size());
        if (result.error != 0) {
            return true;
        }
        block.remove_prefix(result.bytes);
        if (result.wouldBlock && !WaitUntilWritable(stop)) {
            return false;
        }
    }
    return true;
}

// False if the connection took no byte for too long. Also returns when the stop is signalled meanwhile.
bool CFileSender::WaitUntilWritable(const CEvent& stop)
{
    const WaitedDescriptor writable = {socket.GetDescriptor(), true};
    if (!deadline) {
        return WaitForFirst({writable, UntilSet(stop)}, stall) != WaitResult::TimedOut;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now());
    return WaitForFirst({writable}, std::max(left, {})) != WaitResult::TimedOut;
}

bool CFileSender::IsOverdue(const CEvent& stop)
{
    if (!deadline && stop.IsSet()) {
        deadline = Clock::now() + stall;
    }
    return deadline && Clock::now() >= *deadline;
}
