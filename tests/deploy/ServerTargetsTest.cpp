#include "deploy/ServerTargets.h"

#include <gtest/gtest.h>

TEST(ServerTargets, ServersAreToldApartByProtocolUserNameAndPort)
{
    const struct {
        FTPDestinationConnection destination;
        const char* name;
    } rows[] = {
        {{.userName = QStringLiteral("ann"),
          .password = QStringLiteral("secret"),
          .server = QStringLiteral("Example.org")},
         "ftp://ann@example.org:21"},
        {{.userName = QStringLiteral("ann"),
          .server = QStringLiteral("a"),
          .protocol = ServerProtocol::FtpTls},
         "ftpes://ann@a:21"},
        {{.userName = QStringLiteral("%1"),
          .server = QStringLiteral("a"),
          .port = 990,
          .protocol = ServerProtocol::FtpImplicitTls},
         "ftps://%1@a:990"},
        {{.userName = QStringLiteral("bob"),
          .server = QStringLiteral("::1"),
          .port = 2222,
          .protocol = ServerProtocol::Sftp},
         "sftp://bob@::1:2222"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(NameServer(row.destination), QLatin1String(row.name));
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
