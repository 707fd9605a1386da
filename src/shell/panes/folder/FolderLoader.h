#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QSize>
#include <QString>

#include "common/BackgroundWorker.h"
#include "common/MessageTarget.h"
#include "common/ThreadSafety.h"
#include "content/FolderPictures.h"

// What has been made of a folder.
struct FilledFolder {
    int number = 0; // that of the request
    FolderPictures found;
    QString failure; // empty: none
};

// Thumbnails that have been made meanwhile.
struct FolderProgress {
    int number = 0; // that of the request
    int count = 0;  // of all so far
    std::vector<FolderCard> cards;
};

// Lists a folder and makes its thumbnails on a thread of its own. Owned by the folder view, and called on the
// screen's thread.
class CFolderLoader final : private CBackgroundWorker, private CFolderPicturesListener {
public:
    // Called on the screen's thread.
    struct Listener {
        std::function<void()> filled; // there is something to take
        std::function<void(const FolderProgress&)> progressed;
    };
    explicit CFolderLoader(Listener listener);
    ~CFolderLoader() override;

    // What is wanted from now on; what was under way is cancelled. card: in pixels.
    void Choose(const QString& folder, QSize card);
    // Begins with what was chosen.
    void Request();

    // Of the last choice, from 1; 0 before the first.
    int GetNumber() const { return job.number; }
    QSize GetCard() const { return job.card; }
    // A request has not been answered by Take yet.
    bool IsWorking() const { return isWorking; }
    // Nothing as long as it is not the folder that was chosen last, or if that is not the one meant.
    std::optional<FilledFolder> Take(const QString& folder);

private:
    struct Job {
        int number = 0; // of the request, from 1
        QString folder;
        QSize card;
    };

    // On the worker's threads.
    void DoWork() override;
    bool IsWanted() const override { return IsRunning(); }
    void OnProgress(int count, const std::vector<FolderCard>& cards) override;

    const Listener listener;
    std::shared_ptr<CEventLoopTarget<FolderProgress>> progressTarget;
    std::shared_ptr<CEventLoopTarget<int>> filledTarget; // number of the request
    bool isWorking = false;

    // Changed on the screen's thread, and only while the worker rests.
    Job job;

    CMutex pictureLock;
    FilledFolder filled VISTORAMA_GUARDED_BY(pictureLock); // what the worker hands over
};
