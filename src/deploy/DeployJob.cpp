#include "deploy/DeployJob.h"

#include "common/Exceptions.h"
#include "common/TempFolder.h"
#include "common/Text.h"
#include "common/Trace.h"
#include "content/DeploymentRecord.h"
#include "content/StrangeFiles.h"
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
    explicit CRecordSaver(const CDeploymentRecord& record) : record(record)
    {
        Try([&] { record.Begin(); });
    }
    ~CRecordSaver()
    {
        Try([this] { record.Save(); });
    }
    CRecordSaver(const CRecordSaver&) = delete;
    CRecordSaver& operator=(const CRecordSaver&) = delete;

private:
    // The site is whole without it; the next run takes longer, and asks about its files.
    template <class Write>
    static void Try(const Write& write)
    {
        try {
            write();
        } catch (const CExceptionBase& failure) {
            Trace(QStringLiteral("CDeploymentRecord::Save failed: ") + failure.GetDescription());
        }
    }

    const CDeploymentRecord& record;
};

// The project as it is published: itself, or, if something is to be left out, a copy without that. The copy
// has its own folder for covers, since its galleries show others.
class CWithoutMissing {
public:
    CWithoutMissing(CGalleryProject& whole, const DeployDoubts& missing) : whole(whole)
    {
        if (missing.IsAnyMissing()) {
            folder = std::make_unique<CTempFolder>(whole.GetTempFolder().GetPath());
            copy = whole.MakeCopy(*folder);
            copy->SetPreviewMode(false);
            LeaveOut(missing, *copy);
        }
    }
    CGalleryProject& Get() const { return copy ? *copy : whole; }

private:
    CGalleryProject& whole;
    std::unique_ptr<CTempFolder> folder;
    std::unique_ptr<CGalleryProject> copy;
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

DeployDoubts CDeployJob::Examine()
{
    WaitFinished();
    cancel.Reset();
    project.LookForFiles();
    const CDeployModeScope deployMode(project);
    DeployDoubts doubts = FindMissingFiles(project);
    if (IsTargetWatched()) {
        const CWithoutMissing published(project, doubts);
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
    const CWithoutMissing published(project, missing);
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
    const auto pathFor = [this](const QString& key) {
        return CDeploymentRecord::PathFor(recordsFolder, settings.folder, key);
    };
    // A project without an id is known by its file.
    const QString path = pathFor(project.GetId().isEmpty() ? project.GetPath() : project.GetId());
    CDeploymentRecord::TakeOver(path, pathFor(project.GetPath()));
    CDeploymentRecord::TakeOver(path, pathFor(project.GetName()));
    return CDeploymentRecord(path, settings.folder);
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
