#include "cli/ServerAddress.h"

#include "cli/FtpUrl.h"
#include "cli/PasswordPrompt.h"

bool IsFtpAddress(const QString& argument)
{
    return argument.startsWith(QStringLiteral("ftp://"), Qt::CaseInsensitive);
}

std::optional<FTPDestinationConnection> FindConnection(const QString& address)
{
    const FtpUrl url = ParseFtpUrl(address);
    const auto password = FindPassword(url);
    if (!password) {
        return std::nullopt;
    }
    return FTPDestinationConnection{.displayName = url.server,
                                    .userName = url.userName,
                                    .password = *password,
                                    .server = url.server,
                                    .directory = url.directory,
                                    .port = url.port};
}
