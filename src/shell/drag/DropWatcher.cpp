#include "shell/drag/DropWatcher.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>

namespace {

// The browser's own widget inside of a view would be asked first, and take everything.
bool IsInsideTaker(const QWidget& watched)
{
    for (const QWidget* above = watched.parentWidget(); above; above = above->parentWidget()) {
        if (above->property(TakesDropsProperty).toBool()) {
            return true;
        }
    }
    return false;
}

void Accept(QDropEvent& event)
{
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

} // namespace

CDropWatcher::CDropWatcher(QWidget& target, Handlers handlers)
    : QObject(&target), target(target), handlers(std::move(handlers))
{
    target.setAcceptDrops(true);
    Watch(target);
}

void CDropWatcher::Watch(QWidget& widget)
{
    widget.installEventFilter(this);
    for (QWidget* child : widget.findChildren<QWidget*>()) {
        child->installEventFilter(this);
    }
}

bool CDropWatcher::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::ChildAdded: {
        QObject* const child = static_cast<QChildEvent*>(event)->child();
        if (child->isWidgetType()) {
            Watch(*static_cast<QWidget*>(child));
        }
        return false;
    }
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return Take(*static_cast<QWidget*>(watched), *static_cast<QDropEvent*>(event));
    case QEvent::DragLeave:
        if (handlers.picturesLeft) {
            handlers.picturesLeft();
        }
        return false;
    default:
        return false;
    }
}

bool CDropWatcher::Take(QWidget& watched, QDropEvent& event)
{
    if (IsInsideTaker(watched)) {
        event.ignore();
        return true;
    }
    // Another instance of the program has positions of its own; from there a picture is a file.
    return event.source() != nullptr ? TakePictures(watched, event)
                                     : !watched.property(TakesDropsProperty).toBool() && TakeFiles(event);
}

bool CDropWatcher::TakePictures(const QWidget& watched, QDropEvent& event)
{
    if (!handlers.picturesDropped) {
        return false;
    }
    const std::optional<DraggedPictures> pictures = ReadDraggedPictures(*event.mimeData());
    if (!pictures) {
        return false;
    }
    Accept(event);
    const PictureDrop drop{.pictures = *pictures,
                           .place = watched.mapTo(&target, event.position().toPoint()),
                           .copies = event.modifiers().testFlag(Qt::ControlModifier)};
    if (event.type() == QEvent::Drop) {
        handlers.picturesDropped(drop);
    } else if (handlers.picturesHovered) {
        handlers.picturesHovered(drop);
    }
    return true;
}

bool CDropWatcher::TakeFiles(QDropEvent& event)
{
    if (!handlers.filesDropped) {
        return false;
    }
    const QStringList paths = DroppedPaths(*event.mimeData());
    if (paths.isEmpty()) {
        return false;
    }
    Accept(event);
    if (event.type() == QEvent::Drop) {
        // The other program waits for the end of the drop; questions to the person come after it.
        QTimer::singleShot(0, this, [this, paths] { handlers.filesDropped(paths); });
    }
    return true;
}

QStringList DroppedPaths(const QMimeData& data)
{
    QStringList paths;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile()) {
            paths += url.toLocalFile();
        }
    }
    return paths;
}
