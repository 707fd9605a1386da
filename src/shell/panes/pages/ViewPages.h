#pragma once

#include <functional>
#include <vector>

#include "document/project/GalleryProjectConsumer.h"
#include "shell/look/Panel.h"
#include "shell/panes/ViewNotification.h"
#include "shell/panes/pages/AbsentBar.h"
#include "shell/panes/pages/PageDragging.h"
#include "shell/panes/pages/ShownPage.h"
#include "shell/panes/pages/ViewPagesExternalDispatch.h"
#include "shell/panes/pages/ViewPagesToolBar.h"
#include "shell/web/HTMLView.h"

class CGallery;

// The large panel of the main window: the current page of the current gallery as it will be
// deployed, with the buttons that edit it, and the toolbar that chooses layout and style. Owned by
// the frame; screen's thread.
class CViewPages final : public CPanel,
                         public CGalleryProjectConsumer,
                         public CViewPagesExternalDispatchCommands,
                         public CContentURLLoader {
public:
    struct Services {
        CViewNotification notify; // the frame's way to UpdateProject
        CHTMLView::Options browser;
        std::function<void(CGalleryProject& project)> deploy; // opens the deployment wizard
        // Adds the picture of that path, which was at that place of the folder view.
        std::function<void(int32_t index, const QString& path)> addFromFolder = {};
        // Let the person look for all pictures that are not there, and for the one of that path.
        std::function<void()> findMissing = [] {
        };
        std::function<void(const QString& path)> findPicture = [](const QString&) {
        };
    };
    explicit CViewPages(const Services& services, QWidget* parent = nullptr);
    ~CViewPages() override;

    CViewPagesToolBar& GetToolBar() { return *toolBar; }
    CHTMLView& GetHTMLView() { return *htmlView; }

    // By the place in the menus, from 0: a choice there.
    void ChooseLayout(int32_t place);
    void ChooseStyle(int32_t place);
    // Asks for the dialog in which elements of the page are shown and hidden.
    void ChangeVisibility();

    void UpdateProject(UpdateHint hint, const UpdateParameter& parameter, CGalleryProject& project) override;
    // A layout that can't be read is shown as an error page in place of the page.
    void UpdateView(UpdateHint hint, CGalleryProject& project) override;
    // Shows the page anew if files of its pictures have changed, come or gone.
    void LookAtFiles(CGalleryProject& project);

    void ChangeVisibility(const QString& element) override;
    void RotateImageRight(const QString& id) override;
    void RotateImageLeft(const QString& id) override;
    void MoveImageUp(const QString& id) override;
    void MoveImageDown(const QString& id) override;
    void DeleteImage(const QString& id) override;
    void EditText(const TextToEdit& edited) override;
    void EditReference(const QString& name, const QString& hrefProperty,
                       const QString& textProperty) override;

    void DragImage(const QString& id, const QString& look) override;
    void FindImage(const QString& id) override;

    void LoadURL(const QString& url) override;

private:
    // What a change does beyond the gallery itself.
    struct Change {
        UpdateHint hint; // as it travels on to the other views
        bool changed = true;
        bool rebuild = false;
        int32_t positionToShow = -1;
    };

    void SendForPicture(UpdateHint hint, const QString& id);
    // Asks for the picture to go before the one at that position.
    void MoveImage(int32_t from, int32_t before);
    // False if a person has thought better of it.
    bool Apply(Change& change, const UpdateParameter& parameter, CGalleryProject& project);
    void ApplyChoice(Change& change, int32_t place, CGallery& gallery);
    void ApplyToPicture(Change& change, int32_t position, CGallery& gallery);
    void MoveAlong(Change& change, const std::vector<int32_t>& way, CGallery& gallery);
    void GoToAbsentPicture(Change& change, CGalleryProject& project);
    void FollowLink(Change& change, const QString& url, CGallery& gallery);
    bool ChooseVisibility(CGallery& gallery);
    void UpdateMenus(CGalleryProject& project);
    void ShowCurrentPage(CGalleryProject& project);
    // name: of the page; the scroll place is kept while it stays.
    void Show(const std::string& page, const QString& name);

    const Services services;
    CViewNotifier notifier;
    CViewPagesExternalDispatch dispatch;
    CViewPagesToolBar* const toolBar;
    CHTMLView* const htmlView;
    CAbsentBar* const absentBar;
    CPageDragging dragging;
    CShownPage shownPage;
    QString shownName; // gallery, layout, page and number
    std::string shownBytes;
};
