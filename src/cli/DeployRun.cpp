#include "cli/DeployRun.h"

#include <algorithm>
#include <cstdlib>
#include <unistd.h>

#include <QDir>

#include "cli/Answers.h"
#include "cli/ProjectSession.h"
#include "cli/ServerDoubtTexts.h"
#include "common/MessageTarget.h"
#include "common/Platform.h"
#include "deploy/ServerTargets.h"
#include "ftpengine/messages/EngineStatus.h"
#include "resources/StringTable.h"

namespace {

QString Megabytes(int64_t bytes)
{
    return QString::number(static_cast<double>(bytes) / 1e6, 'f', 1);
}

// "2:05"
QString MinutesAndSeconds(std::chrono::seconds time)
{
    constexpr int64_t minute = 60;
    return QStringLiteral("%1:%2")
        .arg(time.count() / minute)
        .arg(time.count() % minute, 2, 10, QLatin1Char('0'));
}

QString WordsOf(const SendProgress& progress)
{
    QString words = Text(StringId::BytesProgress, progress.doneFiles, progress.totalFiles,
                         Megabytes(progress.doneBytes), Megabytes(progress.totalBytes));
    if (progress.bytesPerSecond > 0) {
        words = Text(StringId::RateProgress, words, Megabytes(progress.bytesPerSecond));
    }
    if (progress.timeLeft) {
        words = Text(StringId::TimeProgress, words, MinutesAndSeconds(*progress.timeLeft));
    }
    return words;
}

} // namespace

void CDeployProgressDisplay::Show(int32_t done, int32_t total, StringId step)
{
    BeginStep(step);
    const QString text = Text(step, done, total);
    if (onTerminal) {
        DrawBar(done, total, text);
    } else {
        PrintTenth(done, total, text);
    }
}

void CDeployProgressDisplay::Show(const SendProgress& progress)
{
    if (!onTerminal) {
        Show(progress.doneFiles, progress.totalFiles, StringId::FilesProgress);
        return;
    }
    BeginStep(StringId::FilesProgress);
    // A byte for each file: empty ones are work as well.
    DrawBar(progress.doneBytes + progress.doneFiles, progress.totalBytes + progress.totalFiles,
            WordsOf(progress));
}

void CDeployProgressDisplay::BeginStep(StringId step)
{
    if (step != lastStep) {
        End();
        lastStep = step;
        lastTenth = 0;
    }
}

void CDeployProgressDisplay::DrawBar(int64_t done, int64_t total, const QString& text)
{
    constexpr int64_t width = 40;
    // The total can fall short of what is written, so the bar stops at its end.
    const auto filled = static_cast<qsizetype>(std::min(width, width * done / std::max<int64_t>(total, 1)));
    const QString bar = QLatin1Char('[') + QStringLiteral("#").repeated(filled) +
                        QStringLiteral("-").repeated(width - filled) + QStringLiteral("] ") + text;
    // A shorter one doesn't cover the last one by itself.
    PrintOut(QLatin1Char('\r') + bar.leftJustified(barLength));
    barLength = bar.size();
}

void CDeployProgressDisplay::PrintTenth(int64_t done, int64_t total, const QString& text)
{
    const int64_t tenth = 10 * done / std::max<int64_t>(total, 1);
    if (tenth > lastTenth) {
        lastTenth = tenth;
        PrintOut(text + QLatin1Char('\n'));
    }
}

void CDeployProgressDisplay::End()
{
    if (barLength > 0) {
        PrintOut(QStringLiteral("\n"));
        barLength = 0;
    }
}

CDeployRun::CDeployRun(CProjectSession& session, Options options)
    : session(session),
      options(options),
      display(isatty(STDOUT_FILENO) != 0),
      interrupts([this](uint64_t count) { OnInterrupt(count); })
{
    timer.start();
}

int CDeployRun::ToFolder(const QString& targetFolder)
{
    folder = targetFolder;
    Deploy(FolderTarget{targetFolder});
    return ReportEnd();
}

int CDeployRun::ToServer(const FTPDestinationConnection& destination)
{
    server = destination;
    WarnUnlessProtected(server);
    ServerAccess access;
    access.trustFolder = FindTrustFolder();
    Deploy(MakeServerTarget(server, access));
    return ReportEnd();
}

void CDeployRun::Deploy(const DeploymentTarget& target)
{
    deployment = std::make_unique<CDeployment>(
        session.GetProject(), CDeployment::Setting{.target = target,
                                                   .leaveOutMissing = options.leaveOutMissing,
                                                   .overwrite = options.overwrite,
                                                   .isDryRun = options.isDryRun,
                                                   .recordsFolder = FindDeploymentRecordsFolder(),
                                                   .sitesFolder = FindSitesFolder()});
    const auto receiver = CEventLoopTarget<DeploymentMessage>::Create(
        [this](const DeploymentMessage& message) { OnMessage(message); });
    deployment->Start(receiver);
    loop.exec();
    deployment->WaitFinished();
    display.End();
}

int CDeployRun::ReportEnd()
{
    return std::visit([this](const auto& end) { return Report(end); }, deployment->GetEnd());
}

int CDeployRun::Report(const DeployDone&)
{
    for (const QString& warning : deployment->GetResult().warnings) {
        PrintError(Text(StringId::DeploymentWarning, Printable(warning)) + QLatin1Char('\n'));
    }
    if (options.isDryRun) {
        for (const QString& line : deployment->GetResult().summary.value_or(DeploySummary()).GetLines()) {
            PrintOut(line + QLatin1Char('\n'));
        }
        return ExitDone;
    }
    return ReportPublished(QString::number(timer.elapsed() / 1000.0, 'f', 2));
}

int CDeployRun::ReportPublished(const QString& seconds)
{
    const DeployResult& result = deployment->GetResult();
    const int32_t pages = result.generation.pages;
    const int32_t images = result.generation.images;
    QString line = Text(StringId::FolderDeployed, pages, images, seconds);
    if (result.summary) {
        const int32_t sent = result.summary->newFiles + result.summary->changedFiles;
        line = Text(StringId::SiteDeployed, pages, images, sent, seconds);
    }
    PrintOut(line + QLatin1Char('\n'));
    return ExitDone;
}

int CDeployRun::Report(const DeployCancelled&)
{
    const StringId onServer = hasBegunToSend ? StringId::CancelledOnServer : StringId::CancelledBeforeSending;
    PrintError(Text(folder ? StringId::CancelledInFolder : onServer) + QLatin1Char('\n'));
    return ExitInterrupted;
}

int CDeployRun::Report(const DeployFailure& failure)
{
    PrintError(FailureLines(failure.caption, failure.description, failure.advice));
    return ExitFailed;
}

int CDeployRun::Report(const DeployDoubts& doubts)
{
    if (doubts.IsAnyMissing()) {
        return Report(MissingFilesError(doubts));
    }
    return Report(folder ? StrangeFilesError(*folder, doubts.strangeFiles)
                         : StrangeFilesOnServerError(doubts.strangeFiles));
}

int CDeployRun::Report(const ServerDoubt& doubt)
{
    throw DescribeServerDoubt(server, doubt.status, doubt.identity);
}

void CDeployRun::OnInterrupt(uint64_t count)
{
    if (count > 1) {
        // What is under way may take seconds to be given up, and the person doesn't want to wait for it.
        QDir(session.GetTemporaryFolder()).removeRecursively();
        std::_Exit(ExitInterrupted);
    }
    if (deployment) {
        deployment->RequestCancel();
    }
}

void CDeployRun::OnMessage(const DeploymentMessage& message)
{
    std::visit([this](const auto& body) { On(body); }, message);
}

void CDeployRun::On(const DeployPhaseBegun& begun)
{
    hasBegunToSend = hasBegunToSend || begun.phase == DeployPhase::Send;
}

void CDeployRun::On(const DeployPagesDone& pages)
{
    if (!options.quiet) {
        display.Show(pages.done, pages.total, StringId::PagesProgress);
    }
}

void CDeployRun::On(const SendProgress& progress)
{
    if (!options.quiet) {
        display.Show(progress);
    }
}

void CDeployRun::On(const SendRetry& retry)
{
    if (options.quiet) {
        return;
    }
    display.End();
    const auto seconds =
        static_cast<int>(std::chrono::duration_cast<std::chrono::seconds>(retry.pause).count());
    const QString text =
        retry.status != 0
            ? Text(StringId::RetryAfterLoss, EngineStatus::GetWords(retry.status), retry.number,
                   retry.allowed, seconds)
            : Text(StringId::RetryOfFile, Printable(retry.path), retry.number, retry.allowed, seconds);
    PrintError(text + QLatin1Char('\n'));
}
