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
        page,
        {.pictureHovered = [this](const DraggedPicture& picture, QPoint place) { Hover(picture, place); },
         .pictureLeft = [this] { this->page.RunScript(QStringLiteral("previewDragging.clear()")); },
         .pictureDropped =
             [this](const DraggedPicture& picture, QPoint place) {
                 Drop(picture, place);
             }});
}

void CPageDragging::Start(const QString& id, const QString& look)
{
    const int32_t position = services.findPicture(id);
    if (position < 0) {
        return;
    }
    const DraggedPicture picture{.origin = DraggedPicture::Origin::Page,
                                 .position = position,
                                 .path = services.getPath(position),
                                 .look = FileOfAddress(look)};
    // The drag has an event loop of its own, in which the page must be able to call.
    QTimer::singleShot(0, this, [this, picture] { DragPicture(picture, page); });
}

void CPageDragging::Hover(const DraggedPicture& picture, QPoint place)
{
    page.RunScript(picture.origin == DraggedPicture::Origin::Page
                       ? CallAt("markGap", place)
                       : QStringLiteral("previewDragging.markPage()"));
}

void CPageDragging::Drop(const DraggedPicture& picture, QPoint place)
{
    if (picture.origin == DraggedPicture::Origin::Folder) {
        page.RunScript(QStringLiteral("previewDragging.clear()"));
        if (services.addFromFolder) {
            services.addFromFolder(picture.position, picture.path);
        }
        return;
    }
    // The answer may come when the view is gone.
    page.RunScript(CallAt("take", place),
                   [self = QPointer(this), from = picture.position](const QVariant& answer) {
                       if (self) {
                           self->MoveTo(from, answer.toString());
                       }
                   });
}

// gap: "photo3 1", after that picture, or "photo3 0", before it.
void CPageDragging::MoveTo(int32_t from, const QString& gap)
{
    const int32_t neighbour = services.findPicture(gap.section(QLatin1Char(' '), 0, 0));
    if (neighbour >= 0) {
        services.move(from, neighbour + gap.section(QLatin1Char(' '), 1).toInt());
    }
}
