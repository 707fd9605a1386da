#include "shell/web/HTMLView.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QFileInfo>

#include "common/FileSystem.h"
#include "shell/web/HTMLViewHost.h"

CHTMLView::CHTMLView(const Options& options, QWidget* parent)
    : QWidget(parent), host(std::make_unique<CHTMLViewHost>(options, *this))
{}

CHTMLView::~CHTMLView() = default;

void CHTMLView::SetLoader(CContentURLLoader* loader)
{
    host->loader = loader;
}

void CHTMLView::SetExternalDispatch(CExternalDispatchBase* dispatch)
{
    host->SetExternalDispatch(dispatch);
}

void CHTMLView::SetShownFolders(const QStringList& folders)
{
    host->shownFolders.clear();
    for (const QString& folder : folders) {
        const QString canonical = QFileInfo(folder).canonicalFilePath();
        if (!canonical.isEmpty()) {
            host->shownFolders += WithTrailingSeparator(canonical);
        }
    }
}

int CHTMLView::LoadHtml(const std::string& page, ScrollPlace place)
{
    return host->Load(page, place);
}

void CHTMLView::SetShownCallback(std::function<void()> callback)
{
    host->shownCallback = std::move(callback);
}

void CHTMLView::RunScript(const QString& expression, std::function<void(const QVariant&)> answer)
{
    host->RunScript(expression, std::move(answer));
}

QSize CHTMLView::sizeHint() const
{
    return {640, 480};
}

void PrepareHTMLViews()
{
    // The browser refuses to start its sandbox for root.
    if (::geteuid() == 0) {
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }
    // No name is ever looked up, whatever a layout asks for and the browser itself would like to know; and
    // the real-time connections of a page, which go past its requests, get neither datagrams nor a proxy.
    QByteArray flags = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    flags += " --disable-background-networking --dns-prefetch-disable"
             " --host-resolver-rules=\"MAP * ~NOTFOUND\""
             " --force-webrtc-ip-handling-policy=disable_non_proxied_udp";
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", flags.trimmed());
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    RegisterViewSchemes();
}
