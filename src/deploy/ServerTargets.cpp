#include "deploy/ServerTargets.h"

#include "ftpengine/session/OpenRemoteSession.h"

namespace {

QString SchemeOf(ServerProtocol protocol)
{
    switch (protocol) {
    case ServerProtocol::Ftp:
        return QStringLiteral("ftp");
    case ServerProtocol::FtpTls:
        return QStringLiteral("ftpes");
    case ServerProtocol::FtpImplicitTls:
        return QStringLiteral("ftps");
    case ServerProtocol::Sftp:
        return QStringLiteral("sftp");
    }
    return {};
}

} // namespace

QString NameServer(const FTPDestinationConnection& destination)
{
    return QStringLiteral("%1://%2@%3:%4")
        .arg(SchemeOf(destination.protocol), destination.userName, destination.server.toLower(),
             QString::number(destination.port));
}

ServerTarget MakeServerTarget(const FTPDestinationConnection& destination, const ServerAccess& access)
{
    const auto abort = std::make_shared<CEvent>();
    SessionSetting session{.destination = destination,
                           .timeouts = access.timeouts,
                           .abortEvent = abort,
                           .trustFolder = access.trustFolder};
    session.destination.directory.clear();
    const RemoteSessionOpener open = access.open ? access.open : RemoteSessionOpener(OpenRemoteSession);
    return {.server = NameServer(destination),
            .directory = destination.directory,
            .open = [open, session](SessionLog& log) { return open(session, log); },
            .abort = abort,
            .mostSessions = access.mostSessions};
}
