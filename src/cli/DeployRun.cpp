#include "cli/DeployRun.h"

#include <algorithm>
#include <cstdlib>
#include <unistd.h>

#include <QDir>

#include "cli/Answers.h"
#include "cli/ProjectSession.h"
#include "common/MessageTarget.h"
#include "common/Platform.h"
#include "resources/StringTable.h"

void CDeployProgressDisplay::Show(int32_t done, int32_t total, StringId step)
{
    if (step != lastStep) {
        End();
        lastStep = step;
        lastTenth = 0;
    }
    const QString text = Text(step, done, total);
    // The total can fall short of what is written, so the bar stops at its end.
    const int64_t whole = std::max<int64_t>(total, 1);
    if (onTerminal) {
        constexpr int64_t width = 40;
        const auto filled = static_cast<qsizetype>(std::min(width, width * done / whole));
        PrintOut(QStringLiteral("\r[") + QStringLiteral("#").repeated(filled) +
                 QStringLiteral("-").repeated(width - filled) + QStringLiteral("] ") + text);
        barShown = true;
        return;
    }
    const int64_t tenth = 10 * done / whole;
    if (tenth > lastTenth) {
        lastTenth = tenth;
        PrintOut(text + QLatin1Char('\n'));
    }
}

void CDeployProgressDisplay::End()
{
    if (barShown) {
        PrintOut(QStringLiteral("\n"));
        barShown = false;
    }
}

CDeployRun::CDeployRun(CProjectSession& session, Options options)
    : session(session),
      options(options),
      display(isatty(STDOUT_FILENO) != 0),
      job(session.GetProject()),
      interrupts([this](uint64_t count) { OnInterrupt(count); })
{
    job.leaveOutMissing = options.leaveOutMissing;
    job.overwrite = options.overwrite;
    timer.start();
}

int CDeployRun::ToFolder(const QString& folder)
{
    job.settings.folder = folder;
    job.recordsFolder = FindDeploymentRecordsFolder();
    Generate();
    if (const auto end = FindEnd()) {
        return *end;
    }
    return ReportDone(std::nullopt);
}

int CDeployRun::ToServer(const FTPDestinationConnection& destination, const QString& directory)
{
    job.temporaryFolder = session.GetTemporaryFolder() + QStringLiteral("site/");
    Generate();
    if (const auto end = FindEnd()) {
        return *end;
    }
    CSiteUpload upload(engine, destination, directory);
    const auto error = Upload(upload);
    if (job.IsCancelled()) {
        PrintError(Text(StringId::CancelledOnServer) + QLatin1Char('\n'));
        return ExitInterrupted;
    }
    if (error) {
        PrintError(FailureLines(error->description, error->reason, error->solution));
        return ExitFailed;
    }
    return ReportDone(upload.GetFinishedFiles());
}

void CDeployRun::Generate()
{
    const auto target = CEventLoopTarget<DeployMessage>::Create(
        [this](const DeployMessage& message) { OnJobMessage(message); });
    job.StartGeneration(target);
    loop.exec();
    job.WaitFinished();
    display.End();
}

std::optional<int> CDeployRun::FindEnd() const
{
    if (const auto& error = job.GetError()) {
        PrintError(FailureLines(error->description, error->reason, error->solution));
        return ExitFailed;
    }
    if (job.IsCancelled()) {
        PrintError(Text(job.temporaryFolder.isEmpty() ? StringId::CancelledInFolder
                                                      : StringId::CancelledBeforeSending) +
                   QLatin1Char('\n'));
        return ExitInterrupted;
    }
    return std::nullopt;
}

std::optional<DeployError> CDeployRun::Upload(CSiteUpload& upload)
{
    const auto target = CEventLoopTarget<FTPMessage>::Create(
        [this, &upload](const FTPMessage& message) { OnUploadMessage(message, upload); });
    upload.Start(job.GetUploadMap(), target);
    loop.exec();
    display.End();
    return upload.MakeError();
}

int CDeployRun::ReportDone(std::optional<int32_t> sentFiles)
{
    const GenerationResult& result = job.GetResult();
    for (const QString& warning : result.warnings) {
        PrintError(Text(StringId::DeploymentWarning, warning) + QLatin1Char('\n'));
    }
    const QString seconds = QString::number(timer.elapsed() / 1000.0, 'f', 2);
    PrintOut((sentFiles ? Text(StringId::SiteDeployed, result.pages, result.images, *sentFiles, seconds)
                        : Text(StringId::FolderDeployed, result.pages, result.images, seconds)) +
             QLatin1Char('\n'));
    return ExitDone;
}

void CDeployRun::OnInterrupt(uint64_t count)
{
    if (count > 1) {
        // A file in progress may take a minute to be given up, and the person doesn't want to wait for it.
        QDir(session.GetTemporaryFolder()).removeRecursively();
        std::_Exit(ExitInterrupted);
    }
    job.RequestCancel();
    engine.Cancel();
}

void CDeployRun::OnJobMessage(const DeployMessage& message)
{
    if (const auto* const progress = std::get_if<DEPLOY_PROGRESS>(&message)) {
        ShowProgress(progress->donePages, progress->totalPages, StringId::PagesProgress);
    } else if (std::holds_alternative<DEPLOY_GENERATED>(message)) {
        loop.quit();
    }
}

void CDeployRun::OnUploadMessage(const FTPMessage& message, CSiteUpload& upload)
{
    if (job.IsCancelled()) {
        upload.Cancel();
    }
    upload.OnMessage(message);
    if (std::holds_alternative<FTP_UPLOAD_FILE_FINISHED>(message)) {
        ShowProgress(upload.GetFinishedFiles(), static_cast<int32_t>(job.GetUploadMap().size()),
                     StringId::FilesProgress);
    }
    if (upload.IsFinished()) {
        loop.quit();
    }
}

void CDeployRun::ShowProgress(int32_t done, int32_t total, StringId step)
{
    if (!options.quiet) {
        display.Show(done, total, step);
    }
}
