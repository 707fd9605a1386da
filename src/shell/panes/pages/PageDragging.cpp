#include "shell/panes/pages/PageDragging.h"

#include <QPointer>
#include <QTimer>
#include <QUrl>

#include "shell/drag/DropWatcher.h"
#include "shell/web/HTMLView.h"
#include "shell/web/PageAddress.h"

namespace {

QString CallAt(const char* function, QPoint place)
{
    return QStringLiteral("previewDragging.%1(%2, %3)")
        .arg(QLatin1String(function))
        .arg(place.x())
        .arg(place.y());
}

// What a page can show as a file.
QString FileOfAddress(const QString& address)
{
    const QUrl url(address);
    return url.scheme() == QLatin1String(PageScheme) ? url.path(QUrl::FullyDecoded) : QString();
}

} // namespace

CPageDragging::CPageDragging(CHTMLView& page, Services services) : page(page), services(std::move(services))
{
    new CDropWatcher(
        page, {.picturesHovered = [this](const PictureDrop& drop) { Hover(drop); },
               .picturesLeft = [this] { this->page.RunScript(QStringLiteral("previewDragging.clear()")); },
               .picturesDropped =
                   [this](const PictureDrop& drop) {
                       Drop(drop);
                   }});
}

void CPageDragging::Start(const QString& id, const QString& look)
{
    const int32_t position = services.findPicture(id);
    if (position < 0) {
        return;
    }
    DraggedPictures pictures{.origin = DraggedPictures::Origin::Page,
                             .positions = services.getCompany(position),
                             .paths = {},
                             .look = FileOfAddress(look)};
    for (const int32_t each : pictures.positions) {
        pictures.paths += services.getPath(each);
    }
    // The drag has an event loop of its own, in which the page must be able to call.
    QTimer::singleShot(0, this, [this, pictures] { DragPictures(pictures, page); });
}

void CPageDragging::Hover(const PictureDrop& drop)
{
    page.RunScript(CallAt("markGap", drop.place));
}

void CPageDragging::Drop(const PictureDrop& drop)
{
    // The answer may come when the view is gone.
    page.RunScript(CallAt("take", drop.place),
                   [self = QPointer(this), pictures = drop.pictures](const QVariant& answer) {
                       if (self) {
                           self->Place(pictures, answer.toString());
                       }
                   });
}

// gap: "photo3 1", after that picture, or "photo3 0", before it; empty where the page has no pictures.
void CPageDragging::Place(const DraggedPictures& pictures, const QString& gap)
{
    const int32_t neighbour = services.findPicture(gap.section(QLatin1Char(' '), 0, 0));
    const int32_t before = neighbour < 0 ? -1 : neighbour + gap.section(QLatin1Char(' '), 1).toInt();
    if (pictures.origin == DraggedPictures::Origin::Folder) {
        services.add(pictures.paths, before);
    } else if (before >= 0) {
        services.move(pictures.positions, before);
    }
}
