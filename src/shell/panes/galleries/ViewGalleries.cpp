#include "shell/panes/galleries/ViewGalleries.h"

#include <algorithm>

#include <QDropEvent>
#include <QJsonArray>
#include <QJsonDocument>
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
#include "resources/Resources.h"
#include "shell/drag/DropWatcher.h"
#include "shell/look/WaitCursor.h"
#include "shell/panes/galleries/GalleryTreeNode.h"

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

// A light card of a cover's proportions, for a cover that is still in the making.
std::string StandIn(QSize box)
{
    const QSize size = QSize(4, 3).scaled(box, Qt::KeepAspectRatio);
    return Narrow(QStringLiteral("data:image/svg+xml,<svg xmlns='http://www.w3.org/2000/svg' width='%1' "
                                 "height='%2'><rect width='100%25' height='100%25' fill='white' "
                                 "fill-opacity='.35'/></svg>")
                      .arg(size.width())
                      .arg(size.height()));
}

} // namespace

CViewGalleries::CViewGalleries(const Services& services, QWidget* parent)
    : QWidget(parent),
      services(services),
      notifier(ViewId::Galleries, services.notify),
      dispatch(*this),
      menus(std::make_unique<const GalleryMenus>(MakeGalleryMenus(FindTemporaryFolder()))),
      htmlView(new CHTMLView(services.browser, this)),
      covers({.arrived = [this](int32_t gallery, bool isChanged) { OnCoverArrived(gallery, isChanged); },
              .finished =
                  [this] {
                      if (patience.isActive()) {
                          ShowPage();
                      }
                  }})
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
    resizing.callOnTimeout(this, [this] { notifier.Send(UpdateHint::CoverChanged); });
}

CViewGalleries::~CViewGalleries() = default;

// --- What the page calls.

void CViewGalleries::AddChildGallery(int32_t id)
{
    notifier.Send(UpdateHint::ChildGalleryAdded, id);
}

void CViewGalleries::AddParentGallery(int32_t id)
{
    notifier.Send(UpdateHint::ParentGalleryAdded, id);
}

void CViewGalleries::RemoveGallery(int32_t id)
{
    notifier.Send(UpdateHint::GalleryRemoved, id);
}

void CViewGalleries::SetCurrentGallery(int32_t id)
{
    notifier.Send(UpdateHint::GalleryChosen, id);
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

// --- Changes of the document.

void CViewGalleries::UpdateProject(UpdateHint hint, const UpdateParameter& parameter,
                                   CGalleryProject& project)
{
    const int32_t* const gallery = std::get_if<int32_t>(&parameter);
    const int32_t currentBefore = project.GetCurrentGalleryIndex();
    try {
        if (!gallery) {
            // A hint that only travels on.
        } else if (hint == UpdateHint::GalleryChosen) {
            project.SetCurrentGallery(*gallery);
        } else if (hint == UpdateHint::GalleryRemoved) {
            project.RemoveGallery(*gallery);
        } else if (hint == UpdateHint::ParentGalleryAdded) {
            project.AddParentGallery(*gallery);
        } else if (hint == UpdateHint::ChildGalleryAdded) {
            project.AddChildGallery(*gallery);
        }
    } catch (const CExceptionBase& failure) {
        // A layout that can't be read: the tree is as it was.
        services.tell(failure);
        return;
    }
    CGalleryProjectConsumer::UpdateProject(hint, parameter, project);
    // Menus and the list of the folder go by the current gallery, which a removal or a new
    // parent changes too.
    const int32_t current = project.GetCurrentGalleryIndex();
    if (hint != UpdateHint::GalleryChosen && gallery && current != currentBefore) {
        notifier.Send(UpdateHint::GalleryChosen, current);
    }
}

// --- The page on the screen.

void CViewGalleries::UpdateView(UpdateHint hint, CGalleryProject& project)
{
    if (!ConcernsGalleriesView(hint) || pauses > 0) {
        return;
    }
    const TraceScope scope(QStringLiteral("CViewGalleries::UpdateView"));
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
                cell->picture =
                    cover.isThere ? Narrow(AddressOfFile(cover.path)) : StandIn(GetCoverBox(page.cellSize));
            }
        }
    }
    htmlView->LoadHtml(WriteGalleriesPage(page, *menus), CHTMLView::ScrollPlace::Keep);
    htmlView->RunScript(
        QString::fromUtf8(FindResource(QStringLiteral("galleries_view"), QStringLiteral("js"))) +
        NamesScript());
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
        view.notifier.Send(UpdateHint::CoverChanged);
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

// --- Files that are dropped on a cover.

void CViewGalleries::dragEnterEvent(QDragEnterEvent* event)
{
    if (!DroppedPaths(*event->mimeData()).isEmpty()) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
}

void CViewGalleries::dragMoveEvent(QDragMoveEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    const QPoint place = event->position().toPoint();
    htmlView->RunScript(QStringLiteral("galleriesView.light(%1, %2)").arg(place.x()).arg(place.y()));
}

void CViewGalleries::dragLeaveEvent(QDragLeaveEvent*)
{
    htmlView->RunScript(QStringLiteral("galleriesView.light(-1, -1)"));
}

void CViewGalleries::dropEvent(QDropEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    AddDropped(DroppedPaths(*event->mimeData()), event->position().toPoint());
}

// The page knows what lies under the place. Its answer comes when the drop is over and the other program no
// longer waits.
void CViewGalleries::AddDropped(const QStringList& paths, QPoint place)
{
    htmlView->RunScript(QStringLiteral("galleriesView.light(%1, %2)").arg(place.x()).arg(place.y()),
                        [this, paths, alive = std::weak_ptr(life)](const QVariant& answer) {
                            if (alive.expired()) {
                                return;
                            }
                            bool isGallery = false;
                            const int32_t gallery = answer.toString().toInt(&isGallery);
                            services.addDropped(paths, isGallery ? gallery : CurrentGallery);
                            htmlView->RunScript(QStringLiteral("galleriesView.light(-1, -1)"));
                        });
}
