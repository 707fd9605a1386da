#pragma once

#include <memory>

#include <QMenu>

#include "document/project/GalleryProject.h"
#include "shell/frame/EditingDesk.h"
#include "shell/panes/pages/ViewPages.h"
#include "shell_support/ViewWindow.h"
#include "support/ProjectFixture.h"

// The pages view in a window of its own over a real project: what the view asks for is done as the frame does
// it, and noted.
//
// Layout "one": index.html with four pictures a page, a text, a reference, and links; large.html with one
// picture a page. Layout "two" has index.html with two pictures a page and styles of its own.
class CPagesWindow {
public:
    explicit CPagesWindow(int pictures);

    // Another view of the same desk.
    class CListener final : public CGalleryProjectConsumer {
    public:
        void UpdateView(const ViewUpdate& update, CGalleryProject&) override
        {
            causes.push_back(update.cause);
        }
        std::vector<ViewUpdate::Cause> causes;
    };

    CViewPages& GetView() { return *view; }
    CHTMLView& GetPage() { return view->GetHTMLView(); }
    CEditingDesk& GetDesk() { return *desk; }
    CGalleryProject& GetProject() { return fixture.GetProject(); }
    CGallery& GetGallery() { return *GetProject().GetCurrentGallery(); }

    // What a person can ask for of one picture.
    enum class Wish { MoveUp, MoveDown, TurnRight, TurnLeft, Remove };
    // Each returns when the page is on the screen again, if there is a new one.
    void Do(const Act& act);
    void Do(Wish wish, int32_t position);
    void Follow(const char* link);
    void ShowAnew();
    void WaitForPageShown(int count);
    int GetShownCount() const { return shownCount; }
    // The pictures of the gallery by name, and of the page by their id.
    QString GetOrder();
    QString GetPageText() { return Ask(GetPage(), QStringLiteral("document.body.innerText")).toString(); }

    CProjectFixture fixture;
    CListener listener;
    std::vector<Edited> edited;
    int changes = 0;     // that are to be saved
    int32_t recent = -1; // the place of a project that was chosen in the list
    int searches = 0;    // for all pictures that are not there
    QStringList sought;  // paths of single ones

private:
    void Wait(int before);

    std::unique_ptr<CEditingDesk> desk;
    std::unique_ptr<CViewPages> view;
    int shownCount = 0;
};

// "text command" of each entry, "*" before the chosen one.
QStringList Entries(const QMenu& menu);
