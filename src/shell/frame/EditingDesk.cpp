#include "shell/frame/EditingDesk.h"

#include <QApplication>

#include "common/Trace.h"
#include "document/project/GalleryProject.h"

CEditingDesk::CEditingDesk(CGalleryProject& project, Listener listener)
    : project(project),
      listener(std::move(listener)),
      history(project, [this](const Edited& edited) { OnEdited(edited); })
{}

void CEditingDesk::UpdateViews(ViewUpdate::Cause cause)
{
    for (CGalleryProjectConsumer* view : views) {
        view->UpdateView({.cause = cause}, project);
    }
}

void CEditingDesk::BeginAnew()
{
    history.Clear();
    UpdateViews(ViewUpdate::Cause::ProjectReplaced);
}

// A dialog, or the thread of a deployment, has the document to itself: what comes late is not done.
bool CEditingDesk::Do(const Act& act)
{
    if (QApplication::activeModalWidget() != nullptr) {
        Trace(QStringLiteral("An act is not done behind a dialog: ") + act.name);
        return false;
    }
    return history.Do(act);
}

void CEditingDesk::OnEdited(const Edited& edited)
{
    listener.changed();
    for (CGalleryProjectConsumer* view : views) {
        view->UpdateView({.cause = ViewUpdate::Cause::Edited, .edited = &edited}, project);
    }
    listener.edited(edited);
}

void CEditingDesk::ChooseGallery(int32_t index)
{
    if (QApplication::activeModalWidget() == nullptr && project.FindGallery(index)) {
        project.SetCurrentGallery(index);
        listener.changed();
        UpdateViews(ViewUpdate::Cause::GalleryChosen);
    }
}
