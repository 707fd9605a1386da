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
        // Whether a navigation can be a followed link: the page on the screen is of that revision, or of any
        // (-1), and none is on its way, unless its links mean the same then.
        std::function<bool(int revision)> isShown;
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
