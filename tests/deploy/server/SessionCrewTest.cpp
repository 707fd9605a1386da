#include "deploy/server/SessionCrew.h"

#include <atomic>
#include <condition_variable>

#include <gtest/gtest.h>

#include "MemoryServer.h"
#include "deploy/server/SessionRest.h"
#include "ftpengine/messages/EngineStatus.h"

namespace {

using namespace std::chrono_literals;
using Verb = CMemoryServer::Verb;
using Fault = CMemoryServer::Fault;

class SessionCrew : public testing::Test {
protected:
    SessionCrew()
    {
        for (int i = 0; i < 40; ++i) {
            server.Put(QString::number(i), "x");
        }
    }

    CSessionCrew::Setting Setting(size_t sessions = 4)
    {
        return {.open = server.MakeOpener(abort),
                .abort = abort,
                .mostSessions = sessions,
                .onRetry = [this](const SendRetry& retry) { NoteRetry(retry); },
                .pause = [this](std::chrono::milliseconds time) { NotePause(time); },
                .now =
                    [this] {
                        return now;
                    }};
    }

    // Each removes a file, so that what was done twice or not at all is seen.
    std::vector<CSessionCrew::Job> Jobs(int count) const
    {
        std::vector<CSessionCrew::Job> jobs;
        for (int i = 0; i < count; ++i) {
            const QString path = QString::number(i);
            jobs.push_back({path, [path](CRemoteSession& session) {
                                session.RemoveFile(path);
                            }});
        }
        return jobs;
    }

    SendFailure FailureOf(CSessionCrew& crew, int jobs)
    {
        try {
            crew.Run(Jobs(jobs));
        } catch (const SendFailure& failure) {
            return failure;
        }
        ADD_FAILURE() << "no failure";
        return {};
    }

    void FaultAt(Verb verb, const QString& path, Fault fault, int times = 1)
    {
        server.onOperation = [verb, path, fault, times](const CMemoryServer::Operation& operation) mutable {
            return operation.verb == verb && operation.path == path && times-- > 0 ? fault : Fault::None;
        };
    }

    void NoteRetry(const SendRetry& retry)
    {
        const std::lock_guard lock(mutex);
        retries.push_back(retry);
    }
    void NotePause(std::chrono::milliseconds time)
    {
        const std::lock_guard lock(mutex);
        pauses.push_back(time);
    }

    CMemoryServer server;
    const std::shared_ptr<CEvent> abort = std::make_shared<CEvent>();
    CSessionCrew::Clock::time_point now;

    std::mutex mutex;
    std::vector<SendRetry> retries;
    std::vector<std::chrono::milliseconds> pauses;
};

} // namespace

TEST_F(SessionCrew, DoesAllJobsOverSeveralSessions)
{
    CSessionCrew crew(Setting());
    // Each session has to be at work before the first one goes on.
    std::mutex meeting;
    std::condition_variable arrived;
    int count = 0;
    std::vector<CSessionCrew::Job> jobs = Jobs(40);
    for (int i = 0; i < 4; ++i) {
        jobs[static_cast<size_t>(i)].work = [&, i](CRemoteSession& session) {
            session.RemoveFile(QString::number(i));
            std::unique_lock lock(meeting);
            ++count;
            arrived.notify_all();
            EXPECT_TRUE(arrived.wait_for(lock, 60s, [&] { return count == 4; }));
        };
    }
    crew.Run(std::move(jobs));
    EXPECT_TRUE(server.files.empty());
    EXPECT_EQ(server.mostOpened, 4u);
    EXPECT_EQ(server.openSessions, 4u);
    crew.Quit();
    EXPECT_EQ(server.openSessions, 0u);
}

TEST_F(SessionCrew, FewJobsAreNotWorthMoreSessions)
{
    CSessionCrew crew(Setting());
    crew.Run(Jobs(4));
    EXPECT_EQ(server.mostOpened, 1u);
    crew.Run(std::vector<CSessionCrew::Job>());
    EXPECT_EQ(server.mostOpened, 1u);
}

TEST_F(SessionCrew, AServerThatLetsInOneIsEnough)
{
    server.mostSessions = 1;
    int opened = 0;
    server.onOperation = [&opened](const CMemoryServer::Operation& operation) {
        opened += operation.verb == Verb::Open ? 1 : 0;
        return Fault::None;
    };
    CSessionCrew crew(Setting());
    crew.Run(Jobs(40));
    EXPECT_TRUE(server.files.empty());
    EXPECT_TRUE(retries.empty());
    EXPECT_LE(opened, 4);
    // It isn't asked again for what it has refused.
    opened = 0;
    server.Put(QStringLiteral("0"), "x");
    crew.Run(Jobs(1));
    EXPECT_EQ(opened, 0);
}

TEST_F(SessionCrew, ABrokenConnectionIsMadeAgain)
{
    FaultAt(Verb::RemoveFile, QStringLiteral("2"), Fault::CutBefore, 3);
    CSessionCrew crew(Setting(1));
    crew.Run(Jobs(5));
    EXPECT_EQ(server.files.count(QStringLiteral("2")), 0u);
    EXPECT_EQ(pauses, (std::vector<std::chrono::milliseconds>{1s, 4s, 10s}));
    ASSERT_EQ(retries.size(), 3u);
    EXPECT_EQ(retries[2].number, 3);
    EXPECT_EQ(retries[2].allowed, 3);
    EXPECT_EQ(retries[2].path, QStringLiteral("2"));
    EXPECT_EQ(retries[2].pause, 10s);
    EXPECT_EQ(retries[2].status, EngineStatus::ConnectionReset);
}

TEST_F(SessionCrew, AfterThreeNewTriesItIsAFailure)
{
    FaultAt(Verb::RemoveFile, QStringLiteral("2"), Fault::CutBefore, 4);
    CSessionCrew crew(Setting(1));
    const SendFailure failure = FailureOf(crew, 5);
    EXPECT_EQ(failure.kind, SendFailure::Kind::Network);
    EXPECT_EQ(failure.path, QStringLiteral("2"));
    EXPECT_EQ(failure.status, EngineStatus::ConnectionReset);
    EXPECT_EQ(pauses.size(), 3u);
    EXPECT_EQ(server.files.count(QStringLiteral("3")), 1u);
    // Each job has its own tries, and the crew can be used again.
    FaultAt(Verb::RemoveFile, QStringLiteral("2"), Fault::CutBefore, 1);
    crew.Run({QStringLiteral("2"), [](CRemoteSession& session) {
                  session.RemoveFile(QStringLiteral("2"));
              }});
    EXPECT_EQ(server.files.count(QStringLiteral("2")), 0u);
}

TEST_F(SessionCrew, AGoodbyeOfTheServerIsABrokenConnection)
{
    FaultAt(Verb::RemoveFile, QStringLiteral("2"), Fault::Goodbye);
    CSessionCrew crew(Setting(1));
    crew.Run(Jobs(5));
    EXPECT_EQ(retries.size(), 1u);
    EXPECT_EQ(server.files.count(QStringLiteral("2")), 0u);
}

TEST_F(SessionCrew, ARefusalEndsIt)
{
    FaultAt(Verb::RemoveFile, QStringLiteral("2"), Fault::Refuse);
    CSessionCrew crew(Setting(1));
    const SendFailure failure = FailureOf(crew, 5);
    EXPECT_EQ(failure.kind, SendFailure::Kind::Refused);
    EXPECT_EQ(failure.path, QStringLiteral("2"));
    EXPECT_EQ(failure.reply.code, 550);
    EXPECT_TRUE(retries.empty());
    EXPECT_EQ(server.files.count(QStringLiteral("3")), 1u);
    EXPECT_EQ(server.openSessions, 1u);
}

TEST_F(SessionCrew, AServerThatIsNotThereIsToldAtOnce)
{
    FaultAt(Verb::Open, QString(), Fault::CutBefore, 100);
    CSessionCrew crew(Setting());
    const SendFailure failure = FailureOf(crew, 40);
    EXPECT_EQ(failure.kind, SendFailure::Kind::NotOpened);
    EXPECT_EQ(failure.status, EngineStatus::ConnectionReset);
    EXPECT_EQ(server.operations, 1);
    EXPECT_TRUE(retries.empty());
}

TEST_F(SessionCrew, ARefusedLoginIsToldAtOnce)
{
    FaultAt(Verb::Open, QString(), Fault::Refuse, 100);
    CSessionCrew crew(Setting());
    const SendFailure failure = FailureOf(crew, 40);
    EXPECT_EQ(failure.kind, SendFailure::Kind::NotOpened);
    EXPECT_EQ(failure.reply.code, 550);
    EXPECT_EQ(server.operations, 1);
}

TEST_F(SessionCrew, WhatAPersonHasToDecideIsToldAtOnceAlsoLater)
{
    bool isChanged = false;
    CSessionCrew::Setting setting = Setting(1);
    setting.open = [this, &isChanged](SessionLog& log) {
        if (isChanged) {
            log.identity = ServerIdentity();
            throw EngineStatus::UntrustedServer;
        }
        return server.MakeOpener(abort)(log);
    };
    CSessionCrew crew(setting);
    crew.Run(Jobs(1));
    isChanged = true;
    FaultAt(Verb::RemoveFile, QStringLiteral("1"), Fault::CutBefore);
    server.Put(QStringLiteral("0"), "x");
    const SendFailure failure = FailureOf(crew, 5);
    EXPECT_EQ(failure.status, EngineStatus::UntrustedServer);
    EXPECT_TRUE(failure.log.identity.has_value());
    EXPECT_EQ(pauses.size(), 1u);
}

// The server still counts the one that broke, and the others do the work.
TEST_F(SessionCrew, WhoIsNotLetInAgainLeavesItsJobToTheOthers)
{
    bool isShut = false;
    server.onOperation = [&](const CMemoryServer::Operation& operation) {
        if (operation.verb == Verb::RemoveFile && operation.path == QStringLiteral("20") && !isShut) {
            isShut = true;
            return Fault::CutBefore;
        }
        return operation.verb == Verb::Open && isShut && server.openSessions > 0 ? Fault::Refuse
                                                                                 : Fault::None;
    };
    CSessionCrew crew(Setting());
    crew.Run(Jobs(40));
    EXPECT_TRUE(server.files.empty());
}

TEST_F(SessionCrew, CancelEndsItAndThePausesToo)
{
    CSessionCrew::Setting setting = Setting(1);
    setting.pause = [this](std::chrono::milliseconds) {
        abort->Set();
    };
    FaultAt(Verb::RemoveFile, QStringLiteral("2"), Fault::CutBefore);
    CSessionCrew crew(setting);
    EXPECT_THROW(crew.Run(Jobs(5)), SendCancelled);
    EXPECT_EQ(server.files.count(QStringLiteral("2")), 1u);
    EXPECT_THROW(crew.Run(Jobs(5)), SendCancelled);
}

TEST_F(SessionCrew, TheUsualPauseIsBrokenByACancel)
{
    CSessionCrew::Setting setting = Setting(1);
    setting.pause = {};
    setting.onRetry = [this](const SendRetry&) {
        abort->Set();
    };
    FaultAt(Verb::RemoveFile, QStringLiteral("0"), Fault::CutBefore);
    CSessionCrew crew(setting);
    EXPECT_THROW(crew.Run(Jobs(1)), SendCancelled);
}

TEST_F(SessionCrew, ASessionThatWasQuietForLongIsAskedFirst)
{
    CSessionCrew crew(Setting(1));
    crew.Run(Jobs(1));
    int asked = 0;
    server.onOperation = [&asked](const CMemoryServer::Operation& operation) {
        asked += operation.verb == Verb::KeepAlive ? 1 : 0;
        return operation.verb == Verb::KeepAlive ? Fault::CutBefore : Fault::None;
    };
    server.Put(QStringLiteral("0"), "x");
    now += 5s;
    crew.Run(Jobs(1));
    EXPECT_EQ(asked, 0);
    server.Put(QStringLiteral("0"), "x");
    now += 60s;
    crew.Run(Jobs(1));
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(retries.empty());
    EXPECT_EQ(server.openSessions, 1u);
}

TEST_F(SessionCrew, WhatAJobThrowsBesidesComesOut)
{
    CSessionCrew crew(Setting());
    EXPECT_THROW(crew.Run({QString(),
                           [](CRemoteSession&) {
                               throw std::runtime_error("x");
                           }}),
                 std::runtime_error);
    CSessionCrew::Setting setting = Setting();
    setting.open = [](SessionLog&) -> std::unique_ptr<CRemoteSession> {
        throw std::runtime_error("x");
    };
    CSessionCrew other(setting);
    EXPECT_THROW(other.Run(Jobs(1)), std::runtime_error);
}

// "Local error in processing", and what a session says of a file that has arrived with another size.
TEST_F(SessionCrew, WhatTheServerCouldNotDoThisTimeIsTriedAgain)
{
    int calls = 0;
    CSessionCrew crew(Setting(1));
    crew.Run(CSessionCrew::Job{QStringLiteral("1"), [&calls](CRemoteSession&) {
                                   if (++calls < 3) {
                                       throw MakeRefusal(RefusalCode::Incomplete,
                                                         QStringLiteral("half of it"));
                                   }
                               }});
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(retries.size(), 2u);
    EXPECT_EQ(server.openSessions, 1u) << "the connection stays";
}

// In real time: the server sees it within a fraction of what the time limit of the test allows.
TEST_F(SessionCrew, SessionsAreKeptAliveWhileThereIsNoWork)
{
    std::mutex waiting;
    std::condition_variable asked;
    int times = 0;
    server.onOperation = [&](const CMemoryServer::Operation& operation) {
        if (operation.verb == Verb::KeepAlive) {
            const std::lock_guard lock(waiting);
            ++times;
            asked.notify_all();
        }
        return times == 2 ? Fault::CutBefore : Fault::None;
    };
    CSessionCrew::Setting setting = Setting(1);
    setting.longestQuiet = 1ms;
    setting.now = {};
    CSessionCrew crew(setting);
    crew.Run(Jobs(1));
    {
        const CSessionRest rest(crew);
        std::unique_lock lock(waiting);
        EXPECT_TRUE(asked.wait_for(lock, 60s, [&] { return times == 2; }));
    }
    EXPECT_EQ(server.openSessions, 0u) << "the server has closed it";
    server.onOperation = {};
    server.Put(QStringLiteral("0"), "x");
    crew.Run(Jobs(1));
    EXPECT_TRUE(retries.empty()) << "which is no failure";
}
