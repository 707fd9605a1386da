#include "shell/drag/PictureDrop.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>

namespace {

// The browser's own widget inside of a view would be asked first, and take everything.
bool IsInsideTaker(const QObject* watched)
{
    for (const QObject* above = watched->parent(); above; above = above->parent()) {
        if (above->property(TakesDropsProperty).toBool()) {
            return true;
        }
    }
    return false;
}

} // namespace

CPictureDrop::CPictureDrop(QObject* parent, std::function<void(const QStringList& paths)> dropped)
    : QObject(parent), dropped(std::move(dropped))
{}

void CPictureDrop::Watch(QWidget& widget)
{
    widget.installEventFilter(this);
    for (QWidget* child : widget.findChildren<QWidget*>()) {
        child->installEventFilter(this);
    }
}

bool CPictureDrop::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::ChildAdded: {
        QObject* const child = static_cast<QChildEvent*>(event)->child();
        if (child->isWidgetType()) {
            Watch(*static_cast<QWidget*>(child));
        }
        break;
    }
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        if (IsInsideTaker(watched)) {
            drop->ignore();
            return true;
        }
        // What is dragged inside the program is the views' own matter, and some take files by themselves.
        if (drop->source() != nullptr || watched->property(TakesDropsProperty).toBool()) {
            break;
        }
        const QStringList paths = DroppedPaths(*drop->mimeData());
        if (paths.isEmpty()) {
            break;
        }
        drop->setDropAction(Qt::CopyAction);
        drop->accept();
        if (event->type() == QEvent::Drop) {
            // The other program waits for the end of the drop; questions to the person come behind it.
            QTimer::singleShot(0, this, [this, paths] { dropped(paths); });
        }
        return true;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
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
