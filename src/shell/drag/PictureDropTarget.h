#pragma once

#include <functional>

#include <QObject>
#include <QPoint>

#include "shell/drag/DraggedPicture.h"

class QDropEvent;
class QWidget;

// Takes pictures of this program that are dragged over a widget, all that the widget holds included: a
// browser control would swallow them. Owned by the widget. Screen's thread.
class CPictureDropTarget final : public QObject {
public:
    // place: in the widget.
    struct Handlers {
        std::function<void(const DraggedPicture& picture, QPoint place)> hovered;
        std::function<void()> left;
        std::function<void(const DraggedPicture& picture, QPoint place)> dropped;
    };
    CPictureDropTarget(QWidget& target, Handlers handlers);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Watch(QWidget& widget);
    bool Take(QWidget& watched, QDropEvent& event);

    QWidget& target;
    const Handlers handlers;
};
