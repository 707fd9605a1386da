#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>

#include <QJsonArray>
#include <QStringList>
#include <QTimer>
#include <QWebChannel>
#include <QWebEngineView>

#include "shell/web/HTMLViewOptions.h"
#include "shell/web/PersonInput.h"
#include "shell/web/ServedFiles.h"
#include "shell/web/ViewPage.h"
#include "shell/web/ViewProfile.h"

class CExternalDispatchBase;
class QVBoxLayout;

// The object of the program that the scripts of a view reach over the channel. Called inside the browser, so
// whoever takes its calls has them wait. Owned by the view's host; screen's thread.
class CScriptBridge final : public QObject {
    Q_OBJECT

public:
    struct Receivers {
        std::function<void(int revision, const QString& method, const QJsonArray& arguments)> called;
        std::function<void(int revision)> shown;
    };
    explicit CScriptBridge(Receivers receivers) : receivers(std::move(receivers)) {}

    // A call of window.external by the page of that revision.
    Q_INVOKABLE void call(int revision, const QString& method, const QJsonArray& arguments)
    {
        receivers.called(revision, method, arguments);
    }
    // The page has come onto the screen.
    Q_INVOKABLE void shown(int revision) { receivers.shown(revision); }

private:
    const Receivers receivers;
};

// The browser control of a CHTMLView, which owns it: keeps the bytes of the page on the screen and of the
// next one, takes the calls of their scripts and the links that are followed, both in answer to a person
// only, and replaces a control that does not respond any more. Screen's thread; whatever comes from inside
// the browser is queued first.
class CHTMLViewHost final : public QObject, public CPageSource {
public:
    // widget: gets the browser as its only child. Borrowed; it owns this object.
    CHTMLViewHost(const HTMLViewOptions& options, QWidget& widget);
    ~CHTMLViewHost() override;

    int Load(const std::string& bytes, HTMLScrollPlace place);
    void RunScript(const QString& expression, std::function<void(const QVariant&)> answer);
    void SetExternalDispatch(CExternalDispatchBase* dispatch);

    QByteArray FindPage(int revision) const override;
    QByteArray GetDefaultCharset() const override { return charset; }
    bool IsShown(const QString& filePath) const override;
    void NoteServed(const QString& filePath) override { servedFiles.Note(filePath); }

    CContentURLLoader* loader = nullptr; // borrowed
    QStringList shownFolders;            // canonical, with a trailing separator
    std::function<void()> shownCallback;

private:
    struct Page {
        int revision = 0;
        QByteArray bytes;
        HTMLScrollPlace place = HTMLScrollPlace::Top;
    };
    struct Script {
        QString expression;
        std::function<void(const QVariant&)> answer;
    };

    void MakeBrowser();
    void RemoveBrowser();
    void ReplaceBrowser();
    std::unique_ptr<CViewPage> MakePage();
    void InsertScripts();
    void Start();
    void OnShown(int revision);
    void OnCalled(int revision, const QString& method, const QJsonArray& arguments);
    void Dispatch(int revision, const QString& method, const QJsonArray& arguments);
    void Follow(int revision, const QString& link);
    // Whether that page is on the screen, with no other on its way.
    bool IsCurrent(int revision) const { return shown && shown->revision == revision && !awaited; }
    bool KnowsLinksOf(int revision) const
    {
        return loader && loader->KnowsLinksOf(revision, IsCurrent(revision));
    }
    // Whether the page of that revision may ask for something now.
    bool MayAsk(int revision);
    void OnPress(int press);
    void AskWhetherAlive();
    void GiveUp();

    QWidget& widget;
    const bool allowContextMenu;
    const QByteArray charset;
    const std::shared_ptr<CViewProfile> profile;
    const QString view; // its name in addresses
    CExternalDispatchBase* dispatch = nullptr;

    QVBoxLayout* arrangement;
    std::unique_ptr<CViewPage> page;
    std::unique_ptr<QWebEngineView> browser; // goes before its page
    std::unique_ptr<QWebChannel> channel;
    std::unique_ptr<CScriptBridge> bridge;
    bool isStarted = false; // the page around the pages is there

    CServedFiles servedFiles;
    int lastRevision = 0;
    std::optional<Page> shown;
    std::optional<Page> awaited;
    int replacedFor = 0;        // the revision for which the control was replaced last
    std::deque<Script> scripts; // that wait for the next page
    bool isDispatching = false; // a command, perhaps a dialog, is at work
    CPersonInput input;
    int lastPress = 0;
    std::set<int> pressedPages; // revisions of the pages that the last press may have been meant for
    QTimer patience;            // for the awaited page, then for a sign of life
    bool isAskedForLife = false;
};
