#pragma once

#include <functional>

#include <QWebEnginePage>

class QWebEngineProfile;

// The browser's side of a view: one page that holds the view's pages, and goes nowhere by itself. Owned by
// its host; screen's thread.
class CViewPage final : public QWebEnginePage {
    Q_OBJECT

public:
    struct Options {
        QString view; // its name in addresses
        // Takes a link as the page wrote it. Called inside the browser: what it does has to wait.
        std::function<void(const QString& link)> followLink;
        // Whether the page's frame may load that revision now.
        std::function<bool(int revision)> isAwaited;
        // Whether a page is on the screen and none on its way, so that a navigation can be a followed link.
        std::function<bool()> isShown;
    };
    CViewPage(QWebEngineProfile& profile, Options options);

protected:
    bool acceptNavigationRequest(const QUrl& address, NavigationType type, bool isMainFrame) override;
    void javaScriptAlert(const QUrl& origin, const QString& text) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& text) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& text, const QString& initial,
                          QString* result) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;

private:
    const Options options;
};
