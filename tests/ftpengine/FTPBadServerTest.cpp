#include <gmock/gmock.h>

#include "FTPEngineFixture.h"
#include "support/ScratchFolder.h"

// Servers that do at one step what no server should, and properly afterwards. Each task ends with a fitting
// result, and the next one works.

namespace {

using std::chrono::milliseconds;
using Kind = CTaskResult::Kind;

struct Misdeed {
    const char* name;
    CScriptedServer::Handler handler;
    int status;           // what the task ends with; -1: whatever it is
    int refusal;          // the reply's code if the status is 0
    int otherStatus = -2; // as good as status, where two ends of a broken connection race
};

CScriptedServer::Handler Saying(const std::string& bytes)
{
    return [bytes](CServerSession& session, const std::string&) {
        session.Send(bytes);
    };
}

std::vector<Misdeed> Misdeeds()
{
    return {
        {"silent", [](CServerSession& session, const std::string&) { session.Stall(); }, 10060, 0},
        {"closing", [](CServerSession& session, const std::string&) { session.Close(); }, 6, 0},
        {"4yz", Saying("450 not now\r\n"), 0, 450},
        {"5yz", Saying("550 never\r\n"), 0, 550},
        {"4yz of 127", Saying("450 " + std::string(121, 'x') + "\r\n"), 0, 450},
        {"4yz of 128", Saying("450 " + std::string(122, 'x') + "\r\n"), 0, 450},
        {"4yz of 129", Saying("450 " + std::string(123, 'x') + "\r\n"), 0, 450},
        {"4yz of 256", Saying("450 " + std::string(250, 'x') + "\r\n"), 0, 450},
        {"5yz of 64 KiB", Saying("550 " + std::string(65530, 'x') + "\r\n"), 0, 550},
        {"in several lines", Saying("550-no\r\n because\r\n550 no\r\n"), 0, 550},
        {"without line end", Saying("550 never"), 0, 550},
        {"garbage", Saying(std::string(100, '\xff')), 6, 0},
        {"no code", Saying("what?\r\n"), 6, 0},
        {"zero bytes", Saying(std::string(50, '\0')), 6, 0},
        {"bytes without end", Saying(std::string(1200000, 'x')), 10040, 0},
    };
}

class FTPBadServer : public testing::Test {
protected:
    const CResourceGuard guard;
    const CScratchFolder scratch;
    const QString path = scratch.Write(QStringLiteral("dir/file"), "content");

    // An upload with one file in a directory of its own.
    void Upload(CFTPEngine& engine, const CScriptedServer& server,
                const std::shared_ptr<CRecordingFTPTarget>& target) const
    {
        const FTPUploadMap map = {{path,
                                   {.localPath = path,
                                    .name = QStringLiteral("file"),
                                    .directory = QStringLiteral("dir"),
                                    .size = 0}}};
        engine.Upload(server.GetDestination(QStringLiteral("/www")), {}, map, target);
    }

    // The results of a task that meets the misdeed, and of the same task when it doesn't.
    template <class Task>
    std::vector<CTaskResult> Results(const char* verb, const Misdeed& misdeed, const Task& task) const
    {
        CScriptedServer server;
        server.Once(verb, misdeed.handler);
        server.Start();
        CFTPEngine engine(ShortTimeouts());
        const auto target = std::make_shared<CRecordingFTPTarget>();
        task(engine, server, target);
        task(engine, server, target);
        target->WaitForFinished(2);
        server.Stop();
        return target->GetResults();
    }

    template <class Task>
    void ExpectFittingResults(const char* verb, const std::vector<Misdeed>& misdeeds, const Task& task) const
    {
        for (const Misdeed& misdeed : misdeeds) {
            const std::vector<CTaskResult> results = Results(verb, misdeed, task);
            EXPECT_THAT(results[0].status, testing::AnyOf(misdeed.status, misdeed.otherStatus))
                << verb << ' ' << misdeed.name << ": " << results[0];
            if (misdeed.refusal != 0) {
                EXPECT_EQ(results[0].reply.code, misdeed.refusal) << verb << ' ' << misdeed.name;
            }
            EXPECT_FALSE(results[0].IsSuccess()) << verb << ' ' << misdeed.name;
            EXPECT_TRUE(results[1].IsSuccess()) << verb << ' ' << misdeed.name << ": " << results[1];
        }
    }

    void ExpectFittingUploads(const char* verb) const
    {
        ExpectFittingResults(verb, Misdeeds(), [this](auto&... arguments) { Upload(arguments...); });
    }

    void ExpectFittingListings(const char* verb, const std::vector<Misdeed>& misdeeds) const
    {
        ExpectFittingResults(verb, misdeeds,
                             [](CFTPEngine& engine, const CScriptedServer& server, const auto& target) {
                                 engine.GetDirectoryContent(server.GetDestination(), target);
                             });
    }
};

} // namespace

TEST_F(FTPBadServer, AtTheGreeting)
{
    ExpectFittingUploads("GREETING");
}

TEST_F(FTPBadServer, AtUser)
{
    ExpectFittingUploads("USER");
}

TEST_F(FTPBadServer, AtPass)
{
    ExpectFittingUploads("PASS");
}

TEST_F(FTPBadServer, AtCwd)
{
    ExpectFittingUploads("CWD");
}

TEST_F(FTPBadServer, AtType)
{
    ExpectFittingUploads("TYPE");
}

TEST_F(FTPBadServer, AtPasv)
{
    ExpectFittingUploads("PASV");
}

TEST_F(FTPBadServer, AtStor)
{
    ExpectFittingUploads("STOR");
}

TEST_F(FTPBadServer, AtMkdRefusalsAreSwallowed)
{
    for (const Misdeed& misdeed : Misdeeds()) {
        const auto results = Results("MKD", misdeed, [this](auto&... arguments) { Upload(arguments...); });
        EXPECT_EQ(results[0].status, misdeed.status) << misdeed.name << ": " << results[0];
        EXPECT_EQ(results[0].IsSuccess(), misdeed.status == 0) << misdeed.name;
        EXPECT_TRUE(results[1].IsSuccess()) << misdeed.name << ": " << results[1];
    }
}

TEST_F(FTPBadServer, AtRename)
{
    for (const char* verb : {"RNFR", "RNTO"}) {
        ExpectFittingResults(verb, Misdeeds(),
                             [](CFTPEngine& engine, const CScriptedServer& server, const auto& target) {
                                 engine.RenameDirectory(server.GetDestination(), QStringLiteral("a"),
                                                        QStringLiteral("b"), target);
                             });
    }
}

TEST_F(FTPBadServer, AtList)
{
    // The data connection is open, and quiet; so the worker is waited for, too.
    std::vector<Misdeed> misdeeds = Misdeeds();
    for (Misdeed& misdeed : misdeeds) {
        if (std::string_view(misdeed.name) == "closing") {
            // The data connection breaks as well, which may be seen first.
            misdeed.otherStatus = 10054;
        }
    }
    ExpectFittingListings("LIST", misdeeds);
}

TEST_F(FTPBadServer, WithABadDataPort)
{
    ExpectFittingListings("PASV",
                          {
                              {"a closed port",
                               [](CServerSession& session, const std::string&) {
                                   const std::string reply = session.ListenForData();
                                   session.GetDataListener().Close();
                                   session.Send(reply);
                               },
                               10061, 0},
                              {"port 0", Saying("227 (127,0,0,1,0,0)\r\n"), 10061, 0},
                              {"nonsense", Saying("227 (a,b,c)\r\n"), 11004, 0},
                              {"too large numbers", Saying("227 (300,300,300,300,300,300)\r\n"), 11004, 0},
                              {"no address", Saying("200 passive\r\n"), 11004, 0},
                          });
}

TEST_F(FTPBadServer, WithADataPortElsewhereIsAskedWhereItIs)
{
    CScriptedServer server;
    server.listing = "drwxr-xr-x 2 u g 1 Jan 5 12:30 a\r\n";
    server.On("PASV", [](CServerSession& session, const std::string&) {
        // The address within a network behind a router, as many servers name it.
        std::string reply = session.ListenForData();
        session.Send(reply.replace(reply.find("127,0,0,1"), 9, "192,0,2,1"));
    });
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    const auto target = std::make_shared<CRecordingFTPTarget>();
    engine.GetDirectoryContent(server.GetDestination(), target);
    target->WaitForFinished();
    EXPECT_TRUE(target->GetResults()[0].IsSuccess()) << target->GetResults()[0];
    EXPECT_EQ(target->GetContent()->GetItems().size(), 1u);
}

TEST_F(FTPBadServer, WithBadData)
{
    ExpectFittingListings("LIST", {
                                      {"never accepted",
                                       [](CServerSession& session, const std::string&) {
                                           session.Send("150 here\r\n");
                                           session.Stall();
                                       },
                                       10060, 0},
                                      {"stalling",
                                       [](CServerSession& session, const std::string&) {
                                           session.Send("150 here\r\n");
                                           session.AcceptData();
                                           session.SendData("half a li");
                                           session.Stall();
                                       },
                                       10060, 0},
                                      {"closed early",
                                       [](CServerSession& session, const std::string&) {
                                           session.Send("150 here\r\n");
                                           session.AcceptData();
                                           session.CloseData();
                                           session.Send("426 broken\r\n");
                                       },
                                       0, 426},
                                      {"reset",
                                       [](CServerSession& session, const std::string&) {
                                           session.Send("150 here\r\n");
                                           session.AcceptData();
                                           session.ResetData();
                                           session.Stall();
                                       },
                                       10054, 0},
                                      {"control closed during the data",
                                       [](CServerSession& session, const std::string&) {
                                           session.Send("150 here\r\n");
                                           session.AcceptData();
                                           session.Close();
                                           session.CloseData();
                                       },
                                       6, 0},
                                      {"not ending after the reply",
                                       [](CServerSession& session, const std::string&) {
                                           session.AcceptData();
                                           session.Send("226 done\r\n");
                                           session.Stall();
                                       },
                                       10060, 0},
                                  });
}

TEST_F(FTPBadServer, WithZeroBytesInAListing)
{
    CScriptedServer server;
    server.listing =
        std::string("drwxr-xr-x 2 u g 1 Jan 5 12:30 a\r\n\0drwxr-xr-x 2 u g 1 Jan 5 12:30 b\r\n", 69);
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    const auto target = std::make_shared<CRecordingFTPTarget>();
    engine.GetDirectoryContent(server.GetDestination(), target);
    target->WaitForFinished();
    EXPECT_TRUE(target->GetResults()[0].IsSuccess());
    EXPECT_EQ(target->GetContent()->GetItems().size(), 1u); // the text ends at the zero
}

TEST_F(FTPBadServer, ThatNeverAcceptsTheConnection)
{
    CListener listener; // the system takes the connection, nobody speaks on it
    CScriptedServer server;
    server.Start();
    FTPDestinationConnection silent = server.GetDestination();
    silent.port = listener.GetPort();
    CFTPEngine engine(ShortTimeouts());
    const auto target = std::make_shared<CRecordingFTPTarget>();
    engine.TestConnection(silent, target);
    engine.TestConnection(server.GetDestination(), target);
    target->WaitForFinished(2);
    EXPECT_EQ(target->GetResults()[0].status, 10060);
    EXPECT_TRUE(target->GetResults()[1].IsSuccess());
}

TEST_F(FTPBadServer, ThatTalksWithoutEnd)
{
    const Misdeed flood = {"a flood of 1yz",
                           [](CServerSession& session, const std::string&) {
                               for (int i = 0; i < 200000 && session.IsOpen(); ++i) {
                                   session.Send("150 wait\r\n");
                               }
                               session.Stall();
                           },
                           10040, 0};
    for (const char* verb : {"USER", "TYPE", "STOR"}) {
        ExpectFittingResults(verb, {flood}, [this](auto&... arguments) { Upload(arguments...); });
    }
}
