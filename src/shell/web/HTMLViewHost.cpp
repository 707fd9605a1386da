#include "shell/web/HTMLViewHost.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QVBoxLayout>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

#include "common/Trace.h"
#include "resources/Resources.h"
#include "resources/StringTable.h"
#include "shell/web/ExternalDispatchBase.h"
#include "shell/web/PageAddress.h"

namespace {

using namespace std::chrono_literals;

// A page of many pictures takes a second at most. One that takes longer is asked for a sign of life.
constexpr auto patienceForPage = 5s;
constexpr auto patienceForSign = 3s;

QByteArray ChannelScript()
{
    QFile file(QStringLiteral(":/qtwebchannel/qwebchannel.js"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString ExternalScript(const QStringList& methods)
{
    const QByteArray names =
        QJsonDocument(QJsonArray::fromStringList(methods)).toJson(QJsonDocument::Compact);
    QByteArray script = FindResource(QStringLiteral("external"), QStringLiteral("js"));
    script.replace("%methods%", names);
    return QString::fromUtf8(script);
}

QWebEngineScript UserScript(const QString& name, const QString& source, bool inFrames)
{
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(inFrames);
    return script;
}

QString ScriptLiteral(const QString& text)
{
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

// The script sends an empty list for a value that is missing, since JSON has no undefined.
QVariantList ArgumentsOf(const QJsonArray& values)
{
    QVariantList arguments;
    for (const auto value : values) {
        arguments += value.isArray() ? QVariant() : value.toVariant();
    }
    return arguments;
}

} // namespace

CHTMLViewHost::CHTMLViewHost(const HTMLViewOptions& options, QWidget& widget)
    : widget(widget),
      allowContextMenu(options.allowContextMenu),
      charset(CharsetOfOption(options)),
      profile(CViewProfile::Get()),
      view(profile->AddView(*this)),
      arrangement(new QVBoxLayout(&widget)),
      input([this](int press) { OnPress(press); })
{
    arrangement->setContentsMargins(0, 0, 0, 0);
    patience.setSingleShot(true);
    connect(&patience, &QTimer::timeout, this, &CHTMLViewHost::AskWhetherAlive);
    MakeBrowser();
}

CHTMLViewHost::~CHTMLViewHost()
{
    RemoveBrowser();
    profile->RemoveView(view);
}

void CHTMLViewHost::MakeBrowser()
{
    page = MakePage();
    // What comes from the browser comes in the middle of its own work, so it waits for the event loop.
    bridge = std::make_unique<CScriptBridge>(CScriptBridge::Receivers{
        .called = [this](int revision, const QString& method,
                         const QJsonArray& arguments) { OnCalled(revision, method, arguments); },
        .shown =
            [this](int revision) {
                QMetaObject::invokeMethod(
                    this, [this, revision] { OnShown(revision); }, Qt::QueuedConnection);
            }});
    channel = std::make_unique<QWebChannel>();
    channel->registerObject(QStringLiteral("bridge"), bridge.get());
    page->setWebChannel(channel.get());
    InsertScripts();
    connect(
        page.get(), &QWebEnginePage::loadFinished, this, [this](bool) { Start(); }, Qt::QueuedConnection);
    connect(
        page.get(), &QWebEnginePage::renderProcessTerminated, this, [this] { ReplaceBrowser(); },
        Qt::QueuedConnection);

    browser = std::make_unique<QWebEngineView>(&widget);
    browser->setPage(page.get());
    browser->setAcceptDrops(false); // files that are dropped are the frame's
    browser->setContextMenuPolicy(allowContextMenu ? Qt::DefaultContextMenu : Qt::NoContextMenu);
    input.Watch(*browser);
    arrangement->addWidget(browser.get());
    widget.setFocusProxy(browser.get());
    page->load(ShellAddress(view));
}

std::unique_ptr<CViewPage> CHTMLViewHost::MakePage()
{
    return std::make_unique<CViewPage>(
        profile->GetProfile(),
        CViewPage::Options{
            .view = view,
            .followLink =
                [this](const QString& link) {
                    QMetaObject::invokeMethod(
                        this, [this, link, from = shown ? shown->revision : 0] { Follow(from, link); },
                        Qt::QueuedConnection);
                },
            .isAwaited = [this](int revision) { return awaited && awaited->revision == revision; },
            .isShown =
                [this](int revision) {
                    return shown && KnowsLinksOf(shown->revision) &&
                           (revision == -1 || revision == shown->revision);
                }});
}

void CHTMLViewHost::InsertScripts()
{
    QWebEngineScriptCollection& collection = page->scripts();
    collection.clear();
    collection.insert(UserScript(QStringLiteral("channel"), QString::fromUtf8(ChannelScript()), false));
    collection.insert(UserScript(QStringLiteral("external"),
                                 ExternalScript(dispatch ? dispatch->GetMethodNames() : QStringList()),
                                 true));
}

void CHTMLViewHost::RemoveBrowser()
{
    patience.stop();
    isAskedForLife = false;
    isStarted = false;
    input.Forget();
    disconnect(page.get(), nullptr, this, nullptr);
    browser.reset();
    page.reset();
    channel.reset();
    bridge.reset();
}

// The next page, or the one that was on the screen, comes up in a new control.
void CHTMLViewHost::ReplaceBrowser()
{
    if (!awaited) {
        awaited = shown;
    }
    shown.reset();
    if (awaited && awaited->revision == replacedFor) {
        // It is this page itself that keeps the browser from working.
        awaited->bytes = "<p>" + Text(StringId::PageDoesNotRespond).toUtf8() + "</p>";
        awaited->revision = ++lastRevision;
    }
    replacedFor = awaited ? awaited->revision : 0;
    RemoveBrowser();
    MakeBrowser();
}

void CHTMLViewHost::SetExternalDispatch(CExternalDispatchBase* newDispatch)
{
    dispatch = newDispatch;
    InsertScripts();
}

int CHTMLViewHost::Load(const std::string& bytes, HTMLScrollPlace place)
{
    if (awaited) {
        // What was to be done in a page that never came is not meant for this one; who asks is answered by
        // it.
        std::erase_if(scripts, [](const Script& script) { return !script.answer; });
    }
    awaited = Page{.revision = ++lastRevision,
                   .bytes = WithArtworkPaths(servedFiles.Readdressed(QByteArray::fromStdString(bytes))),
                   .place = place};
    Start();
    return lastRevision;
}

void CHTMLViewHost::Start()
{
    if (!isStarted && page->url() == ShellAddress(view) && !page->isLoading()) {
        isStarted = true;
    }
    if (!isStarted || !awaited) {
        return;
    }
    const QString address = PageAddress(view, awaited->revision).toString();
    page->runJavaScript(
        QStringLiteral("viewShell.load(%1, %2, %3)")
            .arg(ScriptLiteral(address))
            .arg(awaited->revision)
            .arg(awaited->place == HTMLScrollPlace::Keep ? QStringLiteral("true") : QStringLiteral("false")));
    isAskedForLife = false;
    patience.start(patienceForPage);
}

void CHTMLViewHost::OnShown(int revision)
{
    if (!awaited || awaited->revision != revision) {
        return;
    }
    patience.stop();
    shown = std::move(awaited);
    awaited.reset();
    while (!scripts.empty()) {
        const Script script = std::move(scripts.front());
        scripts.pop_front();
        RunScript(script.expression, script.answer);
    }
    if (shownCallback) {
        shownCallback();
    }
}

void CHTMLViewHost::RunScript(const QString& expression, std::function<void(const QVariant&)> answer)
{
    if (awaited || !shown) {
        scripts.push_back({expression, std::move(answer)});
        return;
    }
    page->runJavaScript(QStringLiteral("viewShell.evaluate(%1)").arg(ScriptLiteral(expression)),
                        [answer = std::move(answer)](const QVariant& value) {
                            if (answer) {
                                answer(value);
                            }
                        });
}

void CHTMLViewHost::OnCalled(int revision, const QString& method, const QJsonArray& arguments)
{
    QMetaObject::invokeMethod(
        this, [this, revision, method, arguments] { Dispatch(revision, method, arguments); },
        Qt::QueuedConnection);
}

void CHTMLViewHost::Dispatch(int revision, const QString& method, const QJsonArray& arguments)
{
    if (!dispatch || !dispatch->KnowsPage(revision, IsCurrent(revision)) || !MayAsk(revision)) {
        Trace(QStringLiteral("A call is not heard: ") + method);
        return;
    }
    std::vector<int> ids;
    DispatchResult result = dispatch->GetIDsOfNames({method}, ids);
    if (result == DispatchResult::Ok) {
        isDispatching = true;
        dispatch->SetCallingPage(revision);
        result = dispatch->Invoke(ids[0], DispatchKind::Method, ArgumentsOf(arguments));
        isDispatching = false;
    }
    if (result != DispatchResult::Ok) {
        Trace(QStringLiteral("A call of %1 is refused with %2").arg(method).arg(static_cast<int>(result)));
    }
}

void CHTMLViewHost::Follow(int revision, const QString& link)
{
    // A link of a page that is about to go may lead to something else by now.
    if (KnowsLinksOf(revision) && MayAsk(revision)) {
        loader->LoadURL(link);
    }
}

bool CHTMLViewHost::MayAsk(int revision)
{
    // A dialog, a menu or the wizard looks at the document, and nobody clicks behind it.
    const bool isBusy =
        isDispatching || QApplication::activeModalWidget() || QApplication::activePopupWidget();
    return pressedPages.count(revision) != 0 && !isBusy && input.Take();
}

// While a page comes onto the screen the person may have seen either. An answer of the page comes after what
// was sent to it before.
void CHTMLViewHost::OnPress(int press)
{
    if (press != lastPress) {
        lastPress = press;
        pressedPages.clear();
        for (const std::optional<Page>* each : {&shown, &awaited}) {
            if (*each) {
                pressedPages.insert((*each)->revision);
            }
        }
    }
    page->runJavaScript(QStringLiteral("1"), [this, press, asked = page.get()](const QVariant&) {
        if (asked == page.get()) {
            input.Arrived(press);
        }
    });
}

QByteArray CHTMLViewHost::FindPage(int revision) const
{
    if (awaited && awaited->revision == revision) {
        return awaited->bytes;
    }
    return shown && shown->revision == revision ? shown->bytes : QByteArray();
}

bool CHTMLViewHost::IsShown(const QString& filePath) const
{
    // Links are resolved first: one in a folder must not lead out of it.
    const QString path = QFileInfo(filePath).canonicalFilePath();
    for (const QString& folder : shownFolders) {
        if (path.startsWith(folder)) {
            return true;
        }
    }
    return false;
}

void CHTMLViewHost::AskWhetherAlive()
{
    if (isAskedForLife) {
        GiveUp();
        return;
    }
    isAskedForLife = true;
    patience.start(patienceForSign);
    page->runJavaScript(QStringLiteral("1"), [this, asked = page.get()](const QVariant& answer) {
        // Without a value the page is on its way out.
        if (answer.isValid() && asked == page.get() && awaited) {
            isAskedForLife = false;
            patience.start(patienceForPage);
        }
    });
}

void CHTMLViewHost::GiveUp()
{
    Trace(QStringLiteral("A page does not respond"));
    ReplaceBrowser();
}
