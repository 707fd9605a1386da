#pragma once

#include <functional>
#include <map>
#include <vector>

#include "shell/look/Panel.h"
#include "shell/panes/DocumentDesk.h"
#include "shell/panes/GalleryProjectConsumer.h"
#include "shell/panes/SelectionBar.h"
#include "shell/panes/pages/AbsentBar.h"
#include "shell/panes/pages/PageDragging.h"
#include "shell/panes/pages/PageSelection.h"
#include "shell/panes/pages/ShownPage.h"
#include "shell/panes/pages/ViewPagesExternalDispatch.h"
#include "shell/panes/pages/ViewPagesToolBar.h"
#include "shell/web/HTMLView.h"

class CGallery;
class QAction;
class QMenu;

// The large panel of the main window: the current page of the current gallery as it will be
// deployed, with the buttons that edit it, and the toolbar that chooses layout and style. Owned by
// the frame; screen's thread.
class CViewPages final : public CPanel,
                         public CGalleryProjectConsumer,
                         public CViewPagesExternalDispatchCommands,
                         public CContentURLLoader {
public:
    struct Services {
        CDocumentDesk& desk;
        CHTMLView::Options browser;
        std::function<void(int32_t place)> openRecent; // by the place in the list, from 0
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
    // Opens the dialog in which elements of the page are shown and hidden.
    void ChangeVisibility();

    // What can be done with pictures: on the bar that comes up with a selection, and in the menu of a
    // picture. A null entry is a separator. Borrowed. To be called once.
    void SetPictureCommands(const QList<QAction*>& bar, const QList<QAction*>& menu);
    void SelectAll() { selection.SelectAll(); }
    std::vector<int32_t> GetSelectedPositions() const { return selection.GetPositions(); }
    // Calls back with the pictures that are selected, or else with the one that has the focus; with none if
    // there is neither. Perhaps later: the page is asked.
    void WithPictures(std::function<void(const std::vector<int32_t>& positions)> use);

    // A layout that can't be read is shown as an error page in place of the page.
    void UpdateView(const ViewUpdate& update, CGalleryProject& project) override;
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
    void Select(const QString& ids, const QString& way) override;
    void OpenMenu(const QString& id, int32_t x, int32_t y) override;
    bool KnowsPage(int page, bool) const override { return pages.count(page) != 0; }

    void LoadURL(const QString& url) override;

private:
    CGalleryProject& GetProject() const { return services.desk.GetProject(); }
    // For what is asked of the current gallery; false if nothing has changed.
    bool Do(const std::function<Act(CGallery& gallery)>& make);
    // What was pressed on a page that was about to go is done all the same, with the picture that it was
    // meant for.
    void DoWithPicture(const QString& id, const std::function<Act(int32_t gallery, int32_t position)>& make);
    // A layout or style that can't be chosen says why in place of the page.
    void ChooseLook(const std::function<Act(CGallery& gallery)>& make);
    // What goes along when the picture at that position is dragged.
    std::vector<int32_t> GetCompany(int32_t position) const;
    // Of which a page has called; nothing means anything on one that is unknown.
    const PagePictures& GetCallingPage() const;
    void GoToAbsentPicture();
    void UpdateMenus(CGalleryProject& project);
    void ShowCurrentPage(CGalleryProject& project);
    // name: of the page; the scroll place is kept while it stays.
    void Show(const std::string& page, const QString& name);

    const Services services;
    CViewPagesExternalDispatch dispatch;
    CViewPagesToolBar* const toolBar;
    CHTMLView* const htmlView;
    CAbsentBar* const absentBar;
    CSelectionBar* const selectionBar;
    QMenu* const pictureMenu;
    CPageSelection selection;
    CPageDragging dragging;
    CShownPage shownPage;
    QString shownName; // gallery, layout, page and number
    std::string shownBytes;
    int lastPage = 0;                  // its number
    std::map<int, PagePictures> pages; // the last ones, by their numbers
};
