#include "deploy/DeployJob.h"

#include "common/Exceptions.h"
#include "common/Text.h"
#include "common/Trace.h"
#include "content/DeploymentRecord.h"
#include "document/project/GalleryProject.h"

namespace {

// The project shows its pages as deployed ones, not as previews, as long as this lives.
class CDeployModeScope {
public:
    explicit CDeployModeScope(CGalleryProject& project) : project(project) { project.SetPreviewMode(false); }
    ~CDeployModeScope() { project.SetPreviewMode(true); }
    CDeployModeScope(const CDeployModeScope&) = delete;
    CDeployModeScope& operator=(const CDeployModeScope&) = delete;

private:
    CGalleryProject& project;
};

// Keeps the record when a run ends, however it does.
class CRecordSaver {
public:
    explicit CRecordSaver(const CDeploymentRecord& record) : record(record) {}
    ~CRecordSaver()
    {
        try {
            record.Save();
        } catch (const CExceptionBase& failure) {
            // The site is whole without it; the next run takes longer.
            Trace(QStringLiteral("CDeploymentRecord::Save failed: ") + failure.GetDescription());
        }
    }
    CRecordSaver(const CRecordSaver&) = delete;
    CRecordSaver& operator=(const CRecordSaver&) = delete;

private:
    const CDeploymentRecord& record;
};

} // namespace

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

void CDeployJob::Generate()
{
    const CDeployModeScope deployMode(project);
    if (temporaryFolder.isEmpty()) {
        GenerateToFolder();
    } else {
        GenerateForUpload();
    }
}

void CDeployJob::GenerateToFolder()
{
    if (recordsFolder.isEmpty()) {
        result = GeneratePages(project, {settings.folder}, cancel, *this);
        return;
    }
    CDeploymentRecord record(CDeploymentRecord::PathFor(recordsFolder, settings.folder, project.GetName()),
                             settings.folder);
    // What was written by a run that failed is noted as well.
    const CRecordSaver saver(record);
    result = GeneratePages(project, {settings.folder, &record}, cancel, *this);
    if (!cancel.IsSet()) {
        record.RemoveLeftovers();
    }
}

void CDeployJob::GenerateForUpload()
{
    result = GeneratePages(project, {temporaryFolder}, cancel, *this);
    if (!cancel.IsSet()) {
        PostTo<DeployMessage>(target, DEPLOY_PREPARING{});
        CFTPUploadItemsFiller filler(uploadMap, CFTPUploadItemsFiller::RootLengthOf(temporaryFolder), cancel);
        ProcessDirectory(temporaryFolder, filler);
    }
}
