#include "shell_support/ViewWindow.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <QWebEngineView>
#include <QWindow>
#include <gtest/gtest.h>

namespace {

constexpr int longTime = 30'000; // ms

QPoint InWindow(CHTMLView& view, QPoint place)
{
    return view.mapTo(view.window(), place);
}

} // namespace

bool WaitUntil(const std::function<bool()>& condition)
{
    // A running event loop, not a polling one: the browser takes many small steps in it.
    QEventLoop loop;
    QTimer check;
    bool holds = condition();
    QObject::connect(&check, &QTimer::timeout, &loop, [&] {
        holds = condition();
        if (holds) {
            loop.quit();
        }
    });
    if (!holds) {
        check.start(2);
        QTimer::singleShot(longTime, &loop, &QEventLoop::quit);
        // Inside a posted event the dispatcher takes those that follow it for handled, and the browser's may
        // be among them: without a wake-up they wait until the next one is posted.
        QAbstractEventDispatcher::instance()->wakeUp();
        loop.exec();
    }
    return holds;
}

QVariant Ask(CHTMLView& view, const QString& expression)
{
    // Shared: an answer may come when nobody waits any more.
    const auto answer = std::make_shared<std::optional<QVariant>>();
    view.RunScript(expression, [answer](const QVariant& value) { *answer = value; });
    EXPECT_TRUE(WaitUntil([&] { return answer->has_value(); })) << qPrintable(expression);
    return answer->value_or(QVariant());
}

bool WaitForPage(CHTMLView& view, const QString& condition)
{
    return WaitUntil([&] { return Ask(view, condition).toBool(); });
}

QRectF RectOf(CHTMLView& view, const QString& selector)
{
    const QVariantList rect =
        Ask(view, QStringLiteral("(function(r){return [r.left,r.top,r.width,r.height];})"
                                 "(document.querySelector('%1').getBoundingClientRect())")
                      .arg(selector))
            .toList();
    EXPECT_EQ(rect.size(), 4) << qPrintable(selector);
    return rect.size() == 4
               ? QRectF(rect[0].toDouble(), rect[1].toDouble(), rect[2].toDouble(), rect[3].toDouble())
               : QRectF();
}

void MoveMouse(CHTMLView& view, QPoint place)
{
    QTest::mouseMove(view.window()->windowHandle(), InWindow(view, place));
}

void ClickMouse(CHTMLView& view, QPoint place, Qt::KeyboardModifiers modifiers, Qt::MouseButton button)
{
    QTest::mouseClick(view.window()->windowHandle(), button, modifiers, InWindow(view, place));
}

void DoubleClickMouse(CHTMLView& view, QPoint place)
{
    QTest::mouseDClick(view.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier, InWindow(view, place));
}

void DragMouse(CHTMLView& view, QPoint from, QPoint to, Qt::KeyboardModifiers modifiers)
{
    constexpr int steps = 4;
    QWindow* const window = view.window()->windowHandle();
    QTest::mousePress(window, Qt::LeftButton, modifiers, InWindow(view, from));
    for (int i = 1; i <= steps; ++i) {
        QTest::mouseMove(window, InWindow(view, from + (to - from) * i / steps));
    }
    QTest::mouseRelease(window, Qt::LeftButton, modifiers, InWindow(view, to));
}

void PressKey(CHTMLView& view, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(view.findChild<QWebEngineView*>()->focusProxy(), key, modifiers);
}

void PressKey(CHTMLView& view)
{
    QTest::keyClick(view.findChild<QWebEngineView*>()->focusProxy(), Qt::Key_F13);
}

void CallByKey(CHTMLView& view, const QString& script)
{
    Ask(view, QStringLiteral("1")); // a key belongs to the page that it was pressed on
    PressKey(view);
    Ask(view, script);
}

void CCallRecorder::Note(const QString& line)
{
    lines += line;
    if (onCall) {
        onCall();
    }
}

void CCallRecorder::ChangeVisibility(const QString& element)
{
    Note(QStringLiteral("ChangeVisibility ") + element);
}

void CCallRecorder::RotateImageRight(const QString& id)
{
    Note(QStringLiteral("RotateImageRight ") + id);
}

void CCallRecorder::RotateImageLeft(const QString& id)
{
    Note(QStringLiteral("RotateImageLeft ") + id);
}

void CCallRecorder::MoveImageUp(const QString& id)
{
    Note(QStringLiteral("MoveImageUp ") + id);
}

void CCallRecorder::MoveImageDown(const QString& id)
{
    Note(QStringLiteral("MoveImageDown ") + id);
}

void CCallRecorder::DeleteImage(const QString& id)
{
    Note(QStringLiteral("DeleteImage ") + id);
}

void CCallRecorder::EditText(const TextToEdit& edited)
{
    Note(QStringLiteral("EditText %1|%2|%3|%4|%5|%6")
             .arg(edited.property, edited.name, edited.text)
             .arg(edited.x)
             .arg(edited.y)
             .arg(edited.multiline));
}

void CCallRecorder::EditReference(const QString& name, const QString& hrefProperty,
                                  const QString& textProperty)
{
    Note(QStringLiteral("EditReference %1|%2|%3").arg(name, hrefProperty, textProperty));
}

void CCallRecorder::DragImage(const QString& id, const QString& look)
{
    Note(QStringLiteral("DragImage %1 %2").arg(id, look));
}

void CCallRecorder::FindImage(const QString& id)
{
    Note(QStringLiteral("FindImage ") + id);
}

void CCallRecorder::Select(const QString& ids, const QString& way)
{
    Note(QStringLiteral("Select %1 %2").arg(QString(ids).replace(QLatin1Char('\n'), QLatin1Char('+')), way));
}

void CCallRecorder::OpenMenu(const QString& id, int32_t x, int32_t y)
{
    Note(QStringLiteral("OpenMenu %1|%2|%3").arg(id).arg(x).arg(y));
}

void CCallRecorder::LoadURL(const QString& url)
{
    Note(QStringLiteral("LoadURL ") + url);
}

CViewWindow::CViewWindow(const CHTMLView::Options& options, QSize size)
    : view(new CHTMLView(options, &window)), dispatch(recorder)
{
    auto* const arrangement = new QVBoxLayout(&window);
    arrangement->setContentsMargins(0, 0, 0, 0);
    arrangement->addWidget(view);
    view->SetExternalDispatch(&dispatch);
    view->SetLoader(&recorder);
    view->SetShownCallback([this] { ++shownCount; });
    window.resize(size);
    window.move(0, 0);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
}

void CViewWindow::Show(const std::string& page, CHTMLView::ScrollPlace place)
{
    const int before = shownCount;
    view->LoadHtml(page, place);
    EXPECT_TRUE(WaitUntil([&] { return shownCount > before; }));
}
