#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "deploy/DeployError.h"
#include "ftpengine/FTPEngine.h"

// The second half of a deployment to a server: makes the target directory and sends the files that a job has
// generated and listed. Owned by the page or program that deploys; on its thread only. Its messages go to the
// target given, which passes each on to OnMessage.
class CSiteUpload {
public:
    // engine: borrowed. destination: as it is stored. directory: on the server, seen from the login's folder;
    // empty for that folder itself.
    CSiteUpload(CFTPEngine& engine, const FTPDestinationConnection& destination, const QString& directory);

    // Waits. Nobody looks at what comes of it: the directory may well exist, and if it can't be entered, the
    // upload says so.
    void CreateTargetDirectory();
    // items is copied. Returns at once.
    void Start(const FTPUploadMap& items, const CFTPEngine::Target& target);

    // Counts the files.
    void OnMessage(const FTPMessage& message);
    int32_t GetFinishedFiles() const { return finishedFiles; }
    // What to tell about the result of a finished upload; nothing of a success.
    std::optional<DeployError> MakeError(const CTaskResult& result) const;

private:
    CTaskResult CreateDirectory(const QString& path);

    CFTPEngine& engine;
    const FTPDestinationConnection destination;
    const QString directory;
    int32_t finishedFiles = 0;
};
