#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QStringList>
#include <QVariant>
#include <QWidget>

#include "shell/web/HTMLViewOptions.h"

class CExternalDispatchBase;
class CHTMLViewHost;

// A page of the program's own making in a browser control. Pages come from memory, complete, in one go; the
// page before stays on the screen until the new one has its pictures. Owned by its parent; screen's thread.
//
// PrepareHTMLViews has to be called before the application object is made.
class CHTMLView final : public QWidget {
public:
    using Options = HTMLViewOptions;
    using ScrollPlace = HTMLScrollPlace;

    explicit CHTMLView(const Options& options, QWidget* parent = nullptr);
    ~CHTMLView() override;

    // Takes the links that are followed in the page. Borrowed.
    void SetLoader(CContentURLLoader* loader);
    // What window.external answers to. Borrowed. To be set before the first page.
    void SetExternalDispatch(CExternalDispatchBase* dispatch);
    // The folders whose files the page may show, by full path, what lies below them included. Those of the
    // page on the screen have to be among them until the next one is there.
    void SetShownFolders(const QStringList& folders);

    // page: the bytes of a whole page. A page without a charset of its own is in the code page of
    // the option Default_CodePage. Returns a number of the page's own.
    int LoadHtml(const std::string& page, ScrollPlace place = ScrollPlace::Top);

    // Called each time a page has come onto the screen.
    void SetShownCallback(std::function<void()> callback);
    // Runs an expression in the page on the screen, or in the one that is on its way there once it is. The
    // answer of a page that does not respond never comes.
    void RunScript(const QString& expression, std::function<void(const QVariant&)> answer = {});

    QSize sizeHint() const override;

private:
    std::unique_ptr<CHTMLViewHost> host;
};

// Names the schemes of the pages to the browser. Its sandbox stays on, except for root, for whom
// it can't work.
void PrepareHTMLViews();
