#include "deploy/server/SessionCrew.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <thread>

#include "ftpengine/messages/EngineStatus.h"

namespace {

constexpr std::chrono::milliseconds pauses[] = {std::chrono::seconds(1), std::chrono::seconds(4),
                                                std::chrono::seconds(10)};
// Fewer jobs than these aren't worth another login.
constexpr size_t jobsForASession = 4;

// A person has to decide something, or to correct it.
bool IsFinal(int status)
{
    switch (status) {
    case EngineStatus::Aborted:
    case EngineStatus::InvalidName:
    case EngineStatus::UntrustedServer:
    case EngineStatus::TlsNotOffered:
    case EngineStatus::TlsDemanded:
        return true;
    }
    return false;
}

CSessionCrew::Setting Completed(CSessionCrew::Setting setting)
{
    if (!setting.pause) {
        setting.pause = [abort = setting.abort](std::chrono::milliseconds time) {
            abort->Wait(time);
        };
    }
    if (!setting.now) {
        setting.now = [] {
            return CSessionCrew::Clock::now();
        };
    }
    return setting;
}

} // namespace

CSessionCrew::CSessionCrew(Setting crewSetting)
    : setting(Completed(std::move(crewSetting))), places(std::max<size_t>(setting.mostSessions, 1))
{}

CSessionCrew::~CSessionCrew() = default;

void CSessionCrew::Run(Job job)
{
    std::vector<Job> jobs;
    jobs.push_back(std::move(job));
    Run(std::move(jobs));
}

void CSessionCrew::Run(std::vector<Job> jobs)
{
    {
        const CMutexLock lock(mutex);
        waiting.assign(std::make_move_iterator(jobs.begin()), std::make_move_iterator(jobs.end()));
        failure = nullptr;
    }
    // A place that gives its job back may be the last one at work.
    for (bool isMore = !jobs.empty(); isMore;) {
        RunRound();
        const CMutexLock lock(mutex);
        isMore = !waiting.empty() && !failure && !setting.abort->IsSet();
    }
    const CMutexLock lock(mutex);
    waiting.clear();
    if (setting.abort->IsSet()) {
        throw SendCancelled();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void CSessionCrew::RunRound()
{
    PutOpenFirst();
    size_t count = 0;
    bool isFirst = false;
    {
        const CMutexLock lock(mutex);
        count = std::min(places.size(), (waiting.size() + jobsForASession - 1) / jobsForASession);
        isFirst = !wasOpened;
        retired = 0;
    }
    if (isFirst) {
        // Whether there is a server at all is to be known before several ask it.
        Job nothing{QString(), [](CRemoteSession&) {
                    }};
        Do(places.front(), nothing);
    }
    std::vector<std::thread> threads;
    try {
        for (size_t i = 1; i < count && !IsEnding(); ++i) {
            threads.emplace_back([this, i] { Work(places[i]); });
        }
    } catch (const std::system_error&) {
        // The system has no thread left; those that there are do it.
    }
    Work(places.front());
    for (std::thread& thread : threads) {
        thread.join();
    }
    PutOpenFirst();
    const CMutexLock lock(mutex);
    places.resize(std::max<size_t>(places.size() - std::min(places.size(), retired), 1));
}

// What has a session works first, and is never given up for what has none.
void CSessionCrew::PutOpenFirst()
{
    std::stable_partition(places.begin(), places.end(),
                          [](const Place& place) { return place.session != nullptr; });
}

void CSessionCrew::Work(Place& place)
{
    while (std::optional<Job> job = TakeJob()) {
        if (!Do(place, *job)) {
            GiveBack(std::move(*job));
            return;
        }
    }
}

// False if the place is of no use and the job isn't done.
bool CSessionCrew::Do(Place& place, const Job& job)
{
    for (int tries = 0; !IsEnding(); ++tries) {
        SendFailure reason;
        const Outcome outcome = Try(place, job, reason);
        if (outcome != Outcome::Again) {
            return outcome == Outcome::Done;
        }
        if (tries == static_cast<int>(std::size(pauses))) {
            Fail(std::make_exception_ptr(reason));
            return true;
        }
        Pause(job, tries, reason);
    }
    return true;
}

void CSessionCrew::Pause(const Job& job, int tries, const SendFailure& reason)
{
    const SendRetry retry{.path = job.path,
                          .number = tries + 1,
                          .allowed = static_cast<int>(std::size(pauses)),
                          .pause = pauses[tries],
                          .status = reason.status};
    if (setting.onRetry && !IsEnding()) {
        setting.onRetry(retry);
    }
    setting.pause(retry.pause);
}

CSessionCrew::Outcome CSessionCrew::Try(Place& place, const Job& job, SendFailure& reason)
{
    try {
        if (!Refresh(place)) {
            Open(place);
        }
    } catch (int status) {
        reason = {.kind = SendFailure::Kind::NotOpened,
                  .path = {},
                  .status = status,
                  .reply = {},
                  .log = *place.log};
        return OnNotOpened(reason);
    } catch (const FTPReply& reply) {
        reason = {
            .kind = SendFailure::Kind::NotOpened, .path = {}, .status = 0, .reply = reply, .log = *place.log};
        return OnNotOpened(reason);
    } catch (...) {
        Fail(std::current_exception());
        return Outcome::Done;
    }
    try {
        return DoOnce(place, job, reason);
    } catch (...) {
        Fail(std::current_exception());
        return Outcome::Done;
    }
}

CSessionCrew::Outcome CSessionCrew::DoOnce(Place& place, const Job& job, SendFailure& reason)
{
    try {
        job.work(*place.session);
        place.lastUse = setting.now();
        return Outcome::Done;
    } catch (int status) {
        Drop(place);
        reason = {
            .kind = SendFailure::Kind::Network, .path = job.path, .status = status, .reply = {}, .log = {}};
        if (status == EngineStatus::InvalidName) {
            throw reason;
        }
        return Outcome::Again;
    } catch (const FTPReply& reply) {
        reason = {
            .kind = SendFailure::Kind::Refused, .path = job.path, .status = 0, .reply = reply, .log = {}};
        if (IsBreak(reply)) {
            Drop(place);
        } else if (reply.code != RefusalCode::Incomplete) {
            throw reason;
        }
        return Outcome::Again;
    }
}

// True if the place has a session that can be used.
bool CSessionCrew::Refresh(Place& place)
{
    if (!place.session || setting.now() - place.lastUse < setting.longestQuiet) {
        return place.session != nullptr;
    }
    try {
        place.session->KeepAlive();
        place.lastUse = setting.now();
        return true;
    } catch (int) {
        // It was closed for its silence, which is no failure of what comes now.
    } catch (const FTPReply&) {
    }
    Drop(place);
    return false;
}

void CSessionCrew::Open(Place& place)
{
    place.log = std::make_unique<SessionLog>();
    place.session = setting.open(*place.log);
    place.lastUse = setting.now();
    const CMutexLock lock(mutex);
    ++openSessions;
    wasOpened = true;
}

CSessionCrew::Outcome CSessionCrew::OnNotOpened(const SendFailure& reason)
{
    const CMutexLock lock(mutex);
    if (IsFinal(reason.status) || !wasOpened) {
        failure = failure ? failure : std::make_exception_ptr(reason);
        return Outcome::Done;
    }
    if (openSessions > 0) {
        ++retired;
        return Outcome::Retire;
    }
    return Outcome::Again;
}

void CSessionCrew::Drop(Place& place)
{
    place.session.reset();
    const CMutexLock lock(mutex);
    --openSessions;
}

void CSessionCrew::KeepAlive()
{
    for (Place& place : places) {
        Refresh(place);
    }
}

void CSessionCrew::Quit()
{
    for (Place& place : places) {
        if (place.session) {
            place.session->Quit();
            Drop(place);
        }
    }
}

std::optional<CSessionCrew::Job> CSessionCrew::TakeJob()
{
    if (IsEnding()) {
        return std::nullopt;
    }
    const CMutexLock lock(mutex);
    if (waiting.empty()) {
        return std::nullopt;
    }
    Job job = std::move(waiting.front());
    waiting.pop_front();
    return job;
}

void CSessionCrew::GiveBack(Job job)
{
    const CMutexLock lock(mutex);
    waiting.push_front(std::move(job));
}

bool CSessionCrew::IsEnding()
{
    const CMutexLock lock(mutex);
    return failure || setting.abort->IsSet();
}

void CSessionCrew::Fail(std::exception_ptr reason)
{
    const CMutexLock lock(mutex);
    failure = failure ? failure : std::move(reason);
}
