#include "shell/web/PersonInput.h"

#include <QDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QTest>
#include <gtest/gtest.h>

#include "shell_support/ViewWindow.h"

using namespace std::chrono_literals;

namespace {

// What has been asked for by the time that a call in answer to a key has come: calls come in their order.
QStringList LinesBeforeAKey(CViewWindow& window)
{
    const QString end = QStringLiteral("DeleteImage end");
    window.CallByKey("external.DeleteImage('end')");
    EXPECT_TRUE(WaitUntil([&] { return window.recorder.lines.contains(end); }));
    window.recorder.lines.removeOne(end);
    return window.recorder.lines;
}

void MoveWithButton(QWidget& widget)
{
    QMouseEvent event(QEvent::MouseMove, QPointF(5, 5), QPointF(5, 5), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace

TEST(PersonInput, APressIsGoodForOneRequest)
{
    QWidget widget;
    CPersonInput input([](int) {});
    input.Watch(widget);
    EXPECT_FALSE(input.Take());
    const std::function<void()> presses[] = {
        [&] { QTest::mousePress(&widget, Qt::LeftButton); },
        [&] { QTest::keyPress(&widget, Qt::Key_Return); },
        [&] { QTest::keyClick(&widget, Qt::Key_A); },
    };
    for (const auto& press : presses) {
        press();
        EXPECT_TRUE(input.Take());
        EXPECT_FALSE(input.Take());
    }
    QTest::keyPress(&widget, Qt::Key_A);
    input.Forget();
    EXPECT_FALSE(input.Take());
}

// A quick hand presses again before the page has answered.
TEST(PersonInput, EachOfSeveralPressesIsGoodForOneRequest)
{
    QWidget window;
    QWidget widget(&window); // leaves to the window what it has no use for
    CPersonInput input([](int) {});
    input.Watch(window);
    for (int i = 0; i < 3; ++i) {
        QTest::mouseClick(&widget, Qt::LeftButton);
    }
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(input.Take());
    }
    EXPECT_FALSE(input.Take());
    QTest::mouseClick(&widget, Qt::LeftButton);
    QTest::mouseDClick(&widget, Qt::LeftButton); // the second of the two
    EXPECT_TRUE(input.Take());
    EXPECT_TRUE(input.Take());
    EXPECT_FALSE(input.Take());
}

TEST(PersonInput, WhatIsNoPressIsGoodForNothing)
{
    QWidget widget;
    CPersonInput input([](int) {});
    input.Watch(widget);
    for (const Qt::Key key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_Meta, Qt::Key_AltGr}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
        EXPECT_FALSE(input.Take());
    }
    QTest::mouseMove(&widget);
    MoveWithButton(widget);
    QTest::mouseRelease(&widget, Qt::LeftButton);
    QTest::keyRelease(&widget, Qt::Key_A);
    EXPECT_FALSE(input.Take());
}

TEST(PersonInput, WidgetsThatComeLaterAreWatchedAsWell)
{
    QWidget widget;
    auto* const early = new QWidget(&widget);
    CPersonInput input([](int) {});
    input.Watch(widget);
    auto* const late = new QWidget(early);
    QTest::mousePress(late, Qt::LeftButton);
    EXPECT_TRUE(input.Take());
}

// The time counts from when the page has got the press.
TEST(PersonInput, APressIsGoodForALimitedTime)
{
    QWidget widget;
    int pressed = 0;
    CPersonInput input([&](int press) { pressed = press; }, 0ms);
    input.Watch(widget);
    QTest::mousePress(&widget, Qt::LeftButton);
    input.Arrived(pressed - 1);
    EXPECT_TRUE(input.Take());
    QTest::mousePress(&widget, Qt::LeftButton);
    input.Arrived(pressed);
    EXPECT_FALSE(input.Take());
}

TEST(PersonInput, AButtonThatIsHeldMayMoveOrBeLetGoLate)
{
    QWidget widget;
    int pressed = 0;
    CPersonInput input([&](int press) { pressed = press; }, 0ms);
    input.Watch(widget);
    const std::function<void()> later[] = {[&] { MoveWithButton(widget); },
                                           [&] {
                                               QTest::mouseRelease(&widget, Qt::LeftButton);
                                           }};
    for (const auto& act : later) {
        QTest::mousePress(&widget, Qt::LeftButton);
        input.Arrived(pressed);
        act();
        EXPECT_TRUE(input.Take());
        // It was one press.
        act();
        EXPECT_FALSE(input.Take());
    }
}

TEST(PersonInput, APageAsksForNothingByItself)
{
    const char* const pages[] = {
        "<body onload=\"external.DeleteImage('a'); done = true\">",
        "<script>external.DeleteImage('a'); done = true</script>",
        "<script>setTimeout(function () { external.DeleteImage('a'); done = true; }, 0)</script>",
        "<button id=b onclick=\"external.DeleteImage('a'); done = true\">b</button>"
        "<script>onload = function () { b.click(); }</script>",
        "<button id=b onmousedown=\"external.DeleteImage('a'); done = true\">b</button><script>"
        "onload = function () { b.dispatchEvent(new MouseEvent('mousedown')); }</script>",
        "<script>onkeydown = function () { external.DeleteImage('a'); done = true; };"
        "onload = function () { dispatchEvent(new KeyboardEvent('keydown', {key: 'Enter'})); }</script>",
        "<input autofocus onfocus=\"external.DeleteImage('a')\"><script>onload = function () {"
        "document.querySelector('input').focus(); done = true; }</script>",
        "<script>top.viewShell.call(parseInt(location.pathname.split('/')[2]), 'DeleteImage', ['a']);"
        "done = true</script>",
        "<img src=x onerror=\"external.DeleteImage('a'); done = true\">",
        // Once: a browser may tell of one scroll twice, and the second time might come after the test's key.
        "<script>onscroll = function () { onscroll = null; external.DeleteImage('a'); done = true; };"
        "onload = function () { scrollTo(0, 9); }</script><p style=\"height:9999px\">",
    };
    CViewWindow window;
    for (const char* page : pages) {
        window.Show(std::string("<!DOCTYPE html><script>var done = false;</script>") + page);
        EXPECT_TRUE(WaitForPage(window.GetView(), QStringLiteral("done"))) << page;
        EXPECT_EQ(LinesBeforeAKey(window), QStringList()) << page;
        window.recorder.lines.clear();
    }
}

TEST(PersonInput, APageFollowsNoLinkByItself)
{
    const char* const scripts[] = {
        "location.href = 'b.html'",
        "document.location = 'b.html'",
        "location.replace('b.html')",
        "l.click()",
        "l.dispatchEvent(new MouseEvent('click', {bubbles: true}))",
        "f.submit()",
        "window.open('b.html', '_self')",
        "window.open('b.html')",
        "top.location.href = 'vistorama-view://view1/~page/1/~1/b.html'",
        "history.back()",
    };
    CViewWindow window;
    for (const char* script : scripts) {
        window.Show("<a id=l href=\"b.html\">b</a><form id=f action=\"b.html\"></form>");
        window.Ask(QString::fromLatin1(script));
        // The browser asks for the leave to go there before the page goes on.
        EXPECT_EQ(window.Ask(QStringLiteral("document.links.length")).toInt(), 1) << script;
        EXPECT_EQ(LinesBeforeAKey(window), QStringList()) << script;
        window.recorder.lines.clear();
    }
}

TEST(PersonInput, APressOnThePageBeforeIsNoneOnThisOne)
{
    CViewWindow window;
    window.Show("first");
    PressKey(window.GetView());
    window.Show("<script>external.DeleteImage('a')</script>");
    EXPECT_EQ(LinesBeforeAKey(window), QStringList());
}

TEST(PersonInput, BehindADialogOrAMenuAPageAsksForNothing)
{
    CViewWindow window;
    window.Show("<a id=l href=\"b.html\">b</a>");
    const auto tryBoth = [&] {
        CallByKey(window.GetView(), QStringLiteral("external.DeleteImage('a')"));
        CallByKey(window.GetView(), QStringLiteral("l.click()"));
        window.Ask(QStringLiteral("1"));
    };
    QDialog dialog(&window.GetView());
    dialog.open();
    tryBoth();
    dialog.close();
    EXPECT_EQ(LinesBeforeAKey(window), QStringList());
    QMenu menu(&window.GetView());
    menu.addAction(QStringLiteral("Entry"));
    menu.popup(QPoint(0, 0));
    tryBoth();
    menu.close();
    EXPECT_EQ(LinesBeforeAKey(window), QStringList());
}

// A person clicks, and the page's script takes the click for all that it wants.
TEST(PersonInput, AClickIsGoodForOneOfAllThatAPageAsksFor)
{
    CViewWindow window;
    window.Show(
        "<!DOCTYPE html><body style=\"margin:0;height:500px\" onmousedown=\"external.DeleteImage('down')\""
        " onmouseup=\"external.DeleteImage('up')\" onclick=\"external.DeleteImage('click'); clicked = 1\">");
    ClickMouse(window.GetView(), QPoint(50, 50));
    ASSERT_TRUE(WaitForPage(window.GetView(), QStringLiteral("'clicked' in window")));
    EXPECT_EQ(LinesBeforeAKey(window), QStringList({QStringLiteral("DeleteImage down")}));
}
