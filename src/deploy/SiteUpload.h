#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include <QStringList>

#include "deploy/DeployMessages.h"
#include "ftpengine/FTPEngine.h"

// The second half of a deployment to a server: makes the target directory, then sends the files that a job
// has generated and listed. Owned by the page or program that deploys; on its thread only. Never waits: it
// goes on by its messages, which come to the target given, and which that passes on to OnMessage.
class CSiteUpload {
public:
    // engine: borrowed. destination: as it is stored. directory: on the server, seen from the login's folder;
    // empty for that folder itself.
    CSiteUpload(CFTPEngine& engine, const FTPDestinationConnection& destination, const QString& directory);

    // Returns at once.
    void Start(const FTPUploadMap& items, const CFTPEngine::Target& target);
    // Nothing new is begun from now on; a file in progress is broken off. IsFinished tells the end.
    void Cancel();

    void OnMessage(const FTPMessage& message);
    bool IsFinished() const { return finished; }
    bool IsSendingFile() const { return sendingFile; }
    int32_t GetFinishedFiles() const { return finishedFiles; }
    // What to tell about a finished upload; nothing of a success.
    std::optional<DeployError> MakeError() const;

private:
    void OnCreated(const CTaskResult& created);
    void CreateWanted();
    void SendFiles();
    void Finish(const CTaskResult& last);

    CFTPEngine& engine;
    const FTPDestinationConnection destination;
    const QString directory;
    FTPUploadMap items;
    CFTPEngine::Target target;

    QStringList wanted;     // directories to be made: the target, and above it those that seem to be missing
    bool goingDown = false; // one of them was made, so the one before it can be
    bool cancelled = false;
    bool finished = false;
    bool sendingFile = false;
    int32_t finishedFiles = 0;
    CTaskResult result;
};
