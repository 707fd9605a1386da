#include "deploy/ServerTargets.h"

#include <gtest/gtest.h>

TEST(ServerTargets, ServersAreToldApartByProtocolUserNameAndPort)
{
    const struct {
        const char* userName;
        const char* server;
        uint16_t port;
        ServerProtocol protocol;
        const char* name;
    } rows[] = {{"ann", "Example.org", 21, ServerProtocol::Ftp, "ftp://ann@example.org:21"},
                {"ann", "a", 21, ServerProtocol::FtpTls, "ftpes://ann@a:21"},
                {"%1", "a", 990, ServerProtocol::FtpImplicitTls, "ftps://%1@a:990"},
                {"bob", "::1", 2222, ServerProtocol::Sftp, "sftp://bob@::1:2222"}};
    for (const auto& row : rows) {
        FTPDestinationConnection destination;
        destination.userName = QString::fromLatin1(row.userName);
        destination.password = QStringLiteral("secret");
        destination.server = QString::fromLatin1(row.server);
        destination.port = row.port;
        destination.protocol = row.protocol;
        EXPECT_EQ(NameServer(destination), QString::fromLatin1(row.name));
    }
}

TEST(ServerTargets, SessionsOpenWhereTheLoginLeadsAndTheDirectoryIsThePlaceOfTheSite)
{
    FTPDestinationConnection destination;
    destination.server = QStringLiteral("example.org");
    destination.password = QStringLiteral("secret");
    destination.directory = QStringLiteral("web");
    SessionSetting seen;
    const ServerTarget target =
        MakeServerTarget(destination, {.trustFolder = QStringLiteral("/trust"),
                                       .mostSessions = 3,
                                       .open = [&seen](const SessionSetting& setting, SessionLog&) {
                                           seen = setting;
                                           return std::unique_ptr<CRemoteSession>();
                                       }});
    SessionLog log;
    target.open(log);
    EXPECT_EQ(target.directory, QStringLiteral("web"));
    EXPECT_EQ(target.mostSessions, 3u);
    EXPECT_FALSE(target.server.contains(QStringLiteral("secret")));
    EXPECT_EQ(seen.destination.directory, QString());
    EXPECT_EQ(seen.destination.password, QStringLiteral("secret"));
    EXPECT_EQ(seen.trustFolder, QStringLiteral("/trust"));
    EXPECT_EQ(seen.abortEvent, target.abort);
}
