#pragma once

#include <memory>
#include <set>
#include <vector>

#include <QTimer>

#include "common/BackgroundWorker.h"
#include "common/MessageTarget.h"
#include "common/ThreadSafety.h"
#include "content/FolderPictures.h"
#include "document/project/GalleryProjectConsumer.h"
#include "shell/look/Panel.h"
#include "shell/panes/folder/FolderWatcher.h"
#include "shell/panes/folder/ViewFolderImageIterator.h"
#include "shell/panes/folder/ViewFolderToolBar.h"
#include "shell/web/ContentURLLoader.h"
#include "shell/web/HTMLView.h"
#include "shell/web/ViewFolderExternalDispatch.h"
#include "shell/web/ViewNotification.h"

class CGallery;

// The panel of thumbnails of one folder of the disk, from which pictures are added to the current gallery. It
// shows only what the gallery does not have yet. The thumbnails are made by a worker; everything else happens
// on the screen's thread. Owned by the frame.
class CViewFolder final : public CPanel,
                          public CGalleryProjectConsumer,
                          public CViewFolderExternalDispatchCommands,
                          public CContentURLLoader,
                          private CBackgroundWorker,
                          private CFolderPicturesListener {
public:
    struct Services {
        CViewNotification notify; // the frame's way to UpdateProject
        CHTMLView::Options browser;
    };
    explicit CViewFolder(const Services& services, QWidget* parent = nullptr);
    ~CViewFolder() override;

    CViewFolderToolBar& GetToolBar() { return *toolBar; }
    CHTMLView& GetHTMLView() { return *htmlView; }
    const QString& GetFolder() const { return folderPath; }
    // The list of the folder is on the screen, or on its way there.
    bool IsLoaded() const { return loaded; }

    // Opens the folder browser.
    void ChooseFolder();
    // The folder that is shown, without regard to case, is no new one.
    void SetFolder(const QString& folder);
    // Asks for the picture at that place of the list to be added to the current gallery, and takes its row
    // away.
    // The list may have become another one since: then the path counts.
    void AddPictureAt(int32_t index, const QString& path);

    void UpdateProject(UpdateHint hint, const UpdateParameter& parameter, CGalleryProject& project) override;
    void UpdateView(UpdateHint hint, CGalleryProject& project) override;

    void AddImage(const QString& id) override;
    void AddAllImages() override;
    void DragImage(const QString& id, const QString& look) override;

    void LoadURL(const QString& url) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Job {
        int number = 0; // of the request, from 1
        QString folder;
        QSize card;
    };
    struct Filled {
        int number = 0; // that of the job
        FolderPictures found;
        QString failure; // empty: none
    };
    struct Progress {
        int number = 0;
        int count = 0;
        std::vector<FolderCard> cards;
    };

    // On the worker's threads.
    void DoWork() override;
    bool IsWanted() const override { return IsRunning(); }
    void OnProgress(int count, const std::vector<FolderCard>& cards) override;

    void UpdateList(UpdateHint hint, CGalleryProject& project);
    void StartLoading();
    void Refresh();
    bool TakeFilled();
    void OnProgress(const Progress& progress);
    void ShowProgress();
    void Display(CGallery* gallery);
    void DisplayFolder();
    // In place of a list.
    void DisplayText(const std::string& page);
    void Load(const std::string& page);
    void Choose(int32_t index);
    void AddToGallery(const UpdateParameter& parameter, CGallery& gallery);
    QString TakeChosenPath(int32_t index);
    // Of an id "i12"; -1 for one that is not on the list, and while there is none.
    int32_t FindIndex(const QString& id) const;
    QSize GetCardSize() const;

    CViewNotifier notifier;
    CViewFolderExternalDispatch dispatch;
    CViewFolderToolBar* const toolBar;
    CHTMLView* const htmlView;
    CFolderWatcher watcher;
    QTimer resizeTimer;
    QTimer progressTimer;
    std::shared_ptr<CEventLoopTarget<Progress>> progressTarget;

    QString folderPath;
    QString shownFolder; // of the page on the screen
    bool loaded = false;
    bool isWorking = false;  // a request has not been answered yet
    bool isOutdated = false; // the folder has changed meanwhile
    FolderPictures::State state = FolderPictures::State::Listed;
    QString failure; // why the folder could not be listed; empty: none
    CViewFolderImageIterator::Collection pictures;
    CViewFolderImageIterator imageIterator{pictures};
    std::map<int32_t, QString> chosenPaths; // by index, of those that the frame has not been asked for yet
    std::set<QString> galleryPaths;         // lower-cased, of the current gallery when the loading began
    Progress waitingProgress;               // that the page does not show yet
    bool isProgressPageShown = false;

    // Changed on the screen's thread, and only while the worker rests.
    Job job;

    CMutex pictureLock;
    Filled filled VISTORAMA_GUARDED_BY(pictureLock); // what the worker hands over
};
