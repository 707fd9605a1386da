#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include <QTimer>

#include "document/project/GalleryProjectConsumer.h"
#include "shell/look/Panel.h"
#include "shell/panes/ViewNotification.h"
#include "shell/panes/folder/FolderWatcher.h"
#include "shell/panes/folder/ViewFolderExternalDispatch.h"
#include "shell/panes/folder/ViewFolderToolBar.h"
#include "shell/web/HTMLView.h"

class CFilePictureInfo;
class CFolderLoader;
class CGallery;
class CViewFolderImageIterator;
struct FilledFolder;
struct FolderCard;
struct FolderProgress;

// The panel of thumbnails of one folder of the disk, from which pictures are added to the current gallery. It
// shows only what the gallery does not have yet. Owned by the frame; screen's thread.
class CViewFolder final : public CPanel,
                          public CGalleryProjectConsumer,
                          public CViewFolderExternalDispatchCommands,
                          public CContentURLLoader {
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
    // The folder that is shown is no new one.
    void SetFolder(const QString& folder);
    // Asks for the picture at that place of the list to be added to the current gallery, and takes its row
    // away. The list may have become another one since: then the path counts.
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
    void UpdateList(UpdateHint hint, CGalleryProject& project);
    void StartLoading();
    void Refresh();
    void OnProgress(const FolderProgress& progress);
    void ShowProgress();
    void Display(FilledFolder filled, CGallery* gallery);
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

    QString folderPath;
    QString shownFolder; // of the page on the screen
    bool loaded = false;
    bool isOutdated = false; // the folder has changed while the loader was at work
    std::vector<std::unique_ptr<CFilePictureInfo>> pictures;
    std::unique_ptr<CViewFolderImageIterator> imageIterator;
    std::map<int32_t, QString> chosenPaths; // by index, of those that the frame has not been asked for yet
    std::set<QString> galleryPaths;         // of the current gallery when the loading began
    int waitingCount = 0;                   // of thumbnails, that the page does not show yet
    std::vector<FolderCard> waitingCards;   // likewise
    bool isProgressPageShown = false;

    std::unique_ptr<CFolderLoader> loader; // goes first
};
