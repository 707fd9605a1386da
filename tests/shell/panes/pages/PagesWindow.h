#pragma once

#include <memory>

#include <QMenu>

#include "document/project/GalleryProject.h"
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

    // A view that gets the hints of the pages view.
    class CListener final : public CGalleryProjectConsumer {
    public:
        void UpdateView(UpdateHint hint, CGalleryProject&) override { hints.push_back(hint); }
        std::vector<UpdateHint> hints;
    };

    CViewPages& GetView() { return *view; }
    CHTMLView& GetPage() { return view->GetHTMLView(); }
    CGalleryProject& GetProject() { return fixture.GetProject(); }
    CGallery& GetGallery() { return *GetProject().GetCurrentGallery(); }

    // As the frame does it; returns when the page is on the screen again, if there is a new one.
    void Do(UpdateHint hint, const UpdateParameter& parameter = {});
    void WaitForPageShown(int count);
    int GetShownCount() const { return shownCount; }
    // The pictures of the gallery by name, and of the page by their id.
    QString GetOrder();
    QString GetPageText() { return Ask(GetPage(), QStringLiteral("document.body.innerText")).toString(); }

    CProjectFixture fixture;
    CListener listener;
    std::vector<UpdateHint> notifications;
    int deployments = 0;
    int searches = 0;   // for all pictures that are not there
    QStringList sought; // paths of single ones

private:
    std::unique_ptr<CViewPages> view;
    int shownCount = 0;
};

// "text command" of each entry, "*" before the chosen one.
QStringList Entries(const QMenu& menu);
