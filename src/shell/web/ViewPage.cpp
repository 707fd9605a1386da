#include "shell/web/ViewPage.h"

#include <QWebEngineNewWindowRequest>
#include <QWebEngineSettings>

#include "common/Trace.h"
#include "shell/web/PageAddress.h"

CViewPage::CViewPage(QWebEngineProfile& profile, Options options)
    : QWebEnginePage(&profile), options(std::move(options))
{
    QWebEngineSettings& settings = *this->settings();
    settings.setAttribute(QWebEngineSettings::AutoLoadIconsForPage, false);
    settings.setAttribute(QWebEngineSettings::DnsPrefetchEnabled, false);
    settings.setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    settings.setAttribute(QWebEngineSettings::FocusOnNavigationEnabled, false);
    settings.setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
    settings.setAttribute(QWebEngineSettings::LocalStorageEnabled, false);
    settings.setAttribute(QWebEngineSettings::PluginsEnabled, false);
    settings.setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
    // A link that asks for a window of its own is a followed link like any other.
    connect(this, &QWebEnginePage::newWindowRequested, this, [this](QWebEngineNewWindowRequest& request) {
        if (request.isUserInitiated()) {
            this->options.followLink(LinkAsWritten(request.requestedUrl()));
        }
    });
}

bool CViewPage::acceptNavigationRequest(const QUrl& address, NavigationType, bool isMainFrame)
{
    if (isMainFrame && address == ShellAddress(options.view)) {
        return true;
    }
    if (!isMainFrame && PageRevision(address) >= 0 && options.isAwaited(PageRevision(address))) {
        return true;
    }
    // A frame of the page's own is at work until the page is shown, and is not followed.
    if (options.isShown(PageRevision(address))) {
        options.followLink(LinkAsWritten(address));
    }
    return false;
}

// A page of the program does not open windows of its own, least of all in an endless row.
void CViewPage::javaScriptAlert(const QUrl&, const QString& text)
{
    Trace(QStringLiteral("A page says: ") + text);
}

bool CViewPage::javaScriptConfirm(const QUrl&, const QString& text)
{
    Trace(QStringLiteral("A page asks: ") + text);
    return false;
}

bool CViewPage::javaScriptPrompt(const QUrl&, const QString& text, const QString&, QString*)
{
    Trace(QStringLiteral("A page asks: ") + text);
    return false;
}

void CViewPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& message, int line,
                                         const QString&)
{
    Trace(QStringLiteral("Page, line %1: %2").arg(line).arg(message));
}
