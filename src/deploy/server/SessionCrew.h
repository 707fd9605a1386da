#pragma once

#include <chrono>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "common/ThreadSafety.h"
#include "deploy/server/SendFailure.h"
#include "ftpengine/net/Event.h"
#include "ftpengine/session/RemoteSession.h"

// Opens a session to the one server of a crew, on any thread. Throws an int (EngineStatus.h) or an FTPReply.
using SessionOpener = std::function<std::unique_ptr<CRemoteSession>(SessionLog& log)>;

// A piece of work is about to be tried again.
struct SendRetry {
    QString path;    // what it is about
    int number = 1;  // of the new try, from 1
    int allowed = 3; // new tries
    std::chrono::milliseconds pause{0};
    int status = 0; // why (EngineStatus.h); 0 if what has arrived was incomplete
};

// Works at one server over several sessions at once, each on a thread of its own: as many as are worth it and
// as the server lets in. What a broken connection has interrupted is tried again, up to three times, after
// 1, 4 and 10 seconds. Owned by the thread of the deployment, which makes all calls.
class CSessionCrew final {
public:
    using Clock = std::chrono::steady_clock;

    struct Setting {
        SessionOpener open;
        std::shared_ptr<CEvent> abort; // the person's cancel; breaks everything, the pauses as well
        size_t mostSessions = 4;
        std::function<void(const SendRetry&)> onRetry; // on any thread; may be empty
        // After which a session is asked whether it still lives. Servers close connections that say nothing
        // for a while, often after a minute.
        std::chrono::milliseconds longestQuiet = std::chrono::seconds(20);
        // For tests; empty for the real ones.
        std::function<void(std::chrono::milliseconds)> pause;
        std::function<Clock::time_point()> now;
    };
    struct Job {
        QString path; // what it is about, for people
        std::function<void(CRemoteSession& session)> work;
    };

    explicit CSessionCrew(Setting setting);
    ~CSessionCrew();
    CSessionCrew(const CSessionCrew&) = delete;
    CSessionCrew& operator=(const CSessionCrew&) = delete;

    // Does all jobs, beginning in their order, and returns when they are done. The first failure ends it once
    // what the others are at is done: SendFailure, SendCancelled, or what a job has thrown besides.
    void Run(std::vector<Job> jobs);
    void Run(Job job);

    // Lets the server know that somebody is still there; what it has closed is opened again by the next job.
    // Throws nothing.
    void KeepAlive();
    std::chrono::milliseconds GetLongestQuiet() const { return setting.longestQuiet; }

    // The goodbye after success.
    void Quit();

private:
    // One place for a session. Used by one thread at a time.
    struct Place {
        std::unique_ptr<SessionLog> log;
        std::unique_ptr<CRemoteSession> session;
        Clock::time_point lastUse;
    };
    enum class Outcome { Done, Again, Retire };

    void RunRound();
    void PutOpenFirst();
    void Work(Place& place);
    bool Do(Place& place, const Job& job);
    Outcome Try(Place& place, const Job& job, SendFailure& reason);
    Outcome DoOnce(Place& place, const Job& job, SendFailure& reason);
    bool Refresh(Place& place);
    void Open(Place& place);
    Outcome OnNotOpened(const SendFailure& reason);
    void Drop(Place& place);
    void Pause(const Job& job, int tries, const SendFailure& reason);

    std::optional<Job> TakeJob();
    void GiveBack(Job job);
    bool IsEnding();
    void Fail(std::exception_ptr reason);

    const Setting setting;
    std::vector<Place> places; // as many as the server may still let in

    CMutex mutex;
    std::deque<Job> waiting VISTORAMA_GUARDED_BY(mutex);
    size_t openSessions VISTORAMA_GUARDED_BY(mutex) = 0;
    bool wasOpened VISTORAMA_GUARDED_BY(mutex) = false; // the server has let us in once
    size_t retired VISTORAMA_GUARDED_BY(mutex) = 0;     // places of this round that the server doesn't let in
    std::exception_ptr failure VISTORAMA_GUARDED_BY(mutex);
};
