#include <QFile>

#include "ftpengine/session/TrustedCertificates.h"
#include "session/FTPSessionFixture.h"
#include "support/TraceRecorder.h"

// FTP with TLS against the scripted server: who is trusted, what is protected, and what somebody on the way
// could do.

namespace {

using std::chrono::milliseconds;
using Doubt = ServerIdentity::Doubt;

class FTPTls : public CFTPSessionFixture {
protected:
    const CTestCertificate authority{{.isAuthority = true}};
    const CTestCertificate good{{}, &authority};
    const QByteArray oldFile = qgetenv("SSL_CERT_FILE");

    FTPTls()
    {
        qputenv("SSL_CERT_FILE",
                scratch.Write(QStringLiteral("authorities.pem"), authority.GetCertificatePem()).toUtf8());
    }
    ~FTPTls() override
    {
        if (oldFile.isNull()) {
            qunsetenv("SSL_CERT_FILE");
        } else {
            qputenv("SSL_CERT_FILE", oldFile);
        }
    }

    std::shared_ptr<CTlsServer> Use(const CTestCertificate& certificate,
                                    CTlsServer::Versions versions = CTlsServer::Versions::All,
                                    bool implicit = false)
    {
        auto tls = std::make_shared<CTlsServer>(certificate, versions);
        server.UseTls(tls, implicit);
        server.Start();
        return tls;
    }

    // Nothing but the question for TLS.
    void ExpectNoSecretSent()
    {
        for (const std::string& command : server.GetCommands()) {
            EXPECT_EQ(command.substr(0, 4), "AUTH") << command;
        }
    }
};

} // namespace

TEST_F(FTPTls, ProtectsBothConnectionsAndResumesTheSession)
{
    for (const auto versions : {CTlsServer::Versions::All, CTlsServer::Versions::Tls12}) {
        CScriptedServer one;
        const auto tls = std::make_shared<CTlsServer>(good, versions);
        one.UseTls(tls);
        one.Start();
        setting.destination = one.GetDestination();
        setting.destination.protocol = ServerProtocol::FtpTls;
        session = OpenRemoteSession(setting, log);
        ASSERT_TRUE(log.identity.has_value());
        EXPECT_EQ(log.identity->doubt, Doubt::None);
        EXPECT_EQ(log.identity->fingerprint, good.GetFingerprint());
        EXPECT_EQ(log.identity->subject, QStringLiteral("127.0.0.1"));
        EXPECT_TRUE(log.identity->issuer.startsWith(QStringLiteral("CN = Test ")));
        EXPECT_EQ(log.identity->port, one.GetPort());
        const QByteArray bytes = QByteArray("0123456789abcdef").repeated(100'000);
        EXPECT_EQ(Send(bytes), "done");
        EXPECT_EQ(one.GetFiles()["a.jpg"], bytes.toStdString());
        EXPECT_EQ(session->Read(QStringLiteral("a.jpg"), bytes.size()), bytes);
        EXPECT_EQ(tls->handshakes, 3);
        EXPECT_EQ(tls->resumed, 2);
        session->Quit();
        session.reset();
        EXPECT_THAT(one.GetCommands(),
                    testing::ElementsAre("AUTH TLS", "USER anna", "PASS s3cret", "PBSZ 0", "PROT P", "FEAT",
                                         "OPTS UTF8 ON", "TYPE I", "PWD", "EPSV", "STOR a.jpg", "SIZE a.jpg",
                                         "EPSV", "RETR a.jpg", "QUIT"));
    }
}

TEST_F(FTPTls, TheSessionIsResumedAlsoAfterATransferThatBroke)
{
    server.Once("STOR", [](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.TakeSomeData();
        session.ResetData();
        session.Send("426 broken\r\n");
    });
    const auto tls = Use(good, CTlsServer::Versions::Tls12);
    ASSERT_EQ(Open(ServerProtocol::FtpTls), "done");
    EXPECT_EQ(Send(QByteArray(20 << 20, 'x')), "refused 426");
    EXPECT_EQ(Send("123"), "done");
    EXPECT_EQ(tls->resumed, 2);
}

TEST_F(FTPTls, SaysThatTheDataAreComplete)
{
    bool complete = false;
    server.On("STOR", [&complete](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.ReadData();
        complete = session.WereDataComplete();
        session.Send("226 stored\r\n");
    });
    server.features.clear();
    Use(good);
    ASSERT_EQ(Open(ServerProtocol::FtpTls), "done");
    EXPECT_EQ(Send("123"), "done");
    server.Stop();
    EXPECT_TRUE(complete);
}

TEST_F(FTPTls, SpeaksTlsFromTheFirstByteWhereThatIsWanted)
{
    const auto tls = Use(good, CTlsServer::Versions::All, true);
    ASSERT_EQ(Open(ServerProtocol::FtpImplicitTls), "done");
    EXPECT_EQ(Send("123"), "done");
    EXPECT_EQ(tls->resumed, 1);
    EXPECT_EQ(server.GetCommands()[0], "USER anna");
}

TEST_F(FTPTls, WhoDoesNotProveHimselfGetsNoPassword)
{
    const CTestCertificate otherAuthority{{.isAuthority = true}};
    const struct {
        const char* name;
        CTestCertificate certificate;
        Doubt doubt;
    } rows[] = {
        {"signed by itself", CTestCertificate(), Doubt::UnknownAuthority},
        {"unknown authority", CTestCertificate({}, &otherAuthority), Doubt::UnknownAuthority},
        {"other address", CTestCertificate({.names = "IP:127.0.0.2"}, &authority), Doubt::OtherName},
        {"a name for an address", CTestCertificate({.names = "DNS:127.0.0.1"}, &authority), Doubt::OtherName},
        {"expired", CTestCertificate({.validFrom = -9, .validUntil = -1}, &authority), Doubt::Expired},
        {"not valid yet", CTestCertificate({.validFrom = 1}, &authority), Doubt::Expired},
    };
    for (const auto& row : rows) {
        CScriptedServer one;
        one.UseTls(std::make_shared<CTlsServer>(row.certificate));
        one.Start();
        setting.destination = one.GetDestination();
        setting.destination.protocol = ServerProtocol::FtpTls;
        SessionLog own;
        EXPECT_EQ(Outcome([&] { OpenRemoteSession(setting, own); }), "thrown 12045") << row.name;
        ASSERT_TRUE(own.identity.has_value()) << row.name;
        EXPECT_EQ(own.identity->doubt, row.doubt) << row.name;
        EXPECT_EQ(own.identity->fingerprint, row.certificate.GetFingerprint()) << row.name;
        EXPECT_THAT(one.GetCommands(), testing::ElementsAre("AUTH TLS")) << row.name;
    }
}

TEST_F(FTPTls, NamesAreChecked)
{
    const struct {
        const char* names;
        std::string outcome;
    } rows[] = {
        {"DNS:localhost", "done"},         {"DNS:LocalHost,DNS:a.example", "done"},
        {"DNS:a.example", "thrown 12045"}, {"IP:127.0.0.1", "thrown 12045"},
        {"DNS:local*", "thrown 12045"},
    };
    for (const auto& row : rows) {
        CScriptedServer one;
        one.UseTls(std::make_shared<CTlsServer>(CTestCertificate({.names = row.names}, &authority)));
        one.Start();
        setting.destination = one.GetDestination();
        setting.destination.server = QStringLiteral("localhost");
        setting.destination.protocol = ServerProtocol::FtpTls;
        EXPECT_EQ(Outcome([&] { OpenRemoteSession(setting, log); }), row.outcome) << row.names;
    }
}

TEST_F(FTPTls, AServerThatWasTakenOrIsNamedByItsFingerprintIsTrusted)
{
    const CTestCertificate own;
    Use(own);
    EXPECT_EQ(Open(ServerProtocol::FtpTls), "thrown 12045");
    CTrustedCertificates(setting.trustFolder).Remember(*log.identity);
    EXPECT_EQ(Open(ServerProtocol::FtpTls), "done");
    session.reset();
    setting.trustFolder.clear();
    EXPECT_EQ(Open(ServerProtocol::FtpTls), "thrown 12045");
    setting.destination.fingerprint = own.GetFingerprint();
    EXPECT_EQ(Open(ServerProtocol::FtpTls), "done");
    session.reset();
    setting.destination.fingerprint = good.GetFingerprint();
    EXPECT_EQ(Open(ServerProtocol::FtpTls), "thrown 12045");
    EXPECT_EQ(log.identity->doubt, Doubt::Changed);
}

TEST_F(FTPTls, AnotherCertificateThanTheTakenOneIsAChange)
{
    const CTestCertificate before;
    const CTestCertificate now;
    Use(now);
    ServerIdentity identity;
    identity.server = QStringLiteral("127.0.0.1");
    identity.port = server.GetPort();
    identity.fingerprint = before.GetFingerprint();
    CTrustedCertificates(setting.trustFolder).Remember(identity);
    EXPECT_EQ(Open(ServerProtocol::FtpTls), "thrown 12045");
    EXPECT_EQ(log.identity->doubt, Doubt::Changed);
    ExpectNoSecretSent();
}

TEST_F(FTPTls, AServerWithoutTlsGetsNoPassword)
{
    for (const char* reply :
         {"500 what?\r\n", "530 Please login with USER and PASS.\r\n", "504 no\r\n", "431 not now\r\n"}) {
        CScriptedServer one;
        one.Reply("AUTH", reply);
        one.Start();
        setting.destination = one.GetDestination();
        setting.destination.protocol = ServerProtocol::FtpTls;
        EXPECT_EQ(Outcome([&] { OpenRemoteSession(setting, log); }), "thrown 12046") << reply;
        EXPECT_THAT(one.GetCommands(), testing::ElementsAre("AUTH TLS")) << reply;
    }
}

TEST_F(FTPTls, DataInClearAreRefused)
{
    server.Reply("PROT", "536 no\r\n");
    Use(good);
    EXPECT_EQ(Open(ServerProtocol::FtpTls), "refused 536");
}

TEST_F(FTPTls, AHandshakeThatComesToNothingIsAFailure)
{
    const auto tls = std::make_shared<CTlsServer>(good, CTlsServer::Versions::Tls11);
    const struct {
        const char* name;
        CScriptedServer::Handler handler;
        const char* outcome;
    } rows[] = {
        {"silent",
         [](CServerSession& session, const std::string&) {
             session.Send("234 go on\r\n");
             session.Stall();
         },
         "thrown 10060"},
        {"closed",
         [](CServerSession& session, const std::string&) {
             session.Send("234 go on\r\n");
             session.Close();
         },
         "thrown 12157"},
        {"reset",
         [](CServerSession& session, const std::string&) {
             session.Send("234 go on\r\n");
             session.Reset();
         },
         "thrown 12157"},
        {"no TLS",
         [](CServerSession& session, const std::string&) {
             session.Send("234 go on\r\n");
             session.Send("220 hello again" + std::string(100'000, ' ') + "\r\n");
             session.Stall();
         },
         "thrown 12157"},
        {"too old",
         [tls](CServerSession& session, const std::string&) {
             session.Send("234 go on\r\n");
             session.Protect(*tls);
         },
         "thrown 12157"},
    };
    setting.timeouts.reply = milliseconds(1000);
    for (const auto& row : rows) {
        CScriptedServer one;
        one.On("AUTH", row.handler);
        one.Start();
        setting.destination = one.GetDestination();
        setting.destination.protocol = ServerProtocol::FtpTls;
        EXPECT_EQ(Outcome([&] { OpenRemoteSession(setting, log); }), row.outcome) << row.name;
        EXPECT_THAT(one.GetCommands(), testing::ElementsAre("AUTH TLS")) << row.name;
    }
}

TEST_F(FTPTls, ACancelEndsAHandshakeAtOnce)
{
    const auto abort = setting.abortEvent;
    server.On("AUTH", [abort](CServerSession& session, const std::string&) {
        session.Send("234 go on\r\n");
        abort->Set();
        session.Stall();
    });
    server.Start();
    EXPECT_EQ(Open(ServerProtocol::FtpTls), "thrown 995");
}

TEST_F(FTPTls, WhatWasSaidInClearIsNoReplyAfterwards)
{
    const auto tls = std::make_shared<CTlsServer>(good);
    server.On("AUTH", [tls](CServerSession& session, const std::string&) {
        // Somebody on the way adds the replies to come.
        session.Send("234 go on\r\n331 injected\r\n230 injected\r\n331-injected");
        session.Protect(*tls);
    });
    server.UseTls(tls);
    server.Start();
    EXPECT_EQ(Open(ServerProtocol::FtpTls), "done");
    for (const QString& line : log.transcript) {
        EXPECT_FALSE(line.contains(QStringLiteral("injected"))) << qPrintable(line);
    }
}

TEST_F(FTPTls, DataThatWereCutAreAFailure)
{
    const auto cutting = [](const char* last) {
        return [last](CServerSession& session, const std::string&) {
            session.Send("150 here\r\n");
            ASSERT_TRUE(session.AcceptData());
            session.SendData("drwxr-xr-x 2 u g 1 Jan  5 2026 a\r\n");
            session.CutData();
            session.Send(last);
        };
    };
    server.PutFile("a.jpg", "123");
    server.On("LIST", cutting("226 done\r\n"));
    server.On("RETR", cutting("226 done\r\n"));
    server.On("MLSD", cutting("426 broken\r\n"));
    server.features += " MLST\r\n";
    Use(good);
    ASSERT_EQ(Open(ServerProtocol::FtpTls), "done");
    EXPECT_EQ(Outcome([&] { session->Read(QStringLiteral("a.jpg"), 1000); }), "thrown 10054");
    session.reset();
    ASSERT_EQ(Open(ServerProtocol::FtpTls), "done");
    EXPECT_EQ(Outcome([&] { session->List(QString()); }), "refused 426");
    session.reset();
    // The same for the tasks of the engine.
    setting.destination.protocol = ServerProtocol::FtpTls;
    CFTPEngine engine(ShortTimeouts(), setting.trustFolder);
    const auto target = std::make_shared<CRecordingFTPTarget>();
    engine.GetDirectoryContent(setting.destination, target);
    target->WaitForFinished();
    EXPECT_EQ(target->GetResults()[0].status, 10054);
    EXPECT_FALSE(target->GetContent().has_value());
}

TEST_F(FTPTls, ADataConnectionToAnotherServerIsRefused)
{
    const auto stranger = std::make_shared<CTlsServer>(CTestCertificate({}, &authority));
    server.Once("STOR", [stranger](CServerSession& session, const std::string&) {
        session.ProtectData(stranger.get());
        session.Send("150 go on\r\n");
        session.AcceptData();
        session.Send("426 broken\r\n");
    });
    Use(good);
    setting.timeouts.reply = milliseconds(2000);
    ASSERT_EQ(Open(ServerProtocol::FtpTls), "done");
    CTraceRecorder traces;
    EXPECT_EQ(Send("123"), "refused 426");
    EXPECT_TRUE(traces.Has("\"DataTransfer throws: \"12157"));
    EXPECT_TRUE(server.GetFiles().empty());
}

TEST_F(FTPTls, TasksRunOverItAsWell)
{
    const CTestCertificate own;
    const auto tls = Use(own);
    FTPDestinationConnection destination = server.GetDestination();
    destination.protocol = ServerProtocol::FtpTls;
    const QString path = scratch.Write(QStringLiteral("file"), "content");
    const FTPUploadMap map = {
        {path, {.localPath = path, .name = QStringLiteral("file"), .directory = {}, .size = 0}}};
    CFTPEngine engine(PatientTimeouts(), setting.trustFolder);
    const auto target = std::make_shared<CRecordingFTPTarget>();
    engine.Upload(destination, {}, map, target);
    target->WaitForFinished();
    const CTaskResult doubtful = target->GetResults()[0];
    EXPECT_EQ(doubtful.status, 12045);
    ASSERT_TRUE(doubtful.identity.has_value());
    CTrustedCertificates(setting.trustFolder).Remember(*doubtful.identity);
    engine.Upload(destination, {}, map, target);
    engine.GetDirectoryContent(destination, target);
    target->WaitForFinished(3);
    for (std::size_t i = 1; i < 3; ++i) {
        const CTaskResult result = target->GetResults()[i];
        EXPECT_TRUE(result.IsSuccess()) << result;
        EXPECT_EQ(result.identity->fingerprint, own.GetFingerprint());
        for (const QString& line : result.transcript) {
            EXPECT_FALSE(line.contains(QStringLiteral("s3cret"))) << qPrintable(line);
        }
    }
    EXPECT_EQ(server.GetFiles()["file"], "content");
    EXPECT_EQ(tls->resumed, 2);
}
