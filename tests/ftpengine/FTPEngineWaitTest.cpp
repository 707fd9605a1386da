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
    CEvent dispatched;
    server.On("MKD", [&dispatched](CServerSession& session, const std::string&) {
        dispatched.Wait(milliseconds(30000));
        session.Send("257 made\r\n");
    });
    server.Start();
    CFTPEngine engine(PatientTimeouts());
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&dispatched] { dispatched.Set(); });
    timer.start(5);
    EXPECT_TRUE(engine.CreateDirectory(server.GetDestination(), QStringLiteral("a"), milliseconds(20000))
                    .IsSuccess());
    EXPECT_TRUE(dispatched.IsSet());
    server.Stop();
}

TEST_F(FTPEngineWait, EachEventStartsTheWaitAnew)
{
    CEvent dispatched;
    server.On("MKD", [&dispatched](CServerSession& session, const std::string& name) {
        dispatched.Wait(milliseconds(30000));
        session.Send("257 made " + name + "\r\n");
    });
    server.Start();
    CFTPEngine engine(PatientTimeouts());
    int events = 0;
    QTimer timer;
    // So many of them take longer than the time-out.
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        if (++events == 30) {
            dispatched.Set();
        }
    });
    timer.start(5);
    EXPECT_TRUE(
        engine.CreateDirectory(server.GetDestination(), QStringLiteral("a"), milliseconds(100)).IsSuccess());
    server.Stop();
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
    CEvent handled;
    server.On("MKD", [&handled](CServerSession& session, const std::string&) {
        handled.Wait(milliseconds(30000));
        session.Send("257 made\r\n");
    });
    server.Start();
    CFTPEngine engine(PatientTimeouts());
    const CEvent never;
    QTimer timer;
    timer.start(5);
    QTimer::singleShot(20, &timer, [&] {
        EXPECT_FALSE(never.Wait(milliseconds(300)));
        handled.Set();
    });
    EXPECT_TRUE(
        engine.CreateDirectory(server.GetDestination(), QStringLiteral("a"), milliseconds(100)).IsSuccess());
    server.Stop();
}
