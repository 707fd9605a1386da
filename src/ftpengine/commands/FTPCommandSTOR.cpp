#include "ftpengine/commands/FTPCommandSTOR.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <optional>

#include <QFile>
#include <QFileInfo>

#include "common/Trace.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/net/Socket.h"

// What the worker works on: sends one file over one data connection. Destroyed with the command. Throws
// nothing and reports no failure: the server's reply tells the story.
class CFileSender {
public:
    // stall: how long the connection may take no byte before it is given up.
    CFileSender(const CFTPCommandSTOR::Transfer& transfer, std::chrono::milliseconds stall);

    // stop: from its signal on, there is time for as long as a stall to bring the file to its end.
    void Run(const CEvent& stop);

private:
    using Clock = std::chrono::steady_clock;

    bool Connect();
    bool OpenFile();
    void SendFile(const CEvent& stop);
    bool SendBlock(std::string_view block, const CEvent& stop);
    bool WaitUntilWritable(const CEvent& stop);
    bool IsOverdue(const CEvent& stop);

    const CFTPCommandSTOR::Transfer transfer;
    const std::chrono::milliseconds stall;
    CSocket socket;
    QFile file;
    std::optional<Clock::time_point> deadline; // none before the stop is signalled
};

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
    // Without the file, the connection stays open as long as the command lives, so that the server doesn't
    // take the silence for an empty file.
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

// False if the connection is given up. Whether a block arrives is not looked at, so the blocks after the
// break of a connection are counted as well: the server's reply tells of the break.
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

CFTPCommandSTOR::CFTPCommandSTOR(std::string_view remoteName, const Transfer& transfer,
                                 const FTPTimeouts& timeouts)
    : CFTPCommand("STOR " + std::string(remoteName)),
      sender(std::make_shared<CFileSender>(transfer, timeouts.dataStall)),
      driver(NoLimit)
{}

FTPReply CFTPCommandSTOR::Execute(CSocketStream& stream, const std::shared_ptr<CEvent>& abortEvent,
                                  Milliseconds sendTimeout, Milliseconds receiveTimeout)
{
    const TraceScope scope(QStringLiteral("CFTPCommandSTOR::Execute"));
    const auto run = [sender = sender](const std::shared_ptr<CEvent>& stop) {
        sender->Run(*stop);
    };
    if (driver.Start(run, true) == CThreadDriver::StartResult::Failed) {
        throw EngineStatus::NoBufferSpace;
    }
    const FTPReply reply = CFTPCommand::Execute(stream, abortEvent, sendTimeout, receiveTimeout);
    if (reply.GetGroup() != 2) {
        abortEvent->Set();
    }
    return driver.Stop() ? FTPReply{.code = EngineStatus::TimedOut, .text = {}} : reply;
}
