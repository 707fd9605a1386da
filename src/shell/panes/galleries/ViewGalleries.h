#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

#include <QTimer>
#include <QWidget>

#include "shell/panes/DocumentDesk.h"
#include "shell/panes/GalleryProjectConsumer.h"
#include "shell/panes/galleries/CoverDrops.h"
#include "shell/panes/galleries/GalleriesPage.h"
#include "shell/panes/galleries/GalleryCovers.h"
#include "shell/panes/galleries/ViewGalleriesExternalDispatch.h"
#include "shell/web/HTMLView.h"

class CExceptionBase;
class CGalleryNameEditor;

// The tree of galleries around the current one. A click on a cover makes its gallery the current one; the
// buttons over it and its menu add, remove, rename and duplicate galleries. Covers are dragged to other
// places of the tree, and pictures that are dropped on one go into its gallery. Owned by the frame; screen's
// thread.
class CViewGalleries final : public QWidget,
                             public CGalleryProjectConsumer,
                             public CViewGalleriesExternalDispatchCommands,
                             public CContentURLLoader {
public:
    struct Services {
        // Files were dropped on a gallery's cover; beside the covers gallery is that of the project at the
        // moment, CurrentGallery.
        std::function<void(const QStringList& paths, int32_t gallery)> addDropped;
        // Tells the person that a change was not possible.
        std::function<void(const CExceptionBase& failure)> tell;
        CDocumentDesk& desk;
        CHTMLView::Options browser;
    };
    static constexpr int32_t CurrentGallery = CCoverDrops::CurrentGallery;

    explicit CViewGalleries(const Services& services, QWidget* parent = nullptr);
    ~CViewGalleries() override;

    CHTMLView& GetHTMLView() { return *htmlView; }

    // While it lives, the view does not look at the document: another thread does.
    class CPause {
    public:
        explicit CPause(CViewGalleries& view);
        ~CPause();
        CPause(const CPause&) = delete;
        CPause& operator=(const CPause&) = delete;

    private:
        CViewGalleries& view;
    };

    // The page comes onto the screen with its pictures, or soon without those that take long; they follow.
    void UpdateView(const ViewUpdate& update, CGalleryProject& project) override;

    // Of the current gallery. The name is asked for over its cover. What the root can't do the person is
    // told.
    void RenameGallery();
    void DuplicateGallery();
    void DeleteGallery();

    // Asks for the name of the new gallery.
    void AddChildGallery(int32_t id) override;
    void AddParentGallery(int32_t id) override;
    void RemoveGallery(int32_t id) override;
    void SetCurrentGallery(int32_t id) override;
    void DragGallery(int32_t id) override;
    void OpenMenu(int32_t id, int32_t x, int32_t y) override;
    // A gallery keeps its index as long as the project is open. The page of the project before may still be
    // on the screen while the covers of the next are drawn.
    bool KnowsPage(int number, bool) const override { return number >= firstPage; }

    // "gl_5" chooses gallery 5; other links do nothing.
    void LoadURL(const QString& url) override;
    bool KnowsLinksOf(int number, bool isCurrent) const override { return KnowsPage(number, isCurrent); }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct Cover {
        QString path;
        bool isThere = false; // perhaps as it was before the last change
        bool isReady = false;
    };

    QSize GetCellSize() const;
    void Do(const Act& act);
    void ShowTree(CGalleryProject& project);
    void ListCovers(CGalleryProject& project);
    void ShowPage();
    void OnCoverArrived(int32_t gallery, bool isChanged);
    QString NamesScript() const;
    std::set<int32_t> GetChildrenOf(int32_t gallery) const;
    bool IsOnPage(int32_t gallery) const { return shown.count(gallery) != 0; }
    void DuplicateGallery(int32_t id);
    void AskForName(int32_t id);
    void PlaceNameEditor();

    const Services services;
    CViewGalleriesExternalDispatch dispatch;
    const std::unique_ptr<const GalleryMenus> menus;
    CHTMLView* const htmlView;
    CGalleryNameEditor* const nameEditor;

    GalleriesPage page;             // that is shown, or will be as soon as patience ends
    std::map<int32_t, Cover> shown; // the covers of the page
    int firstPage = 0;              // of this project, by its number
    int lastPage = 0;
    int replacementCount = 0; // of pictures in pages that are on the screen
    QTimer patience;          // runs while the page waits for its pictures
    QTimer resizing;          // runs until the size has settled
    int pauses = 0;
    std::shared_ptr<int> life = std::make_shared<int>(0); // what a page answers later must not come too late
    CGalleryCovers covers;
    const CCoverDrops drops;
};
