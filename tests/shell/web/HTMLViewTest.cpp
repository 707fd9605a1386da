#include "shell/web/HTMLView.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QUdpSocket>
#include <QWebEngineView>
#include <gtest/gtest.h>

#include "common/FileSystem.h"
#include "common/Settings.h"
#include "imaging/Image.h"
#include "resources/StringTable.h"
#include "shell_support/ViewWindow.h"
#include "support/ScratchFolder.h"

namespace {

QString WritePicture(const QString& path, QSize size = QSize(40, 30))
{
    QDir().mkpath(ExtractFolder(path));
    CImage::FromRgba(size, QByteArray(size.width() * size.height() * 4, '\x80'))
        .Save(path, {.format = ImageEncoding::Format::Png, .quality = 100});
    return path;
}

// Hears of every datagram and every connection to a port of this machine.
class CLoopbackListener {
public:
    CLoopbackListener()
    {
        // One number for both.
        EXPECT_TRUE(WaitUntil([this] {
            datagrams.close();
            return datagrams.bind(QHostAddress::LocalHost) &&
                   connections.listen(QHostAddress::LocalHost, datagrams.localPort());
        }));
    }
    quint16 GetPort() const { return connections.serverPort(); }
    QString GetNews() const
    {
        return QStringLiteral("%1%2").arg(
            datagrams.hasPendingDatagrams() ? QStringLiteral("a datagram") : QString(),
            connections.hasPendingConnections() ? QStringLiteral("a connection") : QString());
    }

private:
    QUdpSocket datagrams;
    QTcpServer connections;
};

std::string PictureElement(const QString& path)
{
    return "<img id=\"p\" src=\"" + AddressOfFile(path).toStdString() + "\">";
}

std::string TallPage(const char* text)
{
    return std::string("<!DOCTYPE html><body style=\"margin:0\"><div style=\"height:5000px\">") + text +
           "</div></body>";
}

void ClickOn(CViewWindow& window, const char* selector)
{
    ClickMouse(window.GetView(), RectOf(window.GetView(), QString::fromLatin1(selector)).center().toPoint());
}

} // namespace

TEST(HTMLView, ShowsAPageFromMemory)
{
    CViewWindow window;
    window.Show("<html><body>Gr\xc3\xbc\xc3\x9f"
                "e</body></html>");
    EXPECT_EQ(window.Ask(QStringLiteral("document.body.textContent")).toString(),
              QString::fromUtf8("Gr\xc3\xbc\xc3\x9f"
                                "e"));
    window.Show("second");
    EXPECT_EQ(window.Ask(QStringLiteral("document.body.textContent")).toString(), QStringLiteral("second"));
    window.Show("");
    EXPECT_EQ(window.Ask(QStringLiteral("document.body.textContent")).toString(), QString());
}

TEST(HTMLView, OfManyPagesInARowTheLastOneIsShown)
{
    CViewWindow window;
    for (int i = 0; i < 50; ++i) {
        window.GetView().LoadHtml("page " + std::to_string(i));
    }
    EXPECT_TRUE(WaitForPage(window.GetView(), QStringLiteral("document.body.textContent == 'page 49'")));
}

TEST(HTMLView, TheScrollPlaceIsKeptOrLeft)
{
    CViewWindow window;
    window.Show(TallPage("a"));
    window.Ask(QStringLiteral("window.scrollTo(0, 1234)"));
    ASSERT_TRUE(WaitForPage(window.GetView(), QStringLiteral("scrollY == 1234")));
    window.Show(TallPage("b"), CHTMLView::ScrollPlace::Keep);
    EXPECT_EQ(window.Ask(QStringLiteral("scrollY")).toInt(), 1234);
    window.Show(TallPage("c"), CHTMLView::ScrollPlace::Top);
    EXPECT_EQ(window.Ask(QStringLiteral("scrollY")).toInt(), 0);
}

TEST(HTMLView, AScrolledPartOfAPageKeepsItsPlaceToo)
{
    const std::string page = "<!DOCTYPE html><style>html{scroll-behavior:smooth}</style><p>x</p><div "
                             "id=\"inner\" style=\"height:100px;overflow:auto;scroll-behavior:smooth\">"
                             "<p style=\"height:3000px\">y</p></div>";
    CViewWindow window;
    window.Show(page);
    window.Ask(QStringLiteral("document.getElementById('inner').scrollTo({top: 700, behavior: 'instant'})"));
    window.Show(page, CHTMLView::ScrollPlace::Keep);
    EXPECT_EQ(window.Ask(QStringLiteral("document.getElementById('inner').scrollTop")).toInt(), 700);
}

TEST(HTMLView, TheOldPageStaysUntilTheNewOneHasItsPictures)
{
    const CScratchFolder scratch;
    const QString picture = WritePicture(scratch.Path(QStringLiteral("a.png")), QSize(1500, 1500));
    CViewWindow window;
    window.GetView().SetShownFolders({scratch.Path()});
    window.Show("old");
    // Whenever a page is there, its picture is.
    window.Show("<script>top.seen = [];</script>" + PictureElement(picture));
    EXPECT_TRUE(
        window.Ask(QStringLiteral("document.images[0].complete && document.images[0].naturalWidth == 1500"))
            .toBool());
    EXPECT_EQ(window.Ask(QStringLiteral("getComputedStyle(frameElement).visibility")).toString(),
              QStringLiteral("visible"));
    EXPECT_EQ(window.Ask(QStringLiteral("top.frames.length")).toInt(), 1);
    // And until then the old one is: asked in the middle of the change.
    window.GetView().LoadHtml(
        "<script>top.during = Array.from(top.document.querySelectorAll('iframe')).map("
        "function (f) { return top.getComputedStyle(f).visibility; }).join();</script>");
    EXPECT_EQ(window.Ask(QStringLiteral("top.during")).toString(), QStringLiteral("visible,hidden"));
}

TEST(HTMLView, APictureThatIsMissingOrBrokenDoesNotHoldUpThePage)
{
    const CScratchFolder scratch;
    scratch.Write(QStringLiteral("broken.png"), "no picture");
    CViewWindow window;
    window.GetView().SetShownFolders({scratch.Path()});
    window.Show(PictureElement(scratch.Path(QStringLiteral("missing.png"))) +
                PictureElement(scratch.Path(QStringLiteral("broken.png"))) + "<img src=\"\">end");
    EXPECT_EQ(window.Ask(QStringLiteral("document.images[1].naturalWidth")).toInt(), 0);
}

TEST(HTMLView, PicturesWithOddNamesAreShown)
{
    const CScratchFolder scratch;
    const char* const names[] = {"with blank.png",
                                 "\xc3\xa4\xc3\xb6\xc3\xbc.png",
                                 "a#b.png",
                                 "50%.png",
                                 "50%20off.png",
                                 "what?.png",
                                 "a&copy;b.png",
                                 "it's.png",
                                 "say \"hi\".png",
                                 "a+b=c;d.png",
                                 "<b>.png",
                                 "back\\slash.png",
                                 "\xf0\x9f\x8c\x84.png"};
    for (const char* name : names) {
        // Once as a file's name and once as its folder's.
        for (const QString& part :
             {QString::fromUtf8(name), QString::fromUtf8(name) + QStringLiteral(".d/x.png")}) {
            const QString picture = WritePicture(scratch.Path(part));
            CViewWindow window;
            window.GetView().SetShownFolders({scratch.Path()});
            window.Show("<html><body>" + PictureElement(picture));
            EXPECT_EQ(window.Ask(QStringLiteral("document.images[0].naturalWidth")).toInt(), 40) << name;
        }
    }
}

TEST(HTMLView, OnlyFilesOfTheShownFoldersAreShown)
{
    const CScratchFolder scratch;
    WritePicture(scratch.Path(QStringLiteral("shown/a.png")));
    WritePicture(scratch.Path(QStringLiteral("other/a.png")));
    WritePicture(scratch.Path(QStringLiteral("shown2/a.png")));
    QFile::link(scratch.Path(QStringLiteral("other/a.png")), scratch.Path(QStringLiteral("shown/link.png")));
    const struct {
        const char* path;
        int width;
    } rows[] = {
        {"shown/a.png", 40},         {"other/a.png", 0},    {"shown2/a.png", 0},
        {"shown/../other/a.png", 0}, {"shown/link.png", 0}, {"shown/%2e%2e/other/a.png", 0},
        {"shown/missing.png", 0},    {"shown", 0},
    };
    CViewWindow window;
    window.GetView().SetShownFolders(
        {scratch.Path(QStringLiteral("shown")), scratch.Path(QStringLiteral("none"))});
    for (const auto& row : rows) {
        window.Show("<img src=\"" + scratch.Path(QString::fromLatin1(row.path)).toStdString() + "\">");
        EXPECT_EQ(window.Ask(QStringLiteral("document.images[0].naturalWidth")).toInt(), row.width)
            << row.path;
    }
}

TEST(HTMLView, AFileThatHasChangedIsShownAnew)
{
    const CScratchFolder scratch;
    const QString picture = WritePicture(scratch.Path(QStringLiteral("a.png")), QSize(40, 30));
    CViewWindow window;
    window.GetView().SetShownFolders({scratch.Path()});
    window.Show(PictureElement(picture));
    WritePicture(picture, QSize(50, 30));
    window.Show(PictureElement(picture), CHTMLView::ScrollPlace::Keep);
    EXPECT_EQ(window.Ask(QStringLiteral("document.images[0].naturalWidth")).toInt(), 50);
}

TEST(HTMLView, NothingIsAskedOfAnyNetwork)
{
    const char* const addresses[] = {"http://127.0.0.1:9/a.png", "https://example.org/a.png",
                                     "file:///etc/hostname",     "ftp://127.0.0.1/a.png",
                                     "//example.org/a.png",      "qrc:/qtwebchannel/a"};
    CViewWindow window;
    for (const char* address : addresses) {
        window.Show(
            std::string("<script>fetch('") + address +
            "').then(function () { document.title = 'came'; }, function () { document.title = 'failed'; });"
            "</script><img src=\"" +
            address + "\">");
        EXPECT_TRUE(WaitForPage(window.GetView(), QStringLiteral("document.title != ''")));
        EXPECT_EQ(window.Ask(QStringLiteral("document.title")).toString(), QStringLiteral("failed"))
            << address;
    }
}

// Not even by what goes past the requests of the page itself: pings, sockets, connections made in advance.
TEST(HTMLView, NoConnectionIsEverMade)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    int connections = 0;
    QObject::connect(&server, &QTcpServer::newConnection, [&] { ++connections; });
    const std::string numbered = "127.0.0.1:" + std::to_string(server.serverPort());
    const std::string named = "localhost:" + std::to_string(server.serverPort());
    CViewWindow window;
    for (const std::string& host : {numbered, named, std::string("example.invalid")}) {
        const std::string address = "http://" + host + "/";
        window.Show("<head><link rel=preconnect href=\"" + address + "\"><link rel=dns-prefetch href=\"" +
                    address + "\"><link rel=prefetch href=\"" + address + "a\"><link rel=stylesheet href=\"" +
                    address + "a.css\"><script src=\"" + address + "a.js\"></script></head><iframe src=\"" +
                    address + "\"></iframe><img onerror=\"document.title = 'failed'\" src=\"" + address +
                    "a.png\"><script>navigator.sendBeacon('" + address +
                    "');</script><script>var socket = new WebSocket('ws://" + host +
                    "/'); socket.onerror = function () { window.isClosed = true; };</script>");
        EXPECT_TRUE(WaitForPage(window.GetView(), QStringLiteral("document.title == 'failed'"))) << host;
        if (host != numbered) {
            EXPECT_TRUE(WaitForPage(window.GetView(), QStringLiteral("window.isClosed"))) << host;
        }
    }
    EXPECT_EQ(connections, 0);
}

// Real-time connections go past the requests of a page: by datagrams to a server that tells the address, by
// connections to one that relays, and by names that are called out in the local network.
TEST(HTMLView, NoPacketIsEverSent)
{
    const CLoopbackListener listener;
    CViewWindow window;
    const std::string place = "127.0.0.1:" + std::to_string(listener.GetPort());
    const std::string gather =
        "function gather(w) { var c = new w.RTCPeerConnection({iceServers: [{urls: 'stun:" + place +
        "'}, {urls: ['turn:" + place + "?transport=udp', 'turn:" + place +
        "?transport=tcp', 'turns:" + place +
        "?transport=tcp'], username: 'a', credential: 'b'}]}); var found = 0;"
        "c.onicecandidate = function (e) { if (e.candidate && e.candidate.candidate) { ++found; } };"
        "c.onicegatheringstatechange = function () {"
        "if (c.iceGatheringState == 'complete') { document.title = 'found ' + found; } };"
        "c.createDataChannel('a'); c.createOffer().then(function (o) { c.setLocalDescription(o); }); }";
    // In the page itself, and in a frame that the page makes, which has everything anew.
    for (const char* where :
         {"window", "document.body.appendChild(document.createElement('iframe')).contentWindow"}) {
        window.Show("<!DOCTYPE html><body><script>" + gather + "gather(" + where + ");</script>");
        EXPECT_TRUE(WaitForPage(window.GetView(), QStringLiteral("document.title != ''"))) << where;
        EXPECT_EQ(window.Ask(QStringLiteral("document.title")).toString(), QStringLiteral("found 0"))
            << where;
    }
    EXPECT_EQ(listener.GetNews(), QString());
}

TEST(HTMLView, NoRoadOfAScriptLeadsToANetwork)
{
    const CLoopbackListener listener;
    CViewWindow window;
    const std::string place = "127.0.0.1:" + std::to_string(listener.GetPort()) + "/";
    // Each calls end() when it has failed.
    const std::string roads[] = {
        "new WebTransport('https://" + place + "').closed.then(end, end)",
        "new EventSource('http://" + place + "').onerror = end",
        "fetch('https://" + place + "', {mode: 'no-cors', keepalive: true}).then(end, end)",
        "new Worker(URL.createObjectURL(new Blob([\"fetch('http://" + place +
            "').catch(function () { postMessage(1); })\"]))).onmessage = end",
        "var x = new XMLHttpRequest(); x.onerror = end; x.open('GET', 'http://" + place + "'); x.send()",
        "import('http://" + place + "a.js').catch(end)",
        "new FontFace('a', 'url(http://" + place + "a.woff)').load().catch(end)",
        "var l = document.createElement('link'); l.rel = 'prefetch'; l.as = 'image'; l.onerror = end;"
        "l.href = 'http://" +
            place + "a.png'; document.head.appendChild(l)",
    };
    for (const std::string& road : roads) {
        window.Show("<!DOCTYPE html><script>function end() { document.title = 'failed'; } try { " + road +
                    " } catch (e) { end(); }</script>");
        EXPECT_TRUE(WaitForPage(window.GetView(), QStringLiteral("document.title == 'failed'"))) << road;
    }
    EXPECT_EQ(listener.GetNews(), QString());
}

TEST(HTMLView, TheProgramsArtworkIsServedByItsNumber)
{
    CViewWindow window;
    window.Show("<img src=\"res://vistorama/#2/#278\"><img src=\"res://other.exe/#2/#281\">"
                "<img src=\"res://vistorama/#2/#99999\"><img src=\"res://vistorama/\">");
    EXPECT_EQ(
        window.Ask(QStringLiteral("Array.from(document.images).map(i => i.naturalWidth).join()")).toString(),
        QStringLiteral("24,24,0,0"));
}

TEST(HTMLView, LinksAreGivenToTheLoaderAndThePageStays)
{
    const struct {
        const char* element;
        const char* expected;
    } rows[] = {
        {"<a id=l href=\"gallery1.htm#top\">x</a>", "LoadURL gallery1.htm"},
        {"<a id=l href=\"../3/index.html\">x</a>", "LoadURL ../3/index.html"},
        {"<a id=l href=\"\">x</a>", "LoadURL "},
        {"<a id=l href=\"http://example.org/\">x</a>", "LoadURL http://example.org/"},
        {"<a id=l target=\"_blank\" href=\"a.html\">x</a>", "LoadURL a.html"},
        {"<a id=l target=\"_top\" href=\"a.html\">x</a>", "LoadURL a.html"},
        {"<button id=l onclick=\"location.href='b.html'\">x</button>", "LoadURL b.html"},
        {"<form action=\"c.html\"><button id=l>x</button></form>", "LoadURL c.html?"},
    };
    CViewWindow window;
    for (const auto& row : rows) {
        window.Show(std::string("<body style=\"font-size:40px\">") + row.element);
        window.recorder.lines.clear();
        ClickOn(window, "#l");
        EXPECT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty(); })) << row.element;
        EXPECT_EQ(window.recorder.lines, QStringList({QString::fromLatin1(row.expected)})) << row.element;
        EXPECT_EQ(window.Ask(QStringLiteral("!!document.getElementById('l')")), QVariant(true))
            << row.element;
    }
}

TEST(HTMLView, AnAnchorOfThePageScrollsIt)
{
    CViewWindow window;
    window.Show("<!DOCTYPE html><a id=l href=\"#far\" style=\"font-size:40px\">x</a>"
                "<div style=\"height:3000px\"></div><p id=far style=\"height:2000px\">y</p>");
    ClickOn(window, "#l");
    EXPECT_TRUE(WaitForPage(window.GetView(), QStringLiteral("scrollY > 2500")));
    EXPECT_TRUE(window.recorder.lines.isEmpty());
}

TEST(HTMLView, APageThatWantsElsewhereByItselfIsNotFollowed)
{
    CViewWindow window;
    window.Show("<iframe src=\"c.html\"></iframe><p id=stays>stays</p>");
    EXPECT_EQ(window.Ask(QStringLiteral("document.getElementById('stays').textContent")).toString(),
              QStringLiteral("stays"));
    // The browser stops reading such a page; what counts is that the next one comes.
    window.Show("<script>location.href = 'b.html';</script>");
    window.Show("next");
    EXPECT_EQ(window.Ask(QStringLiteral("document.body.textContent")).toString(), QStringLiteral("next"));
    EXPECT_TRUE(window.recorder.lines.isEmpty()) << qPrintable(window.recorder.lines.join(QLatin1Char('|')));
}

TEST(HTMLView, ACallReachesItsMethodWithoutRegardToCase)
{
    const struct {
        const char* call;
        const char* expected;
    } rows[] = {
        {"window.external.moveimageup('x')", "MoveImageUp x"},
        {"external.DELETEIMAGE('\xc3\xa4')", "DeleteImage \xc3\xa4"},
        {"window.external['RotateImageLeft'](5)", "RotateImageLeft 5"},
        {"window.external.EditText('a.b','N','<b>\"t\"</b>',1,2,true)", "EditText a.b|N|<b>\"t\"</b>|1|2|1"},
        {"window.external.EditText('a.b','N',undefined,1,2,false)", "EditText a.b|N||1|2|0"},
        {"window.external.EditText('a.b','N','t',undefined,2,undefined)", "EditText a.b|N|t|0|2|0"},
        {"window.external.EditReference('N','a.h','a.t')", "EditReference N|a.h|a.t"},
    };
    CViewWindow window;
    window.Show("page");
    for (const auto& row : rows) {
        window.recorder.lines.clear();
        window.CallByKey(row.call);
        EXPECT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty(); })) << row.call;
        EXPECT_EQ(window.recorder.lines, QStringList({QString::fromUtf8(row.expected)}));
    }
}

TEST(HTMLView, AWrongCallCallsNothing)
{
    CViewWindow window;
    window.Show("page");
    for (const char* call :
         {"external.EditText('a.b','N','t',1,2)", "external.MoveImageUp()", "external.MoveImageUp('a','b')",
          "external.MoveImageUp(null)", "external.MoveImageUp({})", "external.MoveImageUp(document)",
          "external.MoveImageUp(Symbol.iterator)", "external.EditText('a.b','N','t','x',2,true)",
          "external.EditText('a.b','N','t','',2,true)", "external.EditText('a.b','N','t',1,2,null)",
          "external.MoveImageUp([])",
          "(function(){var loop = {}; loop.loop = loop; external.MoveImageUp(loop);})()"}) {
        window.CallByKey(call);
    }
    // In the page itself a name that is none is as on any object.
    EXPECT_EQ(window.Ask(QStringLiteral("typeof external.NoSuchMethod")).toString(),
              QStringLiteral("undefined"));
    EXPECT_EQ(
        window.Ask(QStringLiteral("(function(){try{external.NoSuchMethod('x')}catch(e){return e.name}})()"))
            .toString(),
        QStringLiteral("TypeError"));
    window.CallByKey("external.MoveImageUp = 1; external = 2; external.MoveImageUp('last')");
    EXPECT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty(); }));
    EXPECT_EQ(window.recorder.lines, QStringList({QStringLiteral("MoveImageUp last")}));
}

TEST(HTMLView, ACallReturnsBeforeAnythingHappens)
{
    CViewWindow window;
    window.Show("page");
    EXPECT_EQ(window.Ask(QStringLiteral("external.MoveImageUp('a') === undefined")), QVariant(true));
}

TEST(HTMLView, AFloodOfCallsIsOneForEachPress)
{
    CViewWindow window;
    window.Show("page");
    window.CallByKey("for (var i = 0; i < 10000; ++i) { external.RotateImageRight('p' + i); } 1");
    ASSERT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty(); }));
    // And the next one is heard, when the flood has gone by.
    EXPECT_TRUE(WaitUntil([&] {
        window.CallByKey("external.DeleteImage('after')");
        return window.recorder.lines.contains(QStringLiteral("DeleteImage after"));
    }));
    EXPECT_EQ(window.recorder.lines.first(), QStringLiteral("RotateImageRight p0"));
    EXPECT_EQ(window.recorder.lines.count(QStringLiteral("RotateImageRight p1")), 0);
}

TEST(HTMLView, CallsOfAPageThatIsBeingReplacedAreDropped)
{
    CViewWindow window;
    window.Show("page");
    window.recorder.onCall = [&] {
        window.GetView().LoadHtml("next");
        PressKey(window.GetView());
    };
    window.CallByKey("for (var i = 0; i < 20; ++i) { external.DeleteImage('photo1'); } 1");
    EXPECT_TRUE(WaitForPage(window.GetView(), QStringLiteral("document.body.textContent == 'next'")));
    EXPECT_EQ(window.recorder.lines, QStringList({QStringLiteral("DeleteImage photo1")}));
}

TEST(HTMLView, WhatIsToBeDoneInAPageThatNeverComesIsNotDoneInTheNextOne)
{
    CViewWindow window;
    window.Show("page");
    window.GetView().LoadHtml("overtaken");
    window.GetView().RunScript(QStringLiteral("document.title = 'done'"));
    bool isAnswered = false;
    window.GetView().RunScript(QStringLiteral("1"), [&](const QVariant&) { isAnswered = true; });
    window.Show("next");
    EXPECT_EQ(window.Ask(QStringLiteral("document.title")).toString(), QString());
    EXPECT_TRUE(isAnswered);
}

TEST(HTMLView, WhileACommandIsAtWorkNoOtherBegins)
{
    CViewWindow window;
    window.Show("page");
    int deepest = 0;
    int depth = 0;
    window.recorder.onCall = [&] {
        deepest = std::max(deepest, ++depth);
        // As an open dialog: events go on meanwhile.
        PressKey(window.GetView());
        window.Ask(QStringLiteral("1"));
        --depth;
    };
    window.CallByKey("for (var i = 0; i < 20; ++i) { external.EditText('a.b','N','t',1,2,true); } 1");
    EXPECT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty() && depth == 0; }));
    EXPECT_EQ(deepest, 1);
}

TEST(HTMLView, AlertsAndQuestionsOfAPageAreNotShown)
{
    CViewWindow window;
    window.Show("<script>alert('a'); document.title = '' + confirm('b') + prompt('c');</script>");
    EXPECT_EQ(window.Ask(QStringLiteral("document.title")).toString(), QStringLiteral("falsenull"));
}

TEST(HTMLView, AnEndlessScriptLeavesTheWindowAliveAndTheNextPageComes)
{
    CViewWindow window;
    window.Show("page");
    window.GetView().RunScript(QStringLiteral("while (true) {}"));
    // The program's own events go on.
    bool isAlive = false;
    QMetaObject::invokeMethod(
        &window.GetView(), [&] { isAlive = true; }, Qt::QueuedConnection);
    EXPECT_TRUE(WaitUntil([&] { return isAlive; }));
    window.Show("next");
    EXPECT_EQ(window.Ask(QStringLiteral("document.body.textContent")).toString(), QStringLiteral("next"));
}

TEST(HTMLView, APageThatNeverEndsIsReplacedByAnExplanation)
{
    CViewWindow window;
    window.Show("page");
    window.Show("<script>while (true) { external.MoveImageUp('x'); }</script>");
    EXPECT_EQ(window.Ask(QStringLiteral("document.body.textContent")).toString(),
              Text(StringId::PageDoesNotRespond));
    window.Show("next");
    EXPECT_EQ(window.Ask(QStringLiteral("document.body.textContent")).toString(), QStringLiteral("next"));
}

TEST(HTMLView, TheCodePageIsAnOption)
{
    const CScratchFolder scratch;
    const auto settings =
        CreateIniSettings(scratch.Path(QStringLiteral("user")), scratch.Path(QStringLiteral("machine")));
    const QString key = QStringLiteral("Corvane/Vistorama/InternetExplorer");
    const auto stored = [&] {
        return settings->Read(CSettingsStore::Scope::User, key + QStringLiteral("/International"),
                              QStringLiteral("Default_CodePage"));
    };
    const CHTMLView::Options options{.settings = settings.get(), .optionKeyPath = key};
    const std::string umlaut = "<p>\xc3\xa4</p>";
    {
        CViewWindow window(options);
        EXPECT_EQ(stored(), QStringLiteral("65001"));
        window.Show(umlaut);
        EXPECT_EQ(window.Ask(QStringLiteral("document.body.textContent.length")).toInt(), 1);
    }
    settings->Write(CSettingsStore::Scope::User, key + QStringLiteral("/International"),
                    QStringLiteral("Default_CodePage"), QStringLiteral("1252"));
    CViewWindow window(options);
    EXPECT_EQ(stored(), QStringLiteral("1252"));
    window.Show(umlaut);
    EXPECT_EQ(window.Ask(QStringLiteral("document.body.textContent.length")).toInt(), 2);
    // The layout's own word holds over it.
    window.Show("<meta charset=\"utf-8\">" + umlaut);
    EXPECT_EQ(window.Ask(QStringLiteral("document.body.textContent.length")).toInt(), 1);
}

TEST(HTMLView, NothingIsKeptOnTheDisk)
{
    const CScratchFolder scratch;
    const QString picture = WritePicture(scratch.Path(QStringLiteral("a.png")), QSize(300, 300));
    CViewWindow window;
    window.GetView().SetShownFolders({scratch.Path()});
    window.Show("<script>try { localStorage.a = 1; } catch (e) {} document.cookie = 'a=b';</script>" +
                PictureElement(picture));
    for (const auto place : {QStandardPaths::CacheLocation, QStandardPaths::AppDataLocation}) {
        const QString folder = QStandardPaths::writableLocation(place) + QStringLiteral("/QtWebEngine");
        EXPECT_TRUE(folder.contains(QStringLiteral("web_tests"))) << qPrintable(folder);
        EXPECT_FALSE(QDir(folder).exists());
    }
    EXPECT_EQ(window.Ask(QStringLiteral("document.cookie")).toString(), QString());
}

TEST(HTMLView, TheBrowsersOwnMenuIsAnOption)
{
    for (const bool isAllowed : {false, true}) {
        CHTMLView::Options options;
        options.allowContextMenu = isAllowed;
        CViewWindow window(options);
        const auto* const browser = window.GetView().findChild<QWebEngineView*>();
        ASSERT_NE(browser, nullptr);
        EXPECT_EQ(browser->contextMenuPolicy(), isAllowed ? Qt::DefaultContextMenu : Qt::NoContextMenu);
    }
}
