#pragma once

#include <functional>

#include <QObject>

#include "document/project/GalleryProjectConsumer.h"

// The three views of the frame. The numbers are those of their panels' controls.
enum class ViewId : int { Folder = 200, Galleries = 201, Pages = 202 };

// How a view asks the frame for a change of the document: the frame answers by calling UpdateProject of that
// view. Called on the screen's thread, never from inside a script of a page.
using CViewNotification = std::function<void(ViewId view, UpdateHint hint, const UpdateParameter& parameter)>;

// The sending side of one view, owned by it. What was sent waits in the event loop, so that a script call has
// returned before the document changes; it is dropped when the view is gone by then.
class CViewNotifier final {
public:
    CViewNotifier(ViewId view, CViewNotification receiver);

    // May be called on any thread.
    void Send(UpdateHint hint, const UpdateParameter& parameter = {});

private:
    const ViewId view;
    const CViewNotification receiver;
    QObject context; // receives the queued calls
};
