#include "shell/panes/galleries/ViewGalleries.h"

#include <algorithm>

#include <QDropEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMenu>
#include <QResizeEvent>
#include <QStyle>
#include <QVBoxLayout>

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Platform.h"
#include "common/TempFolder.h"
#include "common/Text.h"
#include "common/Trace.h"
#include "content/PictureMenu.h"
#include "document/project/GalleryProject.h"
#include "editing/GalleryActs.h"
#include "resources/Resources.h"
#include "shell/drag/DraggedGallery.h"
#include "shell/drag/DropWatcher.h"
#include "shell/look/WaitCursor.h"
#include "shell/panes/galleries/CoverMenu.h"
#include "shell/panes/galleries/GalleryNameEditor.h"
#include "shell/panes/galleries/GalleryTreeNode.h"
#include "shell/panes/galleries/RootLimits.h"

namespace {

using namespace std::chrono_literals;

// So long the old page stays when pictures of the new one are missing.
constexpr auto patienceForCovers = 150ms;
// A bar that is dragged changes the size with every pixel.
constexpr auto pauseOfResizing = 60ms;

int CountGalleries(const CGalleryProject& project)
{
    const auto& galleries = project.GetGalleries();
    return static_cast<int>(std::count_if(galleries.begin(), galleries.end(),
                                          [](const auto& entry) { return entry.second != nullptr; }));
}

} // namespace

CViewGalleries::CViewGalleries(const Services& services, QWidget* parent)
    : QWidget(parent),
      services(services),
      dispatch(*this),
      menus(std::make_unique<const GalleryMenus>(MakeGalleryMenus(FindTemporaryFolder()))),
      htmlView(new CHTMLView(services.browser, this)),
      nameEditor(new CGalleryNameEditor(
          *this, *htmlView,
          [this](int32_t gallery, const QString& name) { Do(::RenameGallery(gallery, name)); })),
      covers({.arrived = [this](int32_t gallery, bool isChanged) { OnCoverArrived(gallery, isChanged); },
              .finished =
                  [this] {
                      if (patience.isActive()) {
                          ShowPage();
                      }
                  }}),
      drops({.htmlView = *htmlView,
             .page = page,
             .getProject = [this]() -> CGalleryProject& { return this->services.desk.GetProject(); },
             .perform = [this](const Act& act) { Do(act); },
             .addFiles = services.addDropped})
{
    setObjectName(QStringLiteral("GalleriesView"));
    setAcceptDrops(true);
    setProperty(TakesDropsProperty, true);
    auto* const arrangement = new QVBoxLayout(this);
    arrangement->setContentsMargins(0, 0, 0, 0);
    arrangement->addWidget(htmlView);
    htmlView->SetLoader(this);
    htmlView->SetExternalDispatch(&dispatch);
    patience.setSingleShot(true);
    patience.callOnTimeout(this, [this] { ShowPage(); });
    resizing.setSingleShot(true);
    resizing.callOnTimeout(this, [this] { ShowTree(this->services.desk.GetProject()); });
}

// The field loses the keyboard when the widgets go, and would change the document.
CViewGalleries::~CViewGalleries()
{
    nameEditor->GiveUp();
}

// --- What the page and the frame ask for.

void CViewGalleries::AddChildGallery(int32_t id)
{
    // The page may leave out whose child it is: the current gallery's.
    const int32_t parent = id == CurrentGallery ? services.desk.GetProject().GetCurrentGalleryIndex() : id;
    const std::set<int32_t> before = GetChildrenOf(parent);
    Do(AddGalleryBelow(parent));
    for (const int32_t child : GetChildrenOf(parent)) {
        if (before.count(child) == 0) {
            if (!IsOnPage(child)) {
                services.desk.ChooseGallery(child);
            }
            AskForName(child);
        }
    }
}

std::set<int32_t> CViewGalleries::GetChildrenOf(int32_t gallery) const
{
    const CGallery* const parent = services.desk.GetProject().FindGallery(gallery);
    return parent ? parent->GetChildren() : std::set<int32_t>();
}

void CViewGalleries::AddParentGallery(int32_t id)
{
    Do(InsertGalleryAbove(services.desk.GetProject(), id));
}

void CViewGalleries::RemoveGallery(int32_t id)
{
    CGalleryProject& project = services.desk.GetProject();
    if (const std::optional<CGenericException> reason = WhyNotRemoved(project, id)) {
        services.tell(*reason);
    } else {
        Do(RemoveGalleryAct(project, id));
    }
}

void CViewGalleries::DuplicateGallery(int32_t id)
{
    CGalleryProject& project = services.desk.GetProject();
    if (const std::optional<CGenericException> reason = WhyNotDuplicated(project, id)) {
        services.tell(*reason);
    } else {
        Do(DuplicateGalleryAct(project, id));
    }
}

void CViewGalleries::RenameGallery()
{
    AskForName(services.desk.GetProject().GetCurrentGalleryIndex());
}

void CViewGalleries::DuplicateGallery()
{
    DuplicateGallery(services.desk.GetProject().GetCurrentGalleryIndex());
}

void CViewGalleries::DeleteGallery()
{
    RemoveGallery(services.desk.GetProject().GetCurrentGalleryIndex());
}

void CViewGalleries::AskForName(int32_t id)
{
    const CGallery* const gallery = services.desk.GetProject().FindGallery(id);
    if (gallery && IsOnPage(id)) {
        nameEditor->Open(id, GetGalleryTitle(*gallery));
        PlaceNameEditor();
    }
}

// Where the cover is, or will be once the page is there that is on its way.
void CViewGalleries::PlaceNameEditor()
{
    const std::optional<int32_t> renamed = nameEditor->GetGallery();
    if (!renamed || patience.isActive()) {
        return;
    }
    htmlView->RunScript(QStringLiteral("galleriesView.placeOf(%1)").arg(*renamed),
                        [this, renamed, alive = std::weak_ptr(life)](const QVariant& answer) {
                            const QVariantList place = answer.toList();
                            if (alive.expired() || nameEditor->GetGallery() != renamed) {
                                return;
                            }
                            if (place.size() == 3) {
                                nameEditor->Place({.left = qRound(place[0].toDouble()),
                                                   .width = qRound(place[1].toDouble()),
                                                   .bottom = qRound(place[2].toDouble())});
                            } else {
                                nameEditor->GiveUp();
                            }
                        });
}

void CViewGalleries::DragGallery(int32_t id)
{
    const CGallery* const gallery = services.desk.GetProject().FindGallery(id);
    if (!gallery || !gallery->GetParent()) {
        return; // the root has no other place
    }
    const auto cover = shown.find(id);
    const DraggedGallery dragged{
        .index = id, .look = cover != shown.end() && cover->second.isThere ? cover->second.path : QString()};
    // The drag has an event loop of its own, in which the page must be able to call.
    QTimer::singleShot(0, this, [this, dragged] { ::DragGallery(dragged, *htmlView); });
}

void CViewGalleries::OpenMenu(int32_t id, int32_t x, int32_t y)
{
    CGalleryProject& project = services.desk.GetProject();
    if (!project.FindGallery(id)) {
        return;
    }
    MakeCoverMenu({.addInside = [this, id] { AddChildGallery(id); },
                   .insertAbove = [this, id] { AddParentGallery(id); },
                   .rename = [this, id] { AskForName(id); },
                   .duplicate = [this, id] { DuplicateGallery(id); },
                   .remove =
                       [this, id] {
                           RemoveGallery(id);
                       }},
                  project.GetCurrentGalleryIndex() == id, *this)
        ->popup(htmlView->mapToGlobal(QPoint(x, y)));
}

void CViewGalleries::SetCurrentGallery(int32_t id)
{
    services.desk.ChooseGallery(id);
}

// A layout that can't be read leaves the tree as it was.
void CViewGalleries::Do(const Act& act)
{
    try {
        services.desk.Do(act);
    } catch (const CExceptionBase& failure) {
        services.tell(failure);
    }
}

void CViewGalleries::LoadURL(const QString& url)
{
    const QString prefix = QStringLiteral("gl_");
    bool isNumber = false;
    const int32_t gallery = url.mid(prefix.size()).toInt(&isNumber);
    if (url.startsWith(prefix) && isNumber) {
        SetCurrentGallery(gallery);
    }
}

// --- The page on the screen.

void CViewGalleries::UpdateView(const ViewUpdate& update, CGalleryProject& project)
{
    if (update.cause == ViewUpdate::Cause::ProjectReplaced) {
        nameEditor->GiveUp(); // its gallery may be another one
        firstPage = lastPage + 1;
    }
    const bool concernsTree = update.cause != ViewUpdate::Cause::Edited || update.edited->isTreeChanged ||
                              update.edited->isOtherGallery || !update.edited->pictureLists.empty();
    if (concernsTree && update.cause != ViewUpdate::Cause::ProjectRenamed) {
        ShowTree(project);
    }
}

void CViewGalleries::ShowTree(CGalleryProject& project)
{
    if (pauses > 0) {
        return;
    }
    const TraceScope scope(QStringLiteral("CViewGalleries::ShowTree"));
    const CWaitCursor cursor;
    resizing.stop();
    page = ArrangeGalleries(CGalleryTree(project), project.GetCurrentGalleryIndex(), CountGalleries(project));
    page.cellSize = GetCellSize();
    ListCovers(project);
    htmlView->SetShownFolders({FindTemporaryFolder(), project.GetTempFolder().GetPath()});
    const bool isComplete =
        std::all_of(shown.begin(), shown.end(), [](const auto& entry) { return entry.second.isReady; });
    if (isComplete || covers.IsFinished()) {
        ShowPage();
    } else if (!patience.isActive()) {
        patience.start(patienceForCovers);
    }
}

void CViewGalleries::ListCovers(CGalleryProject& project)
{
    const QSize box = GetCoverBox(page.cellSize);
    std::vector<int32_t> galleries;
    shown.clear();
    for (const auto& row : page.rows) {
        for (const std::optional<GalleryCell>& cell : row) {
            if (cell) {
                CGallery& gallery = *project.FindGallery(cell->galleryId);
                const QString path = CGalleryCovers::GetPath(gallery, box);
                shown[cell->galleryId] = {
                    .path = path, .isThere = FileExists(path), .isReady = covers.IsReady(gallery, box)};
                galleries.push_back(cell->galleryId);
            }
        }
    }
    covers.Order(project, galleries, box);
}

void CViewGalleries::ShowPage()
{
    patience.stop();
    for (auto& row : page.rows) {
        for (std::optional<GalleryCell>& cell : row) {
            if (cell) {
                const Cover& cover = shown[cell->galleryId];
                cell->picture = cover.isThere ? Narrow(AddressOfFile(cover.path))
                                              : GetCoverStandIn(GetCoverBox(page.cellSize));
            }
        }
    }
    lastPage = htmlView->LoadHtml(WriteGalleriesPage(page, *menus), CHTMLView::ScrollPlace::Keep);
    htmlView->RunScript(
        QString::fromUtf8(FindResource(QStringLiteral("galleries_view"), QStringLiteral("js"))) +
        NamesScript());
    PlaceNameEditor();
}

// The markup of the page has no place for them, and nobody else sees which cover is whose.
QString CViewGalleries::NamesScript() const
{
    QJsonArray entries;
    for (const auto& row : page.rows) {
        for (const std::optional<GalleryCell>& cell : row) {
            if (cell) {
                entries.append(QJsonArray{cell->galleryId, cell->name, cell->isSelected});
            }
        }
    }
    return QStringLiteral("\ngalleriesView.name(%1)")
        .arg(QString::fromUtf8(QJsonDocument(entries).toJson(QJsonDocument::Compact)));
}

void CViewGalleries::OnCoverArrived(int32_t gallery, bool isChanged)
{
    const auto found = shown.find(gallery);
    if (found == shown.end()) {
        return;
    }
    Cover& cover = found->second;
    const bool isNews = isChanged || !cover.isThere;
    cover.isThere = true;
    cover.isReady = true;
    if (isNews && !patience.isActive()) {
        // Under another address, since the browser keeps what it has read.
        const QByteArray address = QJsonDocument(QJsonArray{AddressOfFile(cover.path) +
                                                            QStringLiteral("?c%1").arg(++replacementCount)})
                                       .toJson(QJsonDocument::Compact);
        htmlView->RunScript(
            QStringLiteral("galleriesView.replace(%1, %2[0])").arg(gallery).arg(QString::fromUtf8(address)));
    }
}

CViewGalleries::CPause::CPause(CViewGalleries& view) : view(view)
{
    ++view.pauses;
    view.covers.Stop();
}

CViewGalleries::CPause::~CPause()
{
    if (--view.pauses == 0) {
        view.ShowTree(view.services.desk.GetProject());
    }
}

QSize CViewGalleries::GetCellSize() const
{
    return GetGalleryCellSize(size(), style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, htmlView));
}

void CViewGalleries::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (page.galleryCount != 0 && page.cellSize != GetCellSize()) {
        resizing.start(pauseOfResizing);
    }
}

// --- What is dropped.

void CViewGalleries::dragEnterEvent(QDragEnterEvent* event)
{
    drops.Enter(*event);
}

void CViewGalleries::dragMoveEvent(QDragMoveEvent* event)
{
    drops.Hover(*event);
}

void CViewGalleries::dragLeaveEvent(QDragLeaveEvent*)
{
    drops.Leave();
}

void CViewGalleries::dropEvent(QDropEvent* event)
{
    drops.Drop(*event);
}
