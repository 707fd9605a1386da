#pragma once

#include <functional>
#include <memory>

#include "document/project/GalleryProject.h"
#include "shell/frame/EditingDesk.h"
#include "shell/panes/galleries/ViewGalleries.h"
#include "shell_support/ViewWindow.h"
#include "support/ProjectFixture.h"

class QLineEdit;

// The galleries view in a window of its own over a real project: what the view asks for is done as the frame
// does it, and noted. Gallery 0, the root, is there from the beginning.
class CGalleriesWindow {
public:
    explicit CGalleriesWindow(QSize size = QSize(320, 320));

    // Another view of the same desk.
    class CListener final : public CGalleryProjectConsumer {
    public:
        void UpdateView(const ViewUpdate& update, CGalleryProject&) override
        {
            causes.push_back(update.cause);
            isOtherGallery = update.edited && update.edited->isOtherGallery;
        }
        std::vector<ViewUpdate::Cause> causes;
        bool isOtherGallery = false; // after the last act
    };

    CViewGalleries& GetView() { return *view; }
    CHTMLView& GetPage() { return view->GetHTMLView(); }
    CEditingDesk& GetDesk() { return *desk; }
    CGalleryProject& GetProject() { return fixture.GetProject(); }
    CGallery& GetGallery(int32_t index) { return *GetProject().FindGallery(index); }
    int32_t GetCurrent() { return GetProject().GetCurrentGalleryIndex(); }

    // Adds a child and returns its index.
    int32_t AddChild(int32_t parent) { return GetProject().AddChildGallery(parent); }
    // Returns when the page is on the screen with all its pictures.
    void Show(ViewUpdate::Cause cause = ViewUpdate::Cause::ProjectReplaced);
    // Until the page shows the neighbourhood of that gallery, with its pictures.
    bool WaitForGallery(int32_t current);
    QVariant Ask(const QString& expression) { return ::Ask(GetPage(), expression); }
    QPoint PlaceOf(const QString& selector) { return RectOf(GetPage(), selector).center().toPoint(); }
    // Points at the cover of the gallery and presses a button of its strip.
    void PressButton(int32_t gallery, const QString& tip);
    // Clicks with the other button.
    void ClickRight(QPoint place);
    void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    // Gives the keyboard to the link of a cover.
    void FocusCover(int32_t gallery);
    // The field of a gallery's name; null while it isn't on the screen.
    QLineEdit* FindNameEditor();
    // The mouse is held down at the place; start begins the drag, if the view doesn't do it by itself. What
    // is done while something is dragged ends with Drop.
    struct MouseDrag {
        QPoint from;
        std::function<void()> start = {};
        std::function<void()> meanwhile;
    };
    void Drag(const MouseDrag& drag);
    // Goes to the place with what is dragged.
    void DragTo(QPoint place);
    void Drop(QPoint place, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    // The galleries below the gallery in their order: "1 2 3".
    QString ChildrenOf(int32_t gallery);
    // Returns when the page is on the screen that shows it.
    void Undo();
    // Whole pixels of the screen, as a person sees the view.
    QImage Capture();

    CProjectFixture fixture;
    CListener listener;
    int changes = 0; // that are to be saved
    int shownCount = 0;
    QStringList droppedPaths;
    std::optional<int32_t> droppedOn;
    QString told;

private:
    std::unique_ptr<CEditingDesk> desk;
    std::unique_ptr<CViewGalleries> view;
};
