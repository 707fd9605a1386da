#pragma once

#include <memory>
#include <optional>
#include <thread>

#include "common/StopSignal.h"
#include "content/PageGeneration.h"
#include "deploy/DeployDoubts.h"
#include "deploy/DeployMessages.h"
#include "deploy/FTPUploadItemsFiller.h"
#include "document/project/DeploySettings.h"

class CDeploymentRecord;
class CGalleryProject;

// A deployment: its choices, its generation thread and what came of it. Owned by the wizard or program that
// started it. While the thread runs nobody else may change the project; the job turns its preview mode off
// for that time.
//
// The results (error, upload map, warnings) are read after DEPLOY_GENERATED or WaitFinished.
class CDeployJob final : private CGenerationProgress {
public:
    // project: borrowed, outlives the job.
    explicit CDeployJob(CGalleryProject& project);
    // Cancels and waits.
    ~CDeployJob() override;
    CDeployJob(const CDeployJob&) = delete;
    CDeployJob& operator=(const CDeployJob&) = delete;

    CDeploySettings settings;
    // What a person has decided of what Examine finds. Without them the run stops before it writes anything.
    bool leaveOutMissing = false; // absent pictures and unreadable watermarks; nothing is tidied up then
    bool overwrite = false;       // somebody else's files in the target

    // Empty for a deployment to a folder. If set, the site is generated there and listed for the upload.
    QString temporaryFolder;
    // Where records of deployments to folders are kept, so that the next one makes only what has changed.
    // Empty: none is kept, and all images are made anew.
    QString recordsFolder;

    // Starts the thread: the site goes to the temporary folder if there is one, else to settings.folder.
    // Progress is posted to the target as long as it exists. Not to be called while a generation runs.
    void StartGeneration(std::weak_ptr<CDeployTarget> target);

    // What a person should decide before the generation starts, as the files are now. Writes nothing into the
    // target. Not to be called while a generation runs. Throws CExceptionBase from a page.
    DeployDoubts Examine();

    // Sets the cancel flag alone.
    void RequestCancel() { cancel.Set(); }
    // Sets the cancel flag and returns when the thread has ended.
    void Cancel();
    void WaitFinished();

    bool IsCancelled() const { return cancel.IsSet(); }
    const std::optional<DeployError>& GetError() const { return error; }
    const FTPUploadMap& GetUploadMap() const { return uploadMap; }
    const GenerationResult& GetResult() const { return result; }

    // Stores the choices in the project.
    void StoreSettings();

private:
    void OnPageDone(int32_t donePages, int32_t totalPages) override;
    void RunGeneration();
    void Generate();
    void GenerateToFolder(CGalleryProject& published, const DeployDoubts& missing);
    void GenerateForUpload(CGalleryProject& published);
    bool IsTargetWatched() const;
    CDeploymentRecord OpenRecord() const;
    QStringList FindStrangers(CGalleryProject& published, CDeploymentRecord& record);

    CGalleryProject& project;
    CStopSignal cancel;
    std::weak_ptr<CDeployTarget> target;
    std::optional<DeployError> error;
    FTPUploadMap uploadMap;
    GenerationResult result;
    std::thread thread;
};
