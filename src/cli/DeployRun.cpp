#include "cli/DeployRun.h"

#include <cstdlib>
#include <unistd.h>

#include <QDir>

#include "cli/CommandLine.h"
#include "cli/ProjectSession.h"
#include "common/MessageTarget.h"
#include "common/Platform.h"

CDeployRun::CDeployRun(CProjectSession& session, Options options)
    : session(session),
      options(options),
      display(isatty(STDOUT_FILENO) != 0),
      job(session.GetProject()),
      interrupts([this](uint64_t count) { OnInterrupt(count); })
{
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
    return ReportDone(QString());
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
        PrintError(QStringLiteral("Cancelled. The files sent so far stay on the server.\n"));
        return ExitInterrupted;
    }
    if (error) {
        PrintError(FailureLines(error->description, error->reason, error->solution));
        return ExitFailed;
    }
    return ReportDone(QStringLiteral("%1 files sent, ").arg(upload.GetFinishedFiles()));
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
        PrintError(job.temporaryFolder.isEmpty()
                       ? QStringLiteral("Cancelled. The files written so far stay.\n")
                       : QStringLiteral("Cancelled. Nothing was sent.\n"));
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

int CDeployRun::ReportDone(const QString& sent)
{
    const GenerationResult& result = job.GetResult();
    for (const QString& warning : result.warnings) {
        PrintError(QStringLiteral("warning: ") + warning + QLatin1Char('\n'));
    }
    PrintOut(QStringLiteral("%1 pages, %2 images, ").arg(result.pages).arg(result.images) + sent +
             QStringLiteral("%1 seconds\n").arg(timer.elapsed() / 1000.0, 0, 'f', 2));
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
        ShowProgress(progress->donePages, progress->totalPages, QStringLiteral("pages"));
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
                     QStringLiteral("files"));
    }
    if (upload.IsFinished()) {
        loop.quit();
    }
}

void CDeployRun::ShowProgress(int32_t done, int32_t total, const QString& unit)
{
    if (!options.quiet) {
        display.Show(done, total, unit);
    }
}
