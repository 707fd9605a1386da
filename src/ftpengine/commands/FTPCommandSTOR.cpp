#include "ftpengine/commands/FTPCommandSTOR.h"

#include "ftpengine/EngineStatus.h"
#include "ftpengine/Trace.h"
#include "ftpengine/commands/FileSender.h"

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
