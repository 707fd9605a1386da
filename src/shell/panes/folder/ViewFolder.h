#pragma once

#include <map>

#include <QTimer>

#include "shell/look/Panel.h"
#include "shell/panes/DocumentDesk.h"
#include "shell/panes/GalleryProjectConsumer.h"
#include "shell/panes/PictureSelection.h"
#include "shell/panes/folder/FolderListing.h"
#include "shell/panes/folder/ViewFolderExternalDispatch.h"
#include "shell/panes/folder/ViewFolderToolBar.h"
#include "shell/web/HTMLView.h"

class CFilePictureInfo;
class CSelectionBar;
class QAction;
class QMenu;
struct PictureDrop;

// The panel of thumbnails of one folder of the disk, from which pictures are added to the current gallery. It
// shows only what the gallery does not have yet. Owned by the frame; screen's thread.
class CViewFolder final : public CPanel,
                          public CGalleryProjectConsumer,
                          public CViewFolderExternalDispatchCommands,
                          public CContentURLLoader {
public:
    struct Services {
        CDocumentDesk& desk;
        CHTMLView::Options browser;
    };
    explicit CViewFolder(const Services& services, QWidget* parent = nullptr);
    ~CViewFolder() override;

    CViewFolderToolBar& GetToolBar() { return *toolBar; }
    CHTMLView& GetHTMLView() { return *htmlView; }
    const QString& GetFolder() const { return listing.GetFolder(); }
    // The list of the folder is on the screen, or on its way there.
    bool IsLoaded() const { return listing.IsShown(); }

    // Opens the folder browser.
    void ChooseFolder();
    // The folder that is shown is no new one.
    void SetFolder(const QString& folder);

    // What can be done with pictures: on the bar that comes up with a selection, and in the menu of a
    // picture. A null entry is a separator. Borrowed. To be called once.
    void SetPictureCommands(const QList<QAction*>& bar, const QList<QAction*>& menu);
    void SelectAll();
    void AddSelected() { Add(GetSelectedPaths()); }
    // The files of the selected pictures, in the order of the list.
    QStringList GetSelectedPaths() const;

    void UpdateView(const ViewUpdate& update, CGalleryProject& project) override;

    void AddImage(const QString& id) override;
    void AddAllImages() override;
    void DragImage(const QString& id, const QString& look) override;
    void Select(const QString& ids, const QString& way) override;
    void TakeSelected(const QString& id) override;
    void OpenMenu(const QString& id, int32_t x, int32_t y) override;
    bool KnowsPage(int page, bool) const override { return pages.count(page) != 0; }

    void LoadURL(const QString& url) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void ShowFolder(CGalleryProject& project, const QString& folder);
    void Add(const QStringList& paths);
    void AddPicture(const CFilePictureInfo* picture); // null: nothing
    void LoadPage(const std::string& page, HTMLScrollPlace place);
    // What an id means on that page, or on the last one if it is unknown; null for what isn't on the list any
    // more.
    const CFilePictureInfo* FindPicture(const QString& id, int page) const;
    const CFilePictureInfo* FindCalled(const QString& id) const
    {
        return FindPicture(id, dispatch.GetCallingPage());
    }
    // What goes along when the picture is dragged: itself and, if it is selected, the others.
    QStringList GetCompany(const QString& path) const;
    QStringList ListPaths() const;
    void ClearSelection();
    void MarkSelection();
    void TakeBack(const PictureDrop& drop);

    const Services services;
    CViewFolderExternalDispatch dispatch;
    CViewFolderToolBar* const toolBar;
    CHTMLView* const htmlView;
    CSelectionBar* const selectionBar;
    QMenu* const pictureMenu;
    QTimer resizeTimer;
    std::map<int, std::map<QString, QString>> pages; // the last ones: paths by ids, by their numbers
    CPictureSelection selection;                     // by path
    CFolderListing listing;                          // goes first
};
