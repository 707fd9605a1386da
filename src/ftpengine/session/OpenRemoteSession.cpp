#include "ftpengine/session/OpenRemoteSession.h"

#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/session/FTPSession.h"
#include "ftpengine/session/SftpSession.h"

std::unique_ptr<CRemoteSession> OpenRemoteSession(const SessionSetting& setting, SessionLog& log)
{
    switch (setting.destination.protocol) {
    case ServerProtocol::Ftp:
    case ServerProtocol::FtpTls:
    case ServerProtocol::FtpImplicitTls:
        return OpenFTPSession(setting, log);
    case ServerProtocol::Sftp:
        return OpenSftpSession(setting, log);
    }
    ThrowTraced("OpenRemoteSession throws: ", EngineStatus::ProtocolNotSupported);
}
