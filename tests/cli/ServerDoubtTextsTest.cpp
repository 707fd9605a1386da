#include "cli/ServerDoubtTexts.h"

#include "common/Text.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

using Doubt = ServerIdentity::Doubt;

FTPDestinationConnection ConnectionTo(const char* server, ServerProtocol protocol)
{
    return {.displayName = {},
            .userName = QStringLiteral("anna"),
            .password = QStringLiteral("hunter2"),
            .server = QString::fromLatin1(server),
            .directory = QStringLiteral("www"),
            .port = 2121,
            .protocol = protocol};
}

ServerIdentity IdentityIn(Doubt doubt, const QByteArray& hostKey = {})
{
    ServerIdentity identity;
    identity.fingerprint = QByteArray(32, '\x2a');
    identity.subject = QStringLiteral("CN=other");
    identity.doubt = doubt;
    identity.hostKey = hostKey;
    return identity;
}

// "caption|description|advice"
QString Described(const FTPDestinationConnection& connection, int status,
                  const std::optional<ServerIdentity>& identity)
{
    const CGenericException texts = DescribeServerDoubt(connection, status, identity);
    return texts.GetCaption() + QLatin1Char('|') + texts.GetDescription() + QLatin1Char('|') +
           texts.GetAdvice();
}

} // namespace

TEST(ServerDoubtTexts, SayWhyAServerIsInDoubtAndWhatWouldTakeIt)
{
    const QString shown = QStringLiteral("sha256:") + QStringLiteral("2a").repeated(32);
    const struct {
        ServerIdentity identity;
        const char* reason;
        bool isCompared; // an easy yes; else the owner is to be asked
    } rows[] = {
        {IdentityIn(Doubt::UnknownAuthority),
         "Nobody whom this system trusts has signed its certificate (CN=other).", true},
        {IdentityIn(Doubt::UnknownAuthority, "key"), "Its host key (CN=other) is not known here.", true},
        {IdentityIn(Doubt::OtherName), "Its certificate is one for another server (CN=other).", true},
        {IdentityIn(Doubt::Expired), "Its certificate (CN=other) has expired, or is not valid yet.", true},
        {IdentityIn(Doubt::Changed), "It shows another identity (CN=other) than", false},
        {IdentityIn(Doubt::Changed, "key"), "It shows another identity (CN=other) than", false},
    };
    const auto connection = ConnectionTo("host", ServerProtocol::FtpTls);
    for (const auto& row : rows) {
        const QString text = Described(connection, EngineStatus::UntrustedServer, row.identity);
        EXPECT_TRUE(text.startsWith(
            QStringLiteral("The server host was not trusted. Nothing secret was sent to it.|") +
            QString::fromLatin1(row.reason)))
            << qPrintable(text);
        EXPECT_EQ(text.count(shown), 2) << qPrintable(text);
        EXPECT_TRUE(text.endsWith(QStringLiteral("--fingerprint ") + shown + QLatin1Char('.')));
        EXPECT_EQ(text.contains(QStringLiteral("|Please compare")), row.isCompared) << qPrintable(text);
    }
}

TEST(ServerDoubtTexts, AnotherIdentityThanTheOneAskedForIsAWarning)
{
    auto connection = ConnectionTo("host", ServerProtocol::Sftp);
    connection.fingerprint = QByteArray(32, '\x2b');
    for (const Doubt doubt : {Doubt::None, Doubt::UnknownAuthority}) {
        EXPECT_TRUE(Described(connection, EngineStatus::UntrustedServer, IdentityIn(doubt, "key"))
                        .contains(QStringLiteral("|It shows another identity")));
    }
    EXPECT_TRUE(Described(connection, EngineStatus::UntrustedServer, std::nullopt)
                    .contains(QStringLiteral("|It has shown neither")));
}

TEST(ServerDoubtTexts, NameTheOtherAddressWithoutThePassword)
{
    EXPECT_TRUE(Described(ConnectionTo("::1", ServerProtocol::FtpTls), EngineStatus::TlsNotOffered, {})
                    .endsWith(QStringLiteral("use the address ftp://anna@[::1]:2121/www.")));
    EXPECT_TRUE(Described(ConnectionTo("host", ServerProtocol::Ftp), EngineStatus::TlsDemanded, {})
                    .endsWith(QStringLiteral("Please use the address ftpes://anna@host:2121/www.")));
}

TEST(ServerDoubtTexts, AConnectionInClearIsWarnedOfUnlessItStaysHere)
{
    const auto warning = [](const char* server, ServerProtocol protocol) {
        testing::internal::CaptureStderr();
        WarnUnlessProtected(ConnectionTo(server, protocol));
        return Widen(testing::internal::GetCapturedStderr());
    };
    for (const char* server : {"localhost", "LOCALHOST", "web.localhost", "127.0.0.1", "127.1.2.3", "::1"}) {
        EXPECT_EQ(warning(server, ServerProtocol::Ftp), QString()) << server;
    }
    for (const char* server :
         {"example.org", "localhost.example.org", "128.0.0.1", "::2", "127.example.org"}) {
        EXPECT_TRUE(warning(server, ServerProtocol::Ftp)
                        .startsWith(QStringLiteral("warning: The connection to %1 is not protected: ")
                                        .arg(QLatin1String(server))))
            << server;
        for (const auto protocol :
             {ServerProtocol::FtpTls, ServerProtocol::FtpImplicitTls, ServerProtocol::Sftp}) {
            EXPECT_EQ(warning(server, protocol), QString());
        }
    }
}
