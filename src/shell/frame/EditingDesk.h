#pragma once

#include <functional>
#include <vector>

#include "editing/EditHistory.h"
#include "shell/panes/DocumentDesk.h"
#include "shell/panes/GalleryProjectConsumer.h"

// The road from a view to the document and back: applies the acts of all views and of the menu, keeps the
// history by which they are taken back, and tells the views what to show anew. Owned by the frame; screen's
// thread.
class CEditingDesk final : public CDocumentDesk {
public:
    struct Listener {
        std::function<void()> changed;                    // the project has to be saved
        std::function<void(const Edited& edited)> edited; // after the views
    };
    // The project is borrowed.
    CEditingDesk(CGalleryProject& project, Listener listener);

    // In the order in which they hear of changes. Borrowed.
    void AddView(CGalleryProjectConsumer& view) { views.push_back(&view); }
    // For what is no act.
    void UpdateViews(ViewUpdate::Cause cause);
    // Another project has taken the place of the one before.
    void BeginAnew();

    CEditHistory& GetHistory() { return history; }

    CGalleryProject& GetProject() override { return project; }
    bool Do(const Act& act) override;
    void ChooseGallery(int32_t index) override;
    void MarkChanged() override { listener.changed(); }

private:
    void OnEdited(const Edited& edited);

    CGalleryProject& project;
    const Listener listener;
    std::vector<CGalleryProjectConsumer*> views;
    CEditHistory history;
};
