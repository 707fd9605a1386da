#include "deploy/DeployJob.h"

#include "common/Exceptions.h"
#include "common/Text.h"
#include "content/StrangeFiles.h"
#include "deploy/PublishedProject.h"

CDeployJob::CDeployJob(CGalleryProject& project) : settings(project.GetDeploySettings()), project(project) {}

CDeployJob::~CDeployJob()
{
    Cancel();
}

void CDeployJob::StartGeneration(std::weak_ptr<CDeployTarget> messageTarget)
{
    WaitFinished();
    cancel.Reset();
    target = std::move(messageTarget);
    error.reset();
    uploadMap.clear();
    result = {};
    thread = std::thread([this] { RunGeneration(); });
}

void CDeployJob::Cancel()
{
    cancel.Set();
    WaitFinished();
}

void CDeployJob::WaitFinished()
{
    if (thread.joinable()) {
        thread.join();
    }
}

void CDeployJob::StoreSettings()
{
    project.GetDeploySettings() = settings;
}

void CDeployJob::OnPageDone(int32_t donePages, int32_t totalPages)
{
    PostTo<DeployMessage>(target, DEPLOY_PROGRESS{donePages, totalPages});
}

void CDeployJob::RunGeneration()
{
    try {
        Generate();
    } catch (const CExceptionBase& failure) {
        error = DeployError{failure.GetCaption(), failure.GetDescription(), failure.GetAdvice()};
    } catch (const std::exception& failure) {
        error = DeployError{Text(StringId::UnexpectedErrorCaption), Widen(failure.what()),
                            Text(StringId::UnexpectedErrorAdvice)};
    }
    PostTo<DeployMessage>(target, DEPLOY_GENERATED{});
}

DeployDoubts CDeployJob::Examine()
{
    WaitFinished();
    cancel.Reset();
    project.LookForFiles();
    const CDeployModeScope deployMode(project);
    DeployDoubts doubts = FindMissingFiles(project);
    if (IsTargetWatched()) {
        const CPublishedProject published(project, doubts);
        CDeploymentRecord record = OpenRecord();
        doubts.strangeFiles = FindStrangers(published.Get(), record);
    }
    return doubts;
}

void CDeployJob::Generate()
{
    project.LookForFiles();
    const CDeployModeScope deployMode(project);
    const DeployDoubts missing = FindMissingFiles(project);
    if (missing.IsAnyMissing() && !leaveOutMissing) {
        error = MissingFilesError(missing);
        return;
    }
    const CPublishedProject published(project, missing);
    if (temporaryFolder.isEmpty()) {
        GenerateToFolder(published.Get(), missing);
    } else {
        GenerateForUpload(published.Get());
    }
    result.warnings = WarningsOf(missing) + result.warnings;
}

// Only with a record it is known whose the files of a target are.
bool CDeployJob::IsTargetWatched() const
{
    return temporaryFolder.isEmpty() && !recordsFolder.isEmpty();
}

CDeploymentRecord CDeployJob::OpenRecord() const
{
    return OpenRecordFor(project, recordsFolder, settings.folder);
}

QStringList CDeployJob::FindStrangers(CGalleryProject& published, CDeploymentRecord& record)
{
    return FindStrangeFiles(published, {settings.folder, &record}, cancel);
}

void CDeployJob::GenerateToFolder(CGalleryProject& published, const DeployDoubts& missing)
{
    if (!IsTargetWatched()) {
        result = GeneratePages(published, {settings.folder}, cancel, *this);
        return;
    }
    CDeploymentRecord record = OpenRecord();
    const QStringList strangers = overwrite ? QStringList() : FindStrangers(published, record);
    if (!strangers.isEmpty()) {
        error = StrangeFilesError(settings.folder, strangers);
    }
    if (error || cancel.IsSet()) {
        return;
    }
    // What was written by a run that failed is noted as well.
    const CRecordSaver saver(record);
    result = GeneratePages(published, {settings.folder, &record}, cancel, *this);
    // What a missing picture has left in the site is no leftover: it may come back.
    if (!cancel.IsSet() && !missing.IsAnyMissing()) {
        record.RemoveLeftovers();
    }
}

void CDeployJob::GenerateForUpload(CGalleryProject& published)
{
    result = GeneratePages(published, {temporaryFolder}, cancel, *this);
    if (!cancel.IsSet()) {
        PostTo<DeployMessage>(target, DEPLOY_PREPARING{});
        CFTPUploadItemsFiller filler(uploadMap, CFTPUploadItemsFiller::RootLengthOf(temporaryFolder), cancel);
        ProcessDirectory(temporaryFolder, filler);
    }
}
