#include "shell/drag/PictureDropTarget.h"

#include <QDropEvent>
#include <QWidget>

CPictureDropTarget::CPictureDropTarget(QWidget& target, Handlers handlers)
    : QObject(&target), target(target), handlers(std::move(handlers))
{
    target.setAcceptDrops(true);
    Watch(target);
}

void CPictureDropTarget::Watch(QWidget& widget)
{
    widget.installEventFilter(this);
    for (QWidget* child : widget.findChildren<QWidget*>()) {
        child->installEventFilter(this);
    }
}

bool CPictureDropTarget::eventFilter(QObject* watched, QEvent* event)
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
        handlers.left();
        return false;
    default:
        return false;
    }
}

bool CPictureDropTarget::Take(QWidget& watched, QDropEvent& event)
{
    const std::optional<DraggedPicture> picture = ReadDraggedPicture(*event.mimeData());
    // Another instance of the program has positions of its own; from there it is a file.
    if (event.source() == nullptr || !picture) {
        return false;
    }
    const QPoint place = watched.mapTo(&target, event.position().toPoint());
    event.setDropAction(Qt::CopyAction);
    event.accept();
    if (event.type() == QEvent::Drop) {
        handlers.dropped(*picture, place);
    } else {
        handlers.hovered(*picture, place);
    }
    return true;
}
