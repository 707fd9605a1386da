#include "cli/ServerDoubtTexts.h"

#include <arpa/inet.h>

#include "cli/Answers.h"
#include "cli/ServerUrl.h"
#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"
#include "resources/StringTable.h"

namespace {

using Doubt = ServerIdentity::Doubt;

QString AddressWith(FTPDestinationConnection connection, ServerProtocol protocol)
{
    connection.protocol = protocol;
    return FormatServerUrl(connection);
}

// Another identity than the one that was asked for is as bad as another one than before.
bool IsChanged(const FTPDestinationConnection& connection, const ServerIdentity& identity)
{
    const bool isOther = !connection.fingerprint.isEmpty() && connection.fingerprint != identity.fingerprint;
    return isOther || identity.doubt == Doubt::Changed;
}

StringId ReasonFor(const ServerIdentity& identity)
{
    switch (identity.doubt) {
    case Doubt::OtherName:
        return StringId::CertificateOfOther;
    case Doubt::Expired:
        return StringId::CertificateExpired;
    case Doubt::Changed:
        return StringId::IdentityChanged;
    case Doubt::None:
    case Doubt::UnknownAuthority:
        break;
    }
    return identity.hostKey.isEmpty() ? StringId::CertificateUnknown : StringId::HostKeyUnknown;
}

CGenericException DescribeIdentity(const FTPDestinationConnection& connection,
                                   const std::optional<ServerIdentity>& identity)
{
    const QString caption = Text(StringId::ServerInDoubt, connection.server);
    if (!identity || identity->fingerprint.isEmpty()) {
        return CGenericException(caption, Text(StringId::IdentityNotShown),
                                 Text(StringId::CheckServerAndTryAgain));
    }
    const bool isChanged = IsChanged(connection, *identity);
    const QString fingerprint = identity->FormatFingerprint();
    return CGenericException(
        caption,
        Text(isChanged ? StringId::IdentityChanged : ReasonFor(*identity), identity->subject, fingerprint),
        Text(isChanged ? StringId::AskOwnerAboutChange : StringId::TakeByFingerprint, fingerprint));
}

// "localhost", its own names (RFC 6761, 6.3), 127.0.0.0/8 and ::1.
bool IsThisMachine(const QString& server)
{
    const QString host = Lower(server);
    if (host == QLatin1String("localhost") || host.endsWith(QLatin1String(".localhost"))) {
        return true;
    }
    in_addr address{};
    in6_addr address6{};
    const std::string text = Narrow(host);
    constexpr uint32_t loopbackNetwork = 127;
    return (::inet_pton(AF_INET, text.c_str(), &address) == 1 &&
            ntohl(address.s_addr) >> 24 == loopbackNetwork) ||
           (::inet_pton(AF_INET6, text.c_str(), &address6) == 1 && IN6_IS_ADDR_LOOPBACK(&address6));
}

} // namespace

bool IsServerDoubt(int status)
{
    return status == EngineStatus::UntrustedServer || status == EngineStatus::TlsNotOffered ||
           status == EngineStatus::TlsDemanded;
}

CGenericException DescribeServerDoubt(const FTPDestinationConnection& connection, int status,
                                      const std::optional<ServerIdentity>& identity)
{
    switch (status) {
    case EngineStatus::TlsNotOffered:
        return CGenericException(
            Text(StringId::ServerWithoutTls, connection.server), EngineStatus::GetDescription(status),
            Text(StringId::UsePlainAddress, AddressWith(connection, ServerProtocol::Ftp)));
    case EngineStatus::TlsDemanded:
        return CGenericException(
            Text(StringId::ServerOnlyWithTls, connection.server), EngineStatus::GetDescription(status),
            Text(StringId::UseProtectedAddress, AddressWith(connection, ServerProtocol::FtpTls)));
    default:
        return DescribeIdentity(connection, identity);
    }
}

void WarnUnlessProtected(const FTPDestinationConnection& connection)
{
    if (connection.protocol == ServerProtocol::Ftp && !IsThisMachine(connection.server)) {
        PrintError(Text(StringId::DeploymentWarning,
                        Text(StringId::ConnectionNotProtected, Printable(connection.server))) +
                   QLatin1Char('\n'));
    }
}
