#pragma once

#include <memory>

#include "document/project/GalleryProject.h"
#include "shell/panes/galleries/ViewGalleries.h"
#include "shell_support/ViewWindow.h"
#include "support/ProjectFixture.h"

// The galleries view in a window of its own over a real project: what the view asks for is done as the frame
// does it, and noted. Gallery 0, the root, is there from the beginning.
class CGalleriesWindow {
public:
    explicit CGalleriesWindow(QSize size = QSize(320, 320));

    // A view that gets the hints of the galleries view.
    class CListener final : public CGalleryProjectConsumer {
    public:
        void UpdateView(UpdateHint hint, CGalleryProject&) override { hints.push_back(hint); }
        std::vector<UpdateHint> hints;
    };

    CViewGalleries& GetView() { return *view; }
    CHTMLView& GetPage() { return view->GetHTMLView(); }
    CGalleryProject& GetProject() { return fixture.GetProject(); }
    CGallery& GetGallery(int32_t index) { return *GetProject().FindGallery(index); }
    int32_t GetCurrent() { return GetProject().GetCurrentGalleryIndex(); }

    // Adds a child and returns its index.
    int32_t AddChild(int32_t parent) { return GetProject().AddChildGallery(parent); }
    // Returns when the page is on the screen with all its pictures.
    void Show(UpdateHint hint = UpdateHint::ProjectReplaced);
    // Until the page shows the neighbourhood of that gallery, with its pictures.
    bool WaitForGallery(int32_t current);
    QVariant Ask(const QString& expression) { return ::Ask(GetPage(), expression); }
    QPoint PlaceOf(const QString& selector) { return RectOf(GetPage(), selector).center().toPoint(); }
    // Points at the cover of the gallery and presses a button of its strip.
    void PressButton(int32_t gallery, const QString& tip);
    // Whole pixels of the screen, as a person sees the view.
    QImage Capture();

    CProjectFixture fixture;
    CListener listener;
    std::vector<UpdateHint> notifications;
    int shownCount = 0;
    QStringList droppedPaths;
    std::optional<int32_t> droppedOn;
    QString told;

private:
    std::unique_ptr<CViewGalleries> view;
};
