#include "shell/web/ViewProfile.h"

#include <QBuffer>
#include <QFile>
#include <QRegularExpression>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>
#include <QWebEngineUrlSchemeHandler>

#include "common/Trace.h"
#include "resources/Resources.h"
#include "shell/web/PageAddress.h"

namespace {

void Reply(QWebEngineUrlRequestJob& job, const QByteArray& type, const QByteArray& bytes)
{
    auto* const buffer = new QBuffer(&job);
    buffer->setData(bytes);
    job.reply(type, buffer);
}

// Pictures are recognised by their content, whatever is said of them here.
QByteArray TypeOfFile(const QString& path)
{
    static const std::map<QString, QByteArray> types = {
        {QStringLiteral("css"), "text/css"},          {QStringLiteral("js"), "text/javascript"},
        {QStringLiteral("svg"), "image/svg+xml"},     {QStringLiteral("html"), "text/html"},
        {QStringLiteral("htm"), "text/html"},         {QStringLiteral("png"), "image/png"},
        {QStringLiteral("jpg"), "image/jpeg"},        {QStringLiteral("jpeg"), "image/jpeg"},
        {QStringLiteral("gif"), "image/gif"},         {QStringLiteral("bmp"), "image/bmp"},
        {QStringLiteral("webp"), "image/webp"},       {QStringLiteral("ico"), "image/x-icon"},
        {QStringLiteral("woff"), "font/woff"},        {QStringLiteral("woff2"), "font/woff2"},
        {QStringLiteral("ttf"), "font/ttf"},          {QStringLiteral("otf"), "font/otf"},
        {QStringLiteral("json"), "application/json"},
    };
    const auto entry = types.find(path.section(QLatin1Char('.'), -1).toLower());
    return entry != types.end() ? entry->second : QByteArray("application/octet-stream");
}

// A layout's own word on its charset holds over the view's option.
bool NamesCharset(const QByteArray& page)
{
    static const QRegularExpression pattern(QStringLiteral("<meta[^>]*charset"),
                                            QRegularExpression::CaseInsensitiveOption);
    return pattern.match(QString::fromLatin1(page.left(1024))).hasMatch();
}

class CPageHandler final : public QWebEngineUrlSchemeHandler {
public:
    explicit CPageHandler(const CViewProfile& profile) : profile(profile) {}

    void requestStarted(QWebEngineUrlRequestJob* job) override
    {
        const QUrl address = job->requestUrl();
        CPageSource* const view = profile.FindView(address.host());
        if (!view) {
            job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        } else if (address == ShellAddress(address.host())) {
            Reply(*job, "text/html;charset=utf-8",
                  FindResource(QStringLiteral("view_shell"), QStringLiteral("html")));
        } else if (PageRevision(address) >= 0) {
            ReplyPage(*job, *view, view->FindPage(PageRevision(address)));
        } else {
            ReplyFile(*job, *view, address);
        }
    }

private:
    static void ReplyPage(QWebEngineUrlRequestJob& job, const CPageSource& view, const QByteArray& page)
    {
        if (page.isNull()) {
            job.fail(QWebEngineUrlRequestJob::UrlNotFound);
            return;
        }
        const QByteArray charset = NamesCharset(page) ? QByteArray() : ";charset=" + view.GetDefaultCharset();
        Reply(job, "text/html" + charset, page);
    }

    static void ReplyFile(QWebEngineUrlRequestJob& job, CPageSource& view, const QUrl& address)
    {
        const QString path = address.path(QUrl::FullyDecoded);
        if (!view.IsShown(path)) {
            Trace(QStringLiteral("A page asks for ") + path);
            job.fail(QWebEngineUrlRequestJob::UrlNotFound);
            return;
        }
        auto* const file = new QFile(path, &job);
        if (file->open(QIODevice::ReadOnly)) {
            view.NoteServed(path);
            job.reply(TypeOfFile(path), file);
        } else {
            job.fail(QWebEngineUrlRequestJob::UrlNotFound);
        }
    }

    const CViewProfile& profile;
};

// "res://PROGRAM/2/271": the artwork of that number. Drawn to scale, so that it is sharp at every density.
class CArtworkHandler final : public QWebEngineUrlSchemeHandler {
public:
    void requestStarted(QWebEngineUrlRequestJob* job) override
    {
        const QByteArray drawing = FindResource(ArtworkNumber(job->requestUrl()), QStringLiteral("svg"));
        if (drawing.isNull()) {
            job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        } else {
            Reply(*job, "image/svg+xml", drawing);
        }
    }
};

class CInterceptor final : public QWebEngineUrlRequestInterceptor {
public:
    void interceptRequest(QWebEngineUrlRequestInfo& info) override
    {
        const QString scheme = info.requestUrl().scheme();
        const bool stays = scheme == QLatin1String(PageScheme) || scheme == QLatin1String(ArtworkScheme) ||
                           scheme == QLatin1String("data") || scheme == QLatin1String("blob");
        if (!stays) {
            Trace(QStringLiteral("A page asks for ") + info.requestUrl().toString());
            info.block(true);
        }
    }
};

} // namespace

std::shared_ptr<CViewProfile> CViewProfile::Get()
{
    static std::weak_ptr<CViewProfile> current;
    std::shared_ptr<CViewProfile> profile = current.lock();
    if (!profile) {
        profile.reset(new CViewProfile());
        current = profile;
    }
    return profile;
}

CViewProfile::CViewProfile() : profile(std::make_unique<QWebEngineProfile>())
{
    // Without a name a profile is off the record.
    auto pages = std::make_unique<CPageHandler>(*this);
    auto artwork = std::make_unique<CArtworkHandler>();
    auto blocker = std::make_unique<CInterceptor>();
    profile->setHttpCacheType(QWebEngineProfile::NoCache);
    profile->setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    profile->installUrlSchemeHandler(PageScheme, pages.get());
    profile->installUrlSchemeHandler(ArtworkScheme, artwork.get());
    profile->setUrlRequestInterceptor(blocker.get());
    pageHandler = std::move(pages);
    artworkHandler = std::move(artwork);
    interceptor = std::move(blocker);
}

CViewProfile::~CViewProfile() = default;

QString CViewProfile::AddView(CPageSource& source)
{
    const QString view = QStringLiteral("view%1").arg(++lastView);
    views[view] = &source;
    return view;
}

void CViewProfile::RemoveView(const QString& view)
{
    views.erase(view);
}

CPageSource* CViewProfile::FindView(const QString& view) const
{
    const auto entry = views.find(view);
    return entry != views.end() ? entry->second : nullptr;
}

void RegisterViewSchemes()
{
    QWebEngineUrlScheme pages{QByteArray(PageScheme)};
    pages.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    pages.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::CorsEnabled);
    QWebEngineUrlScheme::registerScheme(pages);
    QWebEngineUrlScheme artwork{QByteArray(ArtworkScheme)};
    artwork.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    artwork.setFlags(QWebEngineUrlScheme::SecureScheme);
    QWebEngineUrlScheme::registerScheme(artwork);
}
