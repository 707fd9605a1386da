#include "cli/DeployCommand.h"

#include <atomic>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <mutex>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>

#include "cli/CommandLine.h"
#include "cli/DeployProgressDisplay.h"
#include "cli/ProjectSession.h"
#include "deploy/DeployJob.h"

namespace {

// Where the job's messages wait for the main thread.
class CMessageQueue final : public CDeployTarget {
public:
    void Post(DeployMessage message) override
    {
        {
            const std::lock_guard lock(mutex);
            messages.push_back(message);
        }
        arrived.notify_one();
    }

    DeployMessage Wait()
    {
        std::unique_lock lock(mutex);
        arrived.wait(lock, [this] { return !messages.empty(); });
        const DeployMessage message = messages.front();
        messages.pop_front();
        return message;
    }

private:
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<DeployMessage> messages;
};

std::atomic<CDeployJob*> interruptible = nullptr;

void OnInterrupt(int)
{
    if (CDeployJob* job = interruptible.load()) {
        job->RequestCancel();
    }
}

// While it lives, the first interrupt cancels the job; a second one ends the program at once.
class CInterruptScope {
public:
    explicit CInterruptScope(CDeployJob& job)
    {
        interruptible = &job;
        struct sigaction action {};
        action.sa_handler = OnInterrupt;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(SIGINT, &action, nullptr);
        sigaction(SIGTERM, &action, nullptr);
    }
    ~CInterruptScope()
    {
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
        interruptible = nullptr;
    }
    CInterruptScope(const CInterruptScope&) = delete;
    CInterruptScope& operator=(const CInterruptScope&) = delete;
};

void RunJob(CDeployJob& job, bool quiet)
{
    const CInterruptScope interrupts(job);
    const auto queue = std::make_shared<CMessageQueue>();
    CDeployProgressDisplay display(isatty(STDOUT_FILENO) != 0);
    job.StartGeneration(queue);
    for (;;) {
        const DeployMessage message = queue->Wait();
        if (std::holds_alternative<DEPLOY_GENERATED>(message)) {
            break;
        }
        const DEPLOY_PROGRESS* progress = std::get_if<DEPLOY_PROGRESS>(&message);
        if (progress && !quiet) {
            display.Show(progress->donePages, progress->totalPages);
        }
    }
    job.WaitFinished();
    display.End();
}

} // namespace

int RunDeploy(const QStringList& arguments)
{
    const CommandArguments parsed = ParseArguments(
        arguments,
        {.valueOptions = {}, .switches = {QStringLiteral("quiet")}, .minPositional = 2, .maxPositional = 2});
    QElapsedTimer timer;
    timer.start();
    CProjectSession session;
    session.OpenExisting(parsed.positional[0]);
    CDeployJob job(session.GetProject());
    job.settings.folder = QDir(parsed.positional[1]).absolutePath();
    RunJob(job, parsed.Has(QStringLiteral("quiet")));

    if (const auto& error = job.GetError()) {
        PrintError(FailureLines(error->description, error->reason, error->solution));
        return ExitFailed;
    }
    if (job.IsCancelled()) {
        PrintError(QStringLiteral("Cancelled. The files written so far stay.\n"));
        return ExitInterrupted;
    }
    const GenerationResult& result = job.GetResult();
    for (const QString& warning : result.warnings) {
        PrintError(QStringLiteral("warning: ") + warning + QLatin1Char('\n'));
    }
    PrintOut(QStringLiteral("%1 pages, %2 images, %3 seconds\n")
                 .arg(result.pages)
                 .arg(result.images)
                 .arg(timer.elapsed() / 1000.0, 0, 'f', 2));
    return ExitDone;
}
