#pragma once

#include <functional>

#include <QObject>
#include <QPoint>
#include <QStringList>

#include "shell/drag/DraggedPictures.h"

class QDropEvent;
class QMimeData;
class QWidget;

// Pictures of this program over a widget, or let go there.
struct PictureDrop {
    DraggedPictures pictures;
    QPoint place;        // in the widget that is watched
    bool copies = false; // the person holds Ctrl down: the pictures also stay where they are
};

// Takes what is dragged over a widget and over all that the widget holds, now and later: a browser control
// would swallow it. Owned by the widget. Screen's thread.
class CDropWatcher final : public QObject {
public:
    // What is taken. That of an empty function is left to the widgets and to other watchers.
    struct Handlers {
        std::function<void(const PictureDrop& drop)> picturesHovered = {};
        std::function<void()> picturesLeft = {};
        std::function<void(const PictureDrop& drop)> picturesDropped = {};
        // Files and folders from another program, by their full paths. Called once the drop is over.
        std::function<void(const QStringList& paths)> filesDropped = {};
    };
    CDropWatcher(QWidget& target, Handlers handlers);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Watch(QWidget& widget);
    bool Take(QWidget& watched, QDropEvent& event);
    bool TakePictures(const QWidget& watched, QDropEvent& event);
    bool TakeFiles(QDropEvent& event);

    QWidget& target;
    const Handlers handlers;
};

// The property of a widget that takes the files which are dropped on it by itself.
inline constexpr char TakesDropsProperty[] = "takesDrops";

// Local files and folders only.
QStringList DroppedPaths(const QMimeData& data);
