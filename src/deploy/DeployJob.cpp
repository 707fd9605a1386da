#include "deploy/DeployJob.h"

#include "common/Exceptions.h"
#include "common/Text.h"
#include "document/GalleryProject.h"

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
    const QString& folder = temporaryFolder.isEmpty() ? settings.folder : temporaryFolder;
    {
        const CDeployModeScope deployMode(project);
        result = GeneratePages(project, folder, cancel, *this);
    }
    if (!temporaryFolder.isEmpty() && !cancel.IsSet()) {
        PostTo<DeployMessage>(target, DEPLOY_PREPARING{});
        CFTPUploadItemsFiller filler(uploadMap, CFTPUploadItemsFiller::RootLengthOf(temporaryFolder), cancel);
        ProcessDirectory(temporaryFolder, filler);
    }
}
