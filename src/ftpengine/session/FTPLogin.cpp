#include "ftpengine/session/FTPLogin.h"

#include "ftpengine/commands/FTPCommandSequences.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/messages/ServerWords.h"
#include "ftpengine/net/Connection.h"
#include "ftpengine/session/TrustedCertificates.h"

namespace {

void CheckNames(const FTPDestinationConnection& destination)
{
    if (BreaksLine(destination.userName) || BreaksLine(destination.password.GetView()) ||
        BreaksLine(destination.directory)) {
        ThrowTraced("CheckNames throws: ", EngineStatus::InvalidName);
    }
}

void Protect(const SessionSetting& setting, CSocketStream& stream, SessionLog& log)
{
    const FTPDestinationConnection& destination = setting.destination;
    stream.Protect(std::make_unique<CTlsClient>(destination.server));
    ServerIdentity identity = stream.GetIdentity();
    identity.server = destination.server;
    identity.port = destination.port;
    identity.doubt = RemainingDoubt(identity, destination, CTrustedCertificates(setting.trustFolder));
    log.identity = identity;
    if (identity.doubt != ServerIdentity::Doubt::None) {
        ThrowTraced("Protect throws: ", EngineStatus::UntrustedServer);
    }
    stream.GetTls()->SetFingerprint(identity.fingerprint);
}

void AskForTls(FTPConversation& conversation)
{
    constexpr int32_t notNow = 431; // RFC 2228, 3: some resource for it is missing
    try {
        conversation.Run<CFTPCommandSequenceAuthTls>();
    } catch (const FTPReply& refusal) {
        if (refusal.GetGroup() == 5 || refusal.code == notNow) {
            ThrowTraced("AskForTls throws: ", EngineStatus::TlsNotOffered);
        }
        throw;
    }
}

void LogInInClear(const FTPDestinationConnection& destination, FTPConversation& conversation)
{
    try {
        conversation.Run<CFTPCommandSequenceWelcome>();
        conversation.Run<CFTPCommandSequenceLogin>(destination.userName, destination.password);
    } catch (const FTPReply& refusal) {
        if (DemandsTls(refusal)) {
            ThrowTraced("LogInInClear throws: ", EngineStatus::TlsDemanded);
        }
        throw;
    }
}

} // namespace

FTPReply ConnectAndLogIn(const SessionSetting& setting, CSocketStream& stream, SessionLog& log)
{
    const FTPDestinationConnection& destination = setting.destination;
    FTPReply reply;
    FTPConversation conversation{stream, setting.abortEvent, log.transcript, reply};
    CheckNames(destination);
    if (destination.protocol == ServerProtocol::Sftp) {
        ThrowTraced("ConnectAndLogIn throws: ", EngineStatus::ProtocolNotSupported);
    }
    OpenConnection(destination, setting.abortEvent, stream);
    if (destination.protocol == ServerProtocol::Ftp) {
        LogInInClear(destination, conversation);
        return reply;
    }
    if (destination.protocol == ServerProtocol::FtpImplicitTls) {
        Protect(setting, stream, log);
        conversation.Run<CFTPCommandSequenceWelcome>();
    } else {
        conversation.Run<CFTPCommandSequenceWelcome>();
        AskForTls(conversation);
        Protect(setting, stream, log);
    }
    conversation.Run<CFTPCommandSequenceLogin>(destination.userName, destination.password);
    const FTPReply loggedIn = reply;
    conversation.Run<CFTPCommandSequenceProtectData>();
    return loggedIn;
}
