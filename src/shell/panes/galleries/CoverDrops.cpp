#include "shell/panes/galleries/CoverDrops.h"

#include <algorithm>
#include <optional>

#include <QDropEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>

#include "document/project/GalleryProject.h"
#include "editing/GalleryActs.h"
#include "editing/PictureActs.h"
#include "shell/drag/DraggedGallery.h"
#include "shell/drag/DropWatcher.h"
#include "shell/panes/galleries/GalleriesPage.h"
#include "shell/web/HTMLView.h"

void CCoverDrops::Enter(QDropEvent& event) const
{
    Take(event);
}

void CCoverDrops::Hover(QDropEvent& event) const
{
    const Dragged dragged = Take(event);
    if (event.isAccepted()) {
        services.htmlView.RunScript(ScriptFor(dragged, event.position().toPoint()));
    }
}

void CCoverDrops::Leave() const
{
    services.htmlView.RunScript(QStringLiteral("galleriesView.clear()"));
}

// The page knows what lies under the place. Its answer comes when the drop is over and the other program no
// longer waits.
void CCoverDrops::Drop(QDropEvent& event) const
{
    const Dragged dragged = Take(event);
    if (!event.isAccepted()) {
        return;
    }
    services.htmlView.RunScript(ScriptFor(dragged, event.position().toPoint()),
                                [this, dragged, alive = std::weak_ptr(life)](const QVariant& answer) {
                                    if (alive.expired()) {
                                        return;
                                    }
                                    Perform(dragged, answer.toString());
                                    // A page that is on its way takes the place of the marks itself.
                                    Leave();
                                });
}

CCoverDrops::Dragged CCoverDrops::Take(QDropEvent& event) const
{
    const Dragged dragged = Read(event);
    event.setAccepted(!std::holds_alternative<std::monostate>(dragged));
    if (event.isAccepted()) {
        event.setDropAction(std::holds_alternative<MovedGallery>(dragged) ? Qt::MoveAction : Qt::CopyAction);
    }
    return dragged;
}

CCoverDrops::Dragged CCoverDrops::Read(const QDropEvent& event) const
{
    const QMimeData& data = *event.mimeData();
    // Another instance of the program has galleries and positions of its own; from there pictures are files.
    if (event.source() != nullptr) {
        if (const std::optional<int32_t> gallery = ReadDraggedGallery(data)) {
            return MovedGallery{*gallery};
        }
        const std::optional<DraggedPictures> pictures = ReadDraggedPictures(data);
        if (pictures && pictures->origin == DraggedPictures::Origin::Page) {
            return PagePictures{.gallery = services.getProject().GetCurrentGalleryIndex(),
                                .positions = pictures->positions,
                                .areCopied = event.modifiers().testFlag(Qt::ControlModifier)};
        }
    }
    const QStringList paths = DroppedPaths(data);
    return paths.isEmpty() ? Dragged() : Files{paths};
}

// Shows where it would go; the value says the same in words.
QString CCoverDrops::ScriptFor(const Dragged& dragged, QPoint place) const
{
    const QString at = QStringLiteral("%1, %2").arg(place.x()).arg(place.y());
    if (const auto* const gallery = std::get_if<MovedGallery>(&dragged)) {
        return QStringLiteral("galleriesView.mark(%1, %2)").arg(at, TakersOf(gallery->index));
    }
    // On their own gallery's cover they would stay where they are.
    const auto* const pictures = std::get_if<PagePictures>(&dragged);
    return QStringLiteral("galleriesView.light(%1, [%2])")
        .arg(at, pictures ? QString::number(pictures->gallery) : QString());
}

// No gallery goes below itself, and nothing stands beside the root. The parent of the current gallery shows
// none of its own neighbours, so that nobody could see what comes to stand beside it.
QString CCoverDrops::TakersOf(int32_t gallery) const
{
    CGalleryProject& project = services.getProject();
    const std::vector<int32_t> below = project.ListBelow(gallery);
    QJsonArray inside;
    QJsonArray beside;
    for (size_t row = 0; row < services.page.rows.size(); ++row) {
        for (const std::optional<GalleryCell>& cell : services.page.rows[row]) {
            const bool isFree = cell && project.GetParentGallery(gallery) &&
                                std::find(below.begin(), below.end(), cell->galleryId) == below.end();
            if (isFree) {
                inside.append(cell->galleryId);
            }
            if (isFree && row > 0 && project.GetParentGallery(cell->galleryId)) {
                beside.append(cell->galleryId);
            }
        }
    }
    const QJsonObject takers{{QStringLiteral("inside"), inside}, {QStringLiteral("beside"), beside}};
    return QString::fromUtf8(QJsonDocument(takers).toJson(QJsonDocument::Compact));
}

void CCoverDrops::Perform(const Dragged& dragged, const QString& target) const
{
    bool isCover = false;
    const int32_t gallery = target.toInt(&isCover);
    if (const auto* const moved = std::get_if<MovedGallery>(&dragged)) {
        MoveGallery(moved->index, target);
    } else if (const auto* const files = std::get_if<Files>(&dragged)) {
        services.addFiles(files->paths, isCover ? gallery : CurrentGallery);
    } else if (const auto* const pictures = std::get_if<PagePictures>(&dragged); pictures && isCover) {
        services.perform(pictures->areCopied
                             ? CopyPicturesTo(pictures->gallery, pictures->positions, gallery)
                             : MovePicturesTo(pictures->gallery, pictures->positions, gallery));
    }
}

// target: "5 before", "5 after" or "5 inside", as galleriesView.mark says it; else nothing happens.
void CCoverDrops::MoveGallery(int32_t gallery, const QString& target) const
{
    CGalleryProject& project = services.getProject();
    const int32_t other = target.section(QLatin1Char(' '), 0, 0).toInt();
    const QString way = target.section(QLatin1Char(' '), 1);
    const CGallery* const parent = project.GetParentGallery(other);
    const CGallery* const taker = project.FindGallery(other);
    if (way == QLatin1String("inside") && taker) {
        services.perform(MoveGalleryTo(project, gallery, other, taker->GetPictures().GetCount()));
    } else if (!way.isEmpty() && parent) {
        const int32_t place = parent->FindChildPlace(other)->position;
        services.perform(MoveGalleryTo(project, gallery, parent->GetIndex(),
                                       way == QLatin1String("after") ? place + 1 : place));
    }
}
