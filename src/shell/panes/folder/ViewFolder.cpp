#include "shell/panes/folder/ViewFolder.h"

#include <algorithm>

#include <QMenu>

#include "common/FileSystem.h"
#include "common/Platform.h"
#include "common/Trace.h"
#include "document/project/GalleryProject.h"
#include "editing/PictureActs.h"
#include "shell/dialogs/FileDialogs.h"
#include "shell/drag/DropWatcher.h"
#include "shell/panes/SelectionBar.h"
#include "shell/panes/SelectionScript.h"
#include "shell/panes/folder/FolderPages.h"

namespace {

using namespace std::chrono_literals;

constexpr auto resizePause = 400ms; // after the last change of the size
constexpr size_t keptPages = 4;     // of which ids are still understood

} // namespace

CViewFolder::CViewFolder(const Services& services, QWidget* parent)
    : CPanel(parent),
      services(services),
      dispatch(*this),
      toolBar(new CViewFolderToolBar({.browse = [this] { ChooseFolder(); },
                                      .chooseFolder =
                                          [this](const QString& folder) {
                                              SetFolder(folder);
                                          }},
                                     this)),
      htmlView(new CHTMLView(services.browser, this)),
      selectionBar(new CSelectionBar(*this, [this] { ClearSelection(); })),
      pictureMenu(new QMenu(this)),
      listing({.load = [this](const std::string& page, HTMLScrollPlace place) { LoadPage(page, place); },
               .run = [this](const QString& script) { htmlView->RunScript(script); },
               .getCardSize = [this] { return CardSize(htmlView->width()); },
               .getGallery = [this]() -> const CGallery* {
                   return this->services.desk.GetProject().GetCurrentGallery();
               },
               .changed =
                   [this] {
                       selection.Keep(ListPaths());
                       MarkSelection();
                   }})
{
    setObjectName(QStringLiteral("FolderView"));
    pictureMenu->setObjectName(QStringLiteral("FolderPictureMenu"));
    SetToolBar(toolBar);
    SetClient(htmlView);
    htmlView->SetLoader(this);
    htmlView->SetExternalDispatch(&dispatch);
    resizeTimer.setSingleShot(true);
    resizeTimer.setInterval(resizePause);
    connect(&resizeTimer, &QTimer::timeout, this, [this] { listing.Refresh(); });
    new CDropWatcher(*htmlView, {.picturesDropped = [this](const PictureDrop& drop) {
        TakeBack(drop);
    }});
}

CViewFolder::~CViewFolder() = default;

// --- What a person does.

void CViewFolder::ChooseFolder()
{
    const QString folder = AskForPictureFolder(GetFolder(), this);
    if (!folder.isEmpty()) {
        SetFolder(folder);
    }
}

void CViewFolder::SetFolder(const QString& folder)
{
    const QString chosen = WithoutTrailingSeparator(folder);
    if (chosen == GetFolder()) {
        return;
    }
    CGalleryProject& project = services.desk.GetProject();
    project.AddFolder(chosen);
    project.SetRecentFolder(chosen);
    services.desk.MarkChanged();
    ShowFolder(project, chosen);
}

void CViewFolder::AddImage(const QString& id)
{
    AddPicture(FindCalled(id));
}

void CViewFolder::AddAllImages()
{
    Add(ListPaths());
}

void CViewFolder::AddPicture(const CFilePictureInfo* picture)
{
    if (picture) {
        Add({picture->GetPath()});
    }
}

// They leave the list when the gallery has them.
void CViewFolder::Add(const QStringList& paths)
{
    if (!paths.isEmpty()) {
        services.desk.Do(AddPictures(services.desk.GetProject().GetCurrentGalleryIndex(), paths));
    }
}

void CViewFolder::LoadURL(const QString& url)
{
    const QString prefix = QStringLiteral("addpicture");
    if (url.startsWith(prefix)) {
        AddPicture(FindPicture(QLatin1Char('i') + url.mid(prefix.size()), 0));
    }
}

void CViewFolder::DragImage(const QString& id, const QString&)
{
    const CFilePictureInfo* const picture = FindCalled(id);
    if (!picture) {
        return;
    }
    DraggedPictures dragged{.origin = DraggedPictures::Origin::Folder,
                            .positions = {},
                            .paths = GetCompany(picture->GetPath()),
                            .look = picture->GetThumbnailPath()};
    const QStringList list = ListPaths();
    for (const QString& path : dragged.paths) {
        dragged.positions.push_back(static_cast<int>(list.indexOf(path)));
    }
    // The drag has an event loop of its own, in which the page must be able to call.
    QTimer::singleShot(0, this, [this, dragged] { DragPictures(dragged, *htmlView); });
}

// Files of the gallery that are dragged back leave it; child galleries stay.
void CViewFolder::TakeBack(const PictureDrop& drop)
{
    if (drop.pictures.origin == DraggedPictures::Origin::Page) {
        CGalleryProject& project = services.desk.GetProject();
        services.desk.Do(TakeOutFiles(project, project.GetCurrentGalleryIndex(), drop.pictures.positions));
    }
}

// --- Selected pictures.

void CViewFolder::SetPictureCommands(const QList<QAction*>& bar, const QList<QAction*>& menu)
{
    selectionBar->SetActions(bar);
    FillMenu(*pictureMenu, menu);
}

void CViewFolder::Select(const QString& ids, const QString& way)
{
    QStringList paths;
    for (const QString& id : ids.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        if (const CFilePictureInfo* const picture = FindCalled(id)) {
            paths += picture->GetPath();
        }
    }
    if (ApplySelection(selection, paths, way, ListPaths())) {
        MarkSelection();
    }
}

void CViewFolder::SelectAll()
{
    selection.Select(ListPaths(), false);
    MarkSelection();
}

void CViewFolder::ClearSelection()
{
    selection.Clear();
    MarkSelection();
}

void CViewFolder::TakeSelected(const QString& id)
{
    if (const CFilePictureInfo* const picture = FindCalled(id)) {
        Add(GetCompany(picture->GetPath()));
    }
}

void CViewFolder::OpenMenu(const QString& id, int32_t x, int32_t y)
{
    const CFilePictureInfo* const picture = FindCalled(id);
    if (picture && !selection.Has(picture->GetPath())) {
        Select(id, QStringLiteral("only"));
    }
    pictureMenu->popup(htmlView->mapToGlobal(QPoint(x, y)));
}

const CFilePictureInfo* CViewFolder::FindPicture(const QString& id, int page) const
{
    if (pages.empty()) {
        return nullptr;
    }
    const auto known = pages.find(page);
    const auto shown = known != pages.end() ? known : std::prev(pages.end());
    const auto path = shown->second.find(id);
    return path != shown->second.end() ? listing.Find(path->second) : nullptr;
}

QStringList CViewFolder::GetCompany(const QString& path) const
{
    return selection.Has(path) ? GetSelectedPaths() : QStringList{path};
}

QStringList CViewFolder::GetSelectedPaths() const
{
    QStringList paths;
    for (const QString& path : ListPaths()) {
        if (selection.Has(path)) {
            paths += path;
        }
    }
    return paths;
}

QStringList CViewFolder::ListPaths() const
{
    QStringList paths;
    for (const auto& [id, path] : listing.List()) {
        paths += path;
    }
    return paths;
}

void CViewFolder::MarkSelection()
{
    QStringList ids;
    if (!selection.IsEmpty()) {
        for (const auto& [id, path] : listing.List()) {
            if (selection.Has(path)) {
                ids += id;
            }
        }
    }
    htmlView->RunScript(MarkScript(ids));
    selectionBar->SetCount(selection.GetCount());
}

// --- What is shown.

void CViewFolder::UpdateView(const ViewUpdate& update, CGalleryProject& project)
{
    using Cause = ViewUpdate::Cause;
    const TraceScope scope(QStringLiteral("CViewFolder::UpdateView"));
    if (update.cause == Cause::ProjectReplaced) {
        ShowFolder(project, WithoutTrailingSeparator(project.GetRecentFolder()));
    } else if (update.cause == Cause::GalleryChosen ||
               (update.cause == Cause::Edited && update.edited->isOtherGallery)) {
        ShowFolder(project, GetFolder());
    } else if (update.cause == Cause::Edited &&
               update.edited->pictureLists.count(project.GetCurrentGalleryIndex()) != 0) {
        listing.FollowGallery();
    }
}

void CViewFolder::ShowFolder(CGalleryProject& project, const QString& folder)
{
    toolBar->UpdateFoldersMenu(project.GetFolders(), project.GetRecentFolder());
    toolBar->SetTitle(folder.isEmpty() ? QString() : FolderName(folder));
    listing.Show(folder);
}

void CViewFolder::LoadPage(const std::string& page, HTMLScrollPlace place)
{
    htmlView->SetShownFolders({FindTemporaryFolder(), FindImageCacheFolder()});
    const int number = htmlView->LoadHtml(page, place);
    const auto list = listing.List();
    pages[number] = {list.begin(), list.end()};
    if (pages.size() > keptPages) {
        pages.erase(pages.begin());
    }
    htmlView->RunScript(SelectionScript({.clicksSelect = true}));
}

void CViewFolder::resizeEvent(QResizeEvent* event)
{
    CPanel::resizeEvent(event);
    // The page scales its cards meanwhile.
    if (listing.IsOutOfSize()) {
        resizeTimer.start();
    }
}
