#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <QSize>
#include <QStringList>
#include <QTimer>

#include "shell/panes/folder/FolderLoader.h"
#include "shell/panes/folder/FolderWatcher.h"
#include "shell/web/HTMLViewOptions.h"

class CFilePictureInfo;
class CGallery;
class CViewFolderImageIterator;

// The list of a folder's pictures on its way to the screen and there: has it loaded, shows how far that is,
// keeps it up to date with the disk and with the gallery, whose pictures are not on it. Owned by the folder
// view; screen's thread.
class CFolderListing final {
public:
    // What it needs of the view.
    struct Services {
        std::function<void(const std::string& page, HTMLScrollPlace place)> load;
        std::function<void(const QString& script)> run; // in the page
        std::function<QSize()> getCardSize;             // in pixels
        std::function<const CGallery*()> getGallery;    // the current one; null for none
        std::function<void()> changed;                  // other pictures are on the list
    };
    explicit CFolderListing(Services services);
    ~CFolderListing();

    // From now on that folder, without a separator at its end; empty for none. Begins anew if it is the same.
    void Show(const QString& newFolder);
    const QString& GetFolder() const { return folder; }
    // The folder or the room for its cards has changed.
    void Refresh();
    // The cards on the screen have another size than there is room for.
    bool IsOutOfSize() const;
    // Pictures have come into the gallery or left it.
    void FollowGallery();

    // The list is on the screen, or on its way there.
    bool IsShown() const { return state == State::Shown; }
    // Null for a file that is not on the list.
    const CFilePictureInfo* Find(const QString& path) const;
    // The ids of those that are on the list, with the paths of their pictures, in order.
    std::vector<std::pair<QString, QString>> List() const;

private:
    enum class State {
        Empty,   // nothing of this folder is on the screen
        Filling, // a page with what has come so far
        Shown,
    };

    void Begin();
    void Forget();
    void OnFilled();
    void OnProgress(const FolderProgress& progress);
    void ShowProgress();
    void Display(FilledFolder filled);
    void DisplayList();
    // In place of a list.
    void DisplayText(const std::string& page);
    void Load(const std::string& page);
    void TakeOffList(const std::set<QString>& paths);

    const Services services;
    QString folder;
    QString folderOnScreen;
    State state = State::Empty;
    bool isOutdated = false; // the folder has changed while the loader was at work
    CFolderWatcher watcher;
    std::vector<std::unique_ptr<CFilePictureInfo>> pictures;
    std::unique_ptr<CViewFolderImageIterator> iterator;
    std::set<QString> galleryPaths; // of the gallery's pictures, as far as the list knows

    FolderProgress waiting; // what has come and the page does not show yet
    QTimer progressTimer;
    std::unique_ptr<CFolderLoader> loader; // goes first
};
