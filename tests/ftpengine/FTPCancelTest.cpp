#include "FTPEngineFixture.h"
#include "support/ScratchFolder.h"
#include "support/TraceRecorder.h"

// A cancel in each stage of a task.

namespace {

using std::chrono::milliseconds;
using Names = std::vector<std::string>;

class FTPCancel : public CFTPEngineFixture {
protected:
    const CScratchFolder scratch;
    CEvent reached;

    // The server stays silent from this command on, and says when it is reached.
    void StallAt(const char* verb)
    {
        server.Once(verb, [this](CServerSession& session, const std::string&) {
            reached.Set();
            session.Stall();
        });
        server.Start();
    }

    void CancelWhenReached(CFTPEngine& engine)
    {
        ASSERT_TRUE(reached.Wait(milliseconds(30000)));
        engine.Cancel();
    }

    CTaskResult Finished(std::size_t count = 1) const
    {
        target->WaitForFinished(count);
        return target->GetResults().at(count - 1);
    }

    FTPUploadMap MakeFile(qsizetype size) const
    {
        const QString path = scratch.Write(QStringLiteral("file"), QByteArray(size, 'x'));
        return {{path, {.localPath = path, .name = QStringLiteral("file"), .directory = {}, .size = 0}}};
    }

    // The next task works, and the cancelled one said no goodbye.
    void ExpectNextWorks(CFTPEngine& engine)
    {
        const std::vector<std::string> before = server.GetCommands();
        EXPECT_TRUE(std::find(before.begin(), before.end(), "QUIT") == before.end());
        const std::size_t count = target->GetResults().size();
        engine.TestConnection(server.GetDestination(), target);
        EXPECT_TRUE(Finished(count + 1).IsSuccess()) << Finished(count + 1);
    }
};

} // namespace

TEST_F(FTPCancel, EndsTheWaitForAReplyAtOnce)
{
    for (const char* verb : {"GREETING", "USER", "PASS", "CWD", "PASV", "LIST"}) {
        CScriptedServer silent;
        CEvent arrived;
        silent.Once(verb, [&arrived](CServerSession& session, const std::string&) {
            arrived.Set();
            session.Stall();
        });
        silent.Start();
        CFTPEngine engine(PatientTimeouts());
        const auto window = std::make_shared<CRecordingFTPTarget>();
        engine.GetDirectoryContent(silent.GetDestination(QStringLiteral("a")), window);
        ASSERT_TRUE(arrived.Wait(milliseconds(30000)));
        engine.Cancel();
        window->WaitForFinished();
        EXPECT_EQ(window->GetResults()[0].status, 995) << verb;
        EXPECT_EQ(window->GetMessages(), (Names{"802", "803"}));
        silent.Stop();
        const std::vector<std::string> commands = silent.GetCommands();
        EXPECT_TRUE(std::find(commands.begin(), commands.end(), "QUIT") == commands.end());
    }
}

TEST_F(FTPCancel, BeforeTheConnectIsSeenAtTheFirstWait)
{
    server.On("GREETING", [](CServerSession& session, const std::string&) { session.Stall(); });
    server.Start();
    CFTPEngine engine(PatientTimeouts());
    // The started message comes before the connect.
    target->onMessage = [&engine](const FTPMessage& message) {
        if (std::holds_alternative<FTP_TEST_STARTED>(message)) {
            engine.Cancel();
        }
    };
    engine.TestConnection(server.GetDestination(), target);
    EXPECT_EQ(Finished().status, 995);
}

TEST_F(FTPCancel, InAListingEndsItsWorkerToo)
{
    server.Once("LIST", [this](CServerSession& session, const std::string&) {
        session.Send("150 here\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.SendData("half a line");
        reached.Set();
        session.Stall();
    });
    server.Start();
    CFTPEngine engine(PatientTimeouts());
    engine.GetDirectoryContent(server.GetDestination(), target);
    CancelWhenReached(engine);
    EXPECT_EQ(Finished().status, 995);
    EXPECT_FALSE(target->GetContent().has_value());
    ExpectNextWorks(engine);
    server.Stop();
}

TEST_F(FTPCancel, InAFileBreaksItOffSoThatTheServerSeesIt)
{
    int error = 0;
    CEvent seen;
    server.Once("STOR", [&](CServerSession& session, const std::string&) {
        session.Send("150 go on\r\n");
        ASSERT_TRUE(session.AcceptData());
        session.TakeSomeData();
        reached.Set();
        error = session.AwaitDataFailure();
        seen.Set();
        session.Stall();
    });
    server.Start();
    CFTPEngine engine(PatientTimeouts());
    engine.Upload(server.GetDestination(), QStringLiteral("t"), MakeFile(40 << 20), target);
    CancelWhenReached(engine);
    EXPECT_EQ(Finished().status, 995);
    ASSERT_TRUE(seen.Wait(milliseconds(30000)));
    EXPECT_EQ(error, 10054); // an end would make the part a whole
    EXPECT_EQ(target->GetMessages(), (Names{"808 t", "809 file t", "80c t"}));
    ExpectNextWorks(engine);
    server.Stop();
}

TEST_F(FTPCancel, EndsTheOpeningOfTheConnection)
{
    // A queue of one that is full: the system lets nobody else in, and answers nothing.
    CListener full(0);
    std::vector<CSocket> others(3);
    for (CSocket& other : others) {
        other.Create();
        other.Connect(LoopbackAddress(full.GetPort()), milliseconds(50));
    }
    FTPDestinationConnection destination = server.GetDestination();
    destination.port = full.GetPort();
    FTPTimeouts timeouts = PatientTimeouts();
    timeouts.connect = milliseconds(60000);
    CFTPEngine engine(timeouts);
    engine.TestConnection(destination, target);
    target->WaitForMessages(1);
    engine.Cancel();
    EXPECT_EQ(Finished().status, 995);
}

TEST_F(FTPCancel, BetweenTwoFilesIsSeenAtTheNextWait)
{
    // The reply to the second PASV is held back, so that the wait for it finds no chunk.
    int pasvs = 0;
    server.On("PASV", [&](CServerSession& session, const std::string&) {
        if (++pasvs == 2) {
            reached.Set();
            session.Stall();
        } else {
            session.Send(session.ListenForData());
        }
    });
    server.Start();
    CFTPEngine engine(PatientTimeouts());
    target->onMessage = [&engine](const FTPMessage& message) {
        if (std::holds_alternative<FTP_UPLOAD_FILE_FINISHED>(message)) {
            engine.Cancel();
        }
    };
    FTPUploadMap map = MakeFile(10);
    const QString second = scratch.Write(QStringLiteral("second"), "x");
    map[second] = {.localPath = second, .name = QStringLiteral("second"), .directory = {}, .size = 0};
    engine.Upload(server.GetDestination(), QStringLiteral("t"), map, target);
    EXPECT_EQ(Finished().status, 995);
    EXPECT_EQ(target->GetMessages(), (Names{"808 t", "809 file t", "80b file t", "809 second t", "80c t"}));
    EXPECT_TRUE(reached.Wait(milliseconds(30000)));
    EXPECT_EQ(server.GetCommands().back(), "PASV");
    server.Stop();
}

TEST_F(FTPCancel, LeavesAQueuedTaskToTheNextStart)
{
    StallAt("USER");
    CFTPEngine engine(PatientTimeouts());
    engine.TestConnection(server.GetDestination(), target);
    engine.CreateDirectory(server.GetDestination(), QStringLiteral("queued"), target);
    CancelWhenReached(engine);
    EXPECT_EQ(Finished().status, 995);
    EXPECT_EQ(target->GetMessages(), (Names{"800", "801"}));
    engine.RenameDirectory(server.GetDestination(), QStringLiteral("a"), QStringLiteral("b"), target);
    EXPECT_TRUE(Finished(3).IsSuccess());
    EXPECT_EQ(target->GetMessages(), (Names{"800", "801", "804", "805", "806", "807"}));
    server.Stop();
}

TEST_F(FTPCancel, WithoutATaskDoesNothing)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    engine.Cancel();
    engine.Cancel();
    ExpectNextWorks(engine);
    engine.Cancel();
}

TEST_F(FTPCancel, TheDestructionOfTheEngineIsOne)
{
    StallAt("PASS");
    {
        CFTPEngine engine(PatientTimeouts());
        engine.TestConnection(server.GetDestination(), target);
        engine.CreateDirectory(server.GetDestination(), QStringLiteral("never"), target);
        ASSERT_TRUE(reached.Wait(milliseconds(30000)));
    }
    EXPECT_EQ(target->GetResults().at(0).status, 995);
    EXPECT_EQ(target->GetMessages(), (Names{"800", "801"}));
    server.Stop();
}
