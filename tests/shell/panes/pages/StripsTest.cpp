#include <QDir>
#include <QProcess>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

#include "common/FileSystem.h"
#include "common/Platform.h"
#include "content/ContentGeneratorViews.h"
#include "document/galleries/Gallery.h"
#include "document/galleries/GalleryIterator.h"
#include "shell_support/ViewWindow.h"
#include "support/ProjectFixture.h"
#include "template/parser/CompoundTemplateSection.h"

// The strips of buttons in the pages of layouts of all kinds, with a real mouse.

namespace {

const QString shownStrips = QStringLiteral(
    "Array.from(document.querySelectorAll('img[id$=\"_menu\"]')).filter(s => s.style.display == 'inline')");

class Strips : public testing::Test {
protected:
    Strips()
    {
        fixture.WriteStyle(QStringLiteral("Blue"));
        fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
    }

    // A page of that body, its elements worked out, with two pictures of 300 by 200.
    void Show(const QByteArray& style, const QByteArray& body)
    {
        fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"),
                          "<!DOCTYPE html><html><head><style>body{margin:0}" + style +
                              "</style><%pageheader%></head><body>" + body + "</body></html>");
        fixture.NewProject();
        fixture.GetRoot().AddPicture(fixture.WritePicture(QStringLiteral("a.png"), QSize(300, 200)));
        fixture.GetRoot().AddPicture(
            fixture.WritePicture(QStringLiteral("b.png"), QSize(300, 200), 0x993333));
        CCompoundTemplateSection tree;
        fixture.GetRoot().GetLayout().GetTemplate()->LoadPage(QStringLiteral("index.html"), tree);
        CContentGeneratorPreview generator(FindTemporaryFolder());
        CGalleryIterator iterator;
        iterator.Init(fixture.GetRoot());
        iterator.Reset();
        tree.Bind(iterator, generator);
        iterator.SetPageIndex(0);
        window.GetView().SetShownFolders(
            {FindTemporaryFolder(), FindImageCacheFolder(), fixture.scratch.Path()});
        MoveMouse(window.GetView(), QPoint(799, 599));
        window.Show(tree.GenerateToString(iterator, generator));
    }

    QRectF Rect(const char* selector) { return RectOf(window.GetView(), QString::fromLatin1(selector)); }

    bool WaitForStrip(const char* id, int index)
    {
        // The index among the images of that id that is shown, alone.
        return WaitForPage(
            window.GetView(),
            QStringLiteral("(function(){var s = %1; return s.length == 1 && s[0].id == '%2_menu' && "
                           "Array.from(%2_menu).indexOf(s[0]) == %3;})()")
                .arg(shownStrips, QString::fromLatin1(id))
                .arg(index));
    }

    QRectF StripRect()
    {
        const QVariantList rect =
            window
                .Ask(
                    QStringLiteral("(r => [r.left, r.top, r.width, r.height])(%1[0].getBoundingClientRect())")
                        .arg(shownStrips))
                .toList();
        return rect.size() == 4
                   ? QRectF(rect[0].toDouble(), rect[1].toDouble(), rect[2].toDouble(), rect[3].toDouble())
                   : QRectF();
    }

    // Points at the picture, then at each button of its strip in turn, and clicks the last.
    void ExpectWorkingStrip(QPointF corner)
    {
        MoveMouse(window.GetView(), Rect("#photo1").center().toPoint());
        ASSERT_TRUE(WaitForStrip("photo1", 0));
        ASSERT_TRUE(WaitUntil([&] { return (StripRect().topLeft() - corner).manhattanLength() < 1.5; }))
            << StripRect().x() << ' ' << StripRect().y() << " instead of " << corner.x() << ' ' << corner.y();
        const QRectF strip = StripRect();
        EXPECT_NEAR(strip.width(), 120, 0.5);
        EXPECT_NEAR(strip.height(), 24, 0.5);
        for (int button = 1; button <= 5; ++button) {
            MoveMouse(window.GetView(), (strip.topLeft() + QPointF(24 * button - 12, 12)).toPoint());
            ASSERT_TRUE(WaitForStrip("photo1", button)) << button;
        }
        window.recorder.lines.clear();
        ClickMouse(window.GetView(), (strip.topLeft() + QPointF(24 * 4 - 12, 12)).toPoint());
        EXPECT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty(); }));
        EXPECT_EQ(window.recorder.lines, QStringList({QStringLiteral("RotateImageRight photo1")}));
    }

    CProjectFixture fixture;
    CViewWindow window;
};

const QByteArray picture = "<%picture id=\"photo1\" width=\"300\" height=\"200\" href=\"p.html\"%>";
const QByteArray second = "<%picture id=\"photo2\" width=\"300\" height=\"200\" href=\"p.html\"%>";

} // namespace

TEST_F(Strips, LieOverThePictureInEveryLayout)
{
    const struct {
        const char* name;
        QByteArray style;
        QByteArray body;
    } rows[] = {
        {"plain", "", picture},
        {"beside text", "", "<p>text</p><table><tr><td>left</td><td>" + picture + "</td></tr></table>"},
        {"grid of cards",
         ".g{display:grid;grid-template-columns:1fr "
         "1fr;gap:20px;padding:30px}.c{overflow:hidden;border-radius:12px}"
         ".c img{width:100%;height:250px;object-fit:cover;display:block}",
         "<div class=g><div class=c>" + picture + "</div><div class=c>" + second + "</div></div>"},
        {"mosaic", ".m{columns:2}.m>div{break-inside:avoid}img{max-width:100%;height:auto}",
         "<div class=m><div>" + picture + "</div><div>" + second + "</div></div>"},
        {"turned and scaled", ".t{transform:rotate(-4deg) scale(.8);margin:60px}",
         "<div class=t>" + picture + "</div>"},
        {"scaled card", ".t{transform:scale(.5)}", "<div class=t>" + picture + "</div>"},
        {"images of the layout's own size",
         "img{width:90% !important;height:300px;padding:5px;border:3px solid;"
         "margin:7px;opacity:.5;filter:blur(1px);transition:all 1s}",
         picture},
        {"flexible", ".f{display:flex;justify-content:center;align-items:center;height:500px}",
         "<div class=f>" + picture + "</div>"},
        {"covered by a caption",
         "figure{position:relative;margin:40px;width:300px}figcaption{position:absolute;inset:0;z-index:5;"
         "background:#0003}",
         "<figure>" + picture + "<figcaption></figcaption></figure>"},
        {"stage of a slide show",
         ".s{position:fixed;inset:0;display:grid;place-items:center;background:#000}.s img{max-height:90vh}",
         "<div class=s>" + picture + "</div>"},
        {"stacked",
         ".z{position:relative;z-index:1}.o{position:relative;z-index:9;height:40px;margin-bottom:-40px;"
         "pointer-events:none}",
         "<div class=o></div><div class=z>" + picture + "</div>"},
        {"raised under the mouse",
         ".r{transition:transform .2s;margin:40px}.r:hover{transform:translateY(-8px)}",
         "<div class=r>" + picture + "</div>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Show(row.style, row.body);
        MoveMouse(window.GetView(), Rect("#photo1").center().toPoint());
        // Transitions of the layout end first; they have begun when the page has noticed the mouse.
        ASSERT_TRUE(WaitForStrip("photo1", 0));
        ASSERT_TRUE(
            WaitForPage(window.GetView(),
                        QStringLiteral("document.getAnimations().every(a => a.playState == 'finished')")));
        ExpectWorkingStrip(Rect("#photo1").topLeft());
    }
}

TEST_F(Strips, LieOverWhatIsSeenOfAFittedPicture)
{
    Show("img#photo1{width:500px;height:200px;object-fit:contain}", picture);
    // 300 by 200 in the middle of 500 by 200.
    ExpectWorkingStrip(Rect("#photo1").topLeft() + QPointF(100, 0));
}

TEST_F(Strips, LieInsideAFrameThatCutsThePicture)
{
    Show(".w{overflow:hidden;width:200px;height:150px;margin:50px}.w a{display:block;margin:-30px 0 0 -40px}",
         "<div class=w>" + picture + "</div>");
    ExpectWorkingStrip(QPointF(50, 50));
}

TEST_F(Strips, StayInTheWindow)
{
    Show(".x{position:absolute;left:700px;top:10px}", "<div class=x>" + picture + "</div>");
    MoveMouse(window.GetView(), QPoint(720, 100));
    ASSERT_TRUE(WaitForStrip("photo1", 0));
    EXPECT_LE(StripRect().right(), 800);
    EXPECT_NEAR(StripRect().top(), Rect("#photo1").top(), 1);
}

TEST_F(Strips, FollowThePictureWhenThePageIsScrolled)
{
    Show("", "<div style=\"height:300px\"></div>" + picture + "<div style=\"height:2000px\"></div>");
    window.Ask(QStringLiteral("window.scrollTo(0, 260)"));
    MoveMouse(window.GetView(), QPoint(400, 100));
    ASSERT_TRUE(WaitForStrip("photo1", 0));
    EXPECT_NEAR(StripRect().top(), 40, 1);
    window.Ask(QStringLiteral("window.scrollTo(0, 280)"));
    EXPECT_TRUE(WaitUntil([&] { return std::abs(StripRect().top() - 20) < 1.5; }));
    window.Ask(QStringLiteral("window.scrollTo(0, 340)")); // its corner has left the window
    EXPECT_TRUE(WaitUntil([&] { return std::abs(StripRect().top()) < 1.5; }));
}

TEST_F(Strips, GoWhenTheMouseLeaves)
{
    Show("", picture + "<div id=free style=\"height:200px\"></div>");
    MoveMouse(window.GetView(), Rect("#photo1").center().toPoint());
    ASSERT_TRUE(WaitForStrip("photo1", 0));
    MoveMouse(window.GetView(), Rect("#free").center().toPoint());
    EXPECT_TRUE(WaitForPage(window.GetView(), shownStrips + QStringLiteral(".length == 0")));
    // From the strip as well.
    MoveMouse(window.GetView(), Rect("#photo1").center().toPoint());
    ASSERT_TRUE(WaitForStrip("photo1", 0));
    MoveMouse(window.GetView(), (StripRect().topLeft() + QPointF(12, 12)).toPoint());
    ASSERT_TRUE(WaitForStrip("photo1", 1));
    MoveMouse(window.GetView(), Rect("#free").center().toPoint());
    EXPECT_TRUE(WaitForPage(window.GetView(), shownStrips + QStringLiteral(".length == 0")));
}

TEST_F(Strips, DoNotFlickerBetweenThePictureAndItsButtons)
{
    Show("", picture);
    MoveMouse(window.GetView(), Rect("#photo1").center().toPoint());
    ASSERT_TRUE(WaitForStrip("photo1", 0));
    const QRectF strip = StripRect();
    window.Ask(
        QStringLiteral("(function(){ window.fewest = 9; new MutationObserver(function () { window.fewest = "
                       "Math.min(window.fewest, %1.length); }).observe(document, {attributes: true, subtree: "
                       "true}); })()")
            .arg(shownStrips));
    for (int round = 0; round < 3; ++round) {
        MoveMouse(window.GetView(), (strip.topLeft() + QPointF(60, 12)).toPoint());
        ASSERT_TRUE(WaitForStrip("photo1", 3));
        MoveMouse(window.GetView(), (strip.topLeft() + QPointF(60, 40)).toPoint());
        ASSERT_TRUE(WaitForStrip("photo1", 0)); // the light goes out, the strip stays
    }
    EXPECT_EQ(window.Ask(QStringLiteral("window.fewest")).toInt(), 1);
}

TEST_F(Strips, OfOnePictureGiveWayToThoseOfTheNext)
{
    Show("", picture + second);
    MoveMouse(window.GetView(), Rect("#photo1").center().toPoint());
    ASSERT_TRUE(WaitForStrip("photo1", 0));
    MoveMouse(window.GetView(), Rect("#photo2").center().toPoint());
    EXPECT_TRUE(WaitForStrip("photo2", 0));
}

TEST_F(Strips, OfATextEditThatText)
{
    Show("", "<h1><%textspan property=\"gallery.title\" default=\"Some <b>title</b>\" name=\"Title\"%></h1>"
             "<p><%textspan property=\"gallery.title\" default=\"again and again\" name=\"Again\" "
             "multiline=\"true\"%></p>");
    // One property twice: two groups share the id, and each is at its own place.
    for (const int span : {0, 1}) {
        const QString rect =
            QStringLiteral("(r => [r.left, r.top])(gallery_title[%1].getBoundingClientRect())").arg(span);
        const QVariantList corner = window.Ask(rect).toList();
        ASSERT_EQ(corner.size(), 2);
        const QPointF place(corner[0].toDouble(), corner[1].toDouble());
        MoveMouse(window.GetView(), (place + QPointF(30, 8)).toPoint());
        ASSERT_TRUE(WaitUntil([&] { return (StripRect().topLeft() - place).manhattanLength() < 1.5; }))
            << span;
        EXPECT_NEAR(StripRect().width(), 24, 0.5);
        window.recorder.lines.clear();
        MoveMouse(window.GetView(), (place + QPointF(12, 8)).toPoint());
        ASSERT_TRUE(WaitForStrip("gallery_title", span == 0 ? 1 : 3));
        ClickMouse(window.GetView(), (place + QPointF(12, 8)).toPoint());
        ASSERT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty(); }));
        EXPECT_TRUE(
            window.recorder.lines[0].startsWith(span == 0 ? QStringLiteral("EditText gallery.title|Title|")
                                                          : QStringLiteral("EditText gallery.title|Again|")))
            << qPrintable(window.recorder.lines[0]);
    }
}

TEST_F(Strips, OfATextInALinkDoNotFollowTheLink)
{
    Show("", "<a href=\"elsewhere.html\"><%textspan property=\"gallery.title\" default=\"A title\" "
             "name=\"Title\"%></a>");
    MoveMouse(window.GetView(), QPoint(40, 9));
    ASSERT_TRUE(WaitForStrip("gallery_title", 0));
    MoveMouse(window.GetView(), QPoint(10, 9));
    ASSERT_TRUE(WaitForStrip("gallery_title", 1));
    ClickMouse(window.GetView(), QPoint(10, 9));
    ASSERT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty(); }));
    window.CallByKey("external.MoveImageUp('end')");
    ASSERT_TRUE(WaitUntil([&] { return window.recorder.lines.contains(QStringLiteral("MoveImageUp end")); }));
    ASSERT_EQ(window.recorder.lines.size(), 2) << qPrintable(window.recorder.lines.join(QLatin1Char('\n')));
    EXPECT_TRUE(window.recorder.lines[0].startsWith(QStringLiteral("EditText gallery.title|Title|A title|")));
}

TEST_F(Strips, OfReferencesEditThem)
{
    Show("", "<%imgref id=\"logo\" name=\"Logo\" src=\"res://vistorama/#2/#278\" href_property=\"gallery.h\" "
             "default_href=\"a.html\" alt_property=\"gallery.a\" default_alt=\"x\"%><br><br><br>"
             "<%textref id=\"home\" name=\"Home\" href_property=\"gallery.h\" default_href=\"a.html\" "
             "text=\"gallery.t\" default_text=\"Go home now\"%>");
    const struct {
        const char* id;
        QString selector;
        const char* expected;
    } rows[] = {
        {"logo", QStringLiteral("a img"), "EditReference Logo|gallery.h|gallery.a"},
        {"home", QStringLiteral("a[onmouseenter]"), "EditReference Home|gallery.h|gallery.t"},
    };
    for (const auto& row : rows) {
        const QRectF rect = RectOf(window.GetView(), row.selector);
        window.recorder.lines.clear();
        MoveMouse(window.GetView(), rect.center().toPoint());
        ASSERT_TRUE(WaitForStrip(row.id, 0)) << row.id;
        const QPoint button = StripRect().center().toPoint();
        MoveMouse(window.GetView(), button);
        ASSERT_TRUE(WaitForStrip(row.id, 1)) << row.id;
        ClickMouse(window.GetView(), button);
        ASSERT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty(); }));
        EXPECT_EQ(window.recorder.lines, QStringList({QString::fromLatin1(row.expected)}));
    }
}

// A logo is a link as well: its middle stays free for a click, wherever it stands, and the strip touches it.
TEST_F(Strips, OfASmallPictureStandBesideIt)
{
    const struct {
        const char* place;
        QPointF strip; // from the logo's corner
    } rows[] = {
        {"left:300px;top:200px;width:40px;height:40px", {0, -23}},
        {"left:300px;top:200px;width:24px;height:24px", {0, -23}},
        {"left:300px;top:0;width:46px;height:46px", {45, 0}},
        {"left:776px;top:0;width:24px;height:24px", {0, 23}},
        {"left:300px;top:100px;width:60px;height:60px", {0, 0}}, // large enough
        {"left:300px;top:100px;width:200px;height:24px", {0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.place);
        Show(QByteArray("a img{position:absolute;") + row.place + "}",
             "<%imgref id=\"logo\" name=\"Logo\" src=\"res://vistorama/#2/#278\" "
             "href_property=\"gallery.h\" default_href=\"home.html\" alt_property=\"gallery.a\" "
             "default_alt=\"x\"%>");
        const QRectF logo = Rect("a img");
        MoveMouse(window.GetView(), logo.center().toPoint());
        ASSERT_TRUE(WaitForStrip("logo", 0));
        EXPECT_NEAR(StripRect().left(), logo.left() + row.strip.x(), 1);
        EXPECT_NEAR(StripRect().top(), logo.top() + row.strip.y(), 1);
        window.recorder.lines.clear();
        ClickMouse(window.GetView(), logo.center().toPoint());
        ASSERT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty(); }));
        EXPECT_EQ(window.recorder.lines, QStringList({QStringLiteral("LoadURL home.html")}));
        const QPoint button = StripRect().center().toPoint();
        MoveMouse(window.GetView(), button);
        ASSERT_TRUE(WaitForStrip("logo", 1));
    }
}

TEST_F(Strips, AreOpenedByKeyboard)
{
    Show("", picture + second);
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(window.GetView().window()->windowHandle(), key, modifiers);
    };
    window.GetView().activateWindow();
    window.GetView().setFocus(Qt::TabFocusReason);
    window.Ask(QStringLiteral("window.focus(), photo2.parentElement.focus()"));
    press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(WaitForStrip("photo2", 1));
    for (int button = 2; button <= 5; ++button) {
        press(Qt::Key_Right);
        ASSERT_TRUE(WaitForStrip("photo2", button));
    }
    press(Qt::Key_Right);
    ASSERT_TRUE(WaitForStrip("photo2", 1));
    press(Qt::Key_Left);
    ASSERT_TRUE(WaitForStrip("photo2", 5));
    window.recorder.lines.clear();
    press(Qt::Key_Return);
    ASSERT_TRUE(WaitUntil([&] { return !window.recorder.lines.isEmpty(); }));
    EXPECT_EQ(window.recorder.lines, QStringList({QStringLiteral("RotateImageLeft photo2")}));
    EXPECT_TRUE(WaitForPage(window.GetView(), shownStrips + QStringLiteral(".length == 0")));
    // Without an open strip the keys are the page's own.
    press(Qt::Key_Return);
    ASSERT_TRUE(WaitUntil([&] { return window.recorder.lines.size() > 1; }));
    EXPECT_EQ(window.recorder.lines.last(), QStringLiteral("LoadURL p.html"));
}

TEST_F(Strips, HaveTheirTipsAndSharpPictures)
{
    Show("", picture);
    EXPECT_EQ(window.Ask(QStringLiteral("Array.from(photo1_menu).map(s => s.title).join()")).toString(),
              QStringLiteral("Move up,Move down,Delete,Rotate clockwise,Rotate counter-clockwise")
                  .prepend(QLatin1Char(',')));
    // The collection is indexed, and its images have four times the pixels that they show.
    EXPECT_EQ(window.Ask(QStringLiteral("photo1_menu[5].naturalWidth")).toInt(), 480);
    EXPECT_EQ(window.Ask(QStringLiteral("photo1_menu.length")).toInt(), 6);
}

TEST_F(Strips, OfAMissingPictureCanStillTakeItOut)
{
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "");
    Show("", picture);
    // As if its file had gone: the next page shows none.
    for (const DirectoryEntry& file : ListDirectory(FindImageCacheFolder())) {
        QFile::remove(JoinPath(FindImageCacheFolder(), file.name));
    }
    window.Ask(QStringLiteral("photo1.src = '/missing.png'"));
    ASSERT_TRUE(WaitForPage(window.GetView(), QStringLiteral("photo1.className == 'preview-missing'")));
    MoveMouse(window.GetView(), Rect("#photo1").center().toPoint());
    ASSERT_TRUE(WaitForStrip("photo1", 0));
}

TEST_F(Strips, TheFunctionsOfTheScriptDoAsTold)
{
    Show("", picture);
    const struct {
        const char* expression;
        const char* expected;
    } rows[] = {
        {"imageSize", "24"},
        {"limitCoordinate(120, 120)", "119"},
        {"limitCoordinate(500, 120)", "119"},
        {"limitCoordinate(-3, 120)", "0"},
        {"limitCoordinate(0, 120)", "0"},
        {"limitCoordinate(119, 120)", "119"},
        {"limitCoordinate(0, 0)", "-1"},
        {"[-7, 0, 23, 24, 119, 120, 500].map(x => "
         "previewStrips.buttonAt(previewStrips.groupOf(photo1_menu), x)).join()",
         "1,1,1,2,5,5,5"},
        {"showObject(photo1), photo1.style.display", "inline"},
        {"isObjectVisible(photo1)", "true"},
        {"hideObject(photo1), photo1.style.display", "none"},
        {"isObjectVisible(photo1)", "false"},
        {"showMenu(photo1_menu), Array.from(photo1_menu).map(isObjectVisible).join()",
         "true,false,false,false,false,false"},
        {"hideMenu(photo1_menu), Array.from(photo1_menu).some(isObjectVisible)", "false"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(window.Ask(QString::fromLatin1(row.expression)).toString(),
                  QString::fromLatin1(row.expected))
            << row.expression;
    }
}

TEST_F(Strips, TheContextMenuAndDraggingAreRefused)
{
    Show("", picture);
    EXPECT_EQ(
        window.Ask(QStringLiteral("document.dispatchEvent(new Event('contextmenu', {cancelable: true}))")),
        QVariant(false));
    EXPECT_EQ(
        window.Ask(QStringLiteral("document.dispatchEvent(new Event('dragstart', {cancelable: true}))")),
        QVariant(false));
    EXPECT_EQ(window.Ask(QStringLiteral(
                  "document.dispatchEvent(new MouseEvent('mousedown', {button: 2, cancelable: true}))")),
              QVariant(false));
    EXPECT_EQ(window.Ask(QStringLiteral(
                  "document.dispatchEvent(new MouseEvent('mousedown', {button: 0, cancelable: true}))")),
              QVariant(true));
}
