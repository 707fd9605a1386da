#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>

#include <QTimer>
#include <QWidget>

#include "document/project/GalleryProjectConsumer.h"
#include "shell/panes/ViewNotification.h"
#include "shell/panes/galleries/GalleriesPage.h"
#include "shell/panes/galleries/GalleryCovers.h"
#include "shell/panes/galleries/ViewGalleriesExternalDispatch.h"
#include "shell/web/HTMLView.h"

class CExceptionBase;

// The tree of galleries around the current one. A click on a cover makes its gallery the current one, the
// buttons over it add and remove galleries, and files that are dropped on it go into it. Owned by the frame;
// screen's thread.
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
        CViewNotification notify; // the frame's way to UpdateProject
        CHTMLView::Options browser;
    };
    static constexpr int32_t CurrentGallery = -1;

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

    void UpdateProject(UpdateHint hint, const UpdateParameter& parameter, CGalleryProject& project) override;
    // The page comes onto the screen with its pictures, or soon without those that take long; they follow.
    void UpdateView(UpdateHint hint, CGalleryProject& project) override;

    void AddChildGallery(int32_t id) override;
    void AddParentGallery(int32_t id) override;
    void RemoveGallery(int32_t id) override;
    void SetCurrentGallery(int32_t id) override;

    // "gl_5" chooses gallery 5; other links do nothing.
    void LoadURL(const QString& url) override;

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
    void ListCovers(CGalleryProject& project);
    void ShowPage();
    void OnCoverArrived(int32_t gallery, bool isChanged);
    QString NamesScript() const;
    void AddDropped(const QStringList& paths, QPoint place);

    const Services services;
    CViewNotifier notifier;
    CViewGalleriesExternalDispatch dispatch;
    const std::unique_ptr<const GalleryMenus> menus;
    CHTMLView* const htmlView;

    GalleriesPage page;             // that is shown, or will be as soon as patience ends
    std::map<int32_t, Cover> shown; // the covers of the page
    int replacementCount = 0;       // of pictures in pages that are on the screen
    QTimer patience;                // runs while the page waits for its pictures
    QTimer resizing;                // runs until the size has settled
    int pauses = 0;
    std::shared_ptr<int> life = std::make_shared<int>(0); // what a page answers later must not come too late
    CGalleryCovers covers;
};
