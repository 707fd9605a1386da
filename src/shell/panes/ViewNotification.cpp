#include "shell/panes/ViewNotification.h"

CViewNotifier::CViewNotifier(ViewId view, CViewNotification receiver)
    : view(view), receiver(std::move(receiver))
{}

void CViewNotifier::Send(UpdateHint hint, const UpdateParameter& parameter)
{
    QMetaObject::invokeMethod(
        &context, [this, hint, parameter] { receiver(view, hint, parameter); }, Qt::QueuedConnection);
}
