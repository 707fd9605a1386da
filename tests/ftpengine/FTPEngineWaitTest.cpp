#include <QCoreApplication>
#include <QTimer>

#include "FTPEngineFixture.h"

// The forms of the engine's operations that wait for their result.

namespace {

using std::chrono::milliseconds;
using FTPEngineWait = CFTPEngineFixture;

} // namespace

TEST_F(FTPEngineWait, WaitsForAResult)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    EXPECT_EQ(
        engine.CreateDirectory(server.GetDestination(), QStringLiteral("a"), milliseconds(30000)).reply.code,
        257);
    EXPECT_EQ(engine
                  .RenameDirectory(server.GetDestination(), QStringLiteral("a"), QStringLiteral("b"),
                                   milliseconds(30000))
                  .reply.text,
              QStringLiteral("250 renamed\r\n"));
}

TEST_F(FTPEngineWait, DispatchesEventsWhileItWaits)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    int events = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&events] { ++events; });
    timer.start(5);
    EXPECT_TRUE(engine.CreateDirectory(server.GetDestination(), QStringLiteral("a"), milliseconds(30000))
                    .IsSuccess());
    EXPECT_GT(events, 1);
}

TEST_F(FTPEngineWait, EachEventStartsTheWaitAnew)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    QTimer timer;
    timer.start(5);
    // The greeting alone takes longer than this time-out.
    EXPECT_TRUE(
        engine.CreateDirectory(server.GetDestination(), QStringLiteral("a"), milliseconds(100)).IsSuccess());
}

TEST_F(FTPEngineWait, AWaitWithoutAnEventLoopIsPossible)
{
    server.Start();
    CTaskResult result;
    std::thread caller([&] {
        CFTPEngine engine(ShortTimeouts());
        result = engine.CreateDirectory(server.GetDestination(), QStringLiteral("a"), milliseconds(30000));
    });
    caller.join();
    EXPECT_EQ(result.reply.code, 257);
}

TEST_F(FTPEngineWait, AWaitThatTakesTooLongIsAnsweredAndTheTaskGoesOn)
{
    CEvent answered;
    server.On("MKD", [&answered](CServerSession& session, const std::string& name) {
        if (name == "slow") {
            answered.Wait(milliseconds(30000));
        }
        session.Send("257 made " + name + "\r\n");
    });
    server.Start();
    CFTPEngine engine(PatientTimeouts());
    const CTaskResult late =
        engine.CreateDirectory(server.GetDestination(), QStringLiteral("slow"), milliseconds(30));
    EXPECT_EQ(late.status, 10060);
    EXPECT_EQ(late.reply.code, 200);
    answered.Set();
    // The late result is not taken for this one.
    EXPECT_EQ(
        engine.CreateDirectory(server.GetDestination(), QStringLiteral("b"), milliseconds(30000)).reply.text,
        QStringLiteral("257 made b\r\n"));
    EXPECT_EQ(server.GetCommands()[2], "MKD slow");
    server.Stop();
}

TEST_F(FTPEngineWait, AResultThatComesDuringAHandlerIsNotWaitedForAgain)
{
    server.Start();
    const CResourceGuard withServer;
    CFTPEngine engine(ShortTimeouts());
    QTimer late;
    late.setSingleShot(true);
    bool stalled = false;
    QObject::connect(&late, &QTimer::timeout, &late, [&stalled] { stalled = true; });
    QTimer::singleShot(0, &late, [&] {
        EXPECT_TRUE(withServer.AwaitThreads()); // the task has ended, so its result is there
        QCoreApplication::processEvents();      // and a loop of the handler's own hears of it
        QCoreApplication::processEvents();
        late.start(10000);
    });
    EXPECT_TRUE(engine.CreateDirectory(server.GetDestination(), QStringLiteral("a"), milliseconds(30000))
                    .IsSuccess());
    EXPECT_FALSE(stalled);
}

TEST_F(FTPEngineWait, TheTimeThatAHandlerTakesIsNoQuiet)
{
    server.Start();
    CFTPEngine engine(ShortTimeouts());
    const CEvent never;
    QTimer timer;
    timer.start(5);
    QTimer::singleShot(20, &timer, [&never] { EXPECT_FALSE(never.Wait(milliseconds(300))); });
    EXPECT_TRUE(
        engine.CreateDirectory(server.GetDestination(), QStringLiteral("a"), milliseconds(100)).IsSuccess());
}
