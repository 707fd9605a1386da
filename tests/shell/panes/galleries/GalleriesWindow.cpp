#include "GalleriesWindow.h"

#include <QDrag>
#include <QGuiApplication>
#include <QImage>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <gtest/gtest.h>

#include "common/Exceptions.h"

CGalleriesWindow::CGalleriesWindow(QSize size)
{
    fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "<html><head></head></html>");
    fixture.WriteStyle(QStringLiteral("plain"));
    fixture.NewProject();
    desk =
        std::make_unique<CEditingDesk>(GetProject(), CEditingDesk::Listener{.changed = [this] { ++changes; },
                                                                            .edited =
                                                                                [](const Edited&) {
                                                                                }});
    view = std::make_unique<CViewGalleries>(CViewGalleries::Services{
        .addDropped =
            [this](const QStringList& paths, int32_t gallery) {
                droppedPaths = paths;
                droppedOn = gallery;
            },
        .tell = [this](const CExceptionBase& failure) { told = failure.GetDescription(); },
        .desk = *desk,
        .browser = {}});
    desk->AddView(*view);
    desk->AddView(listener);
    GetPage().SetShownCallback([this] { ++shownCount; });
    view->resize(size);
    view->move(0, 0);
    view->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(view.get()));
}

void CGalleriesWindow::Show(ViewUpdate::Cause cause)
{
    const int before = shownCount;
    view->UpdateView({.cause = cause}, GetProject());
    EXPECT_TRUE(WaitUntil([&] { return shownCount > before; }));
    EXPECT_TRUE(WaitForGallery(GetCurrent()));
}

bool CGalleriesWindow::WaitForGallery(int32_t current)
{
    return WaitForPage(
        GetPage(), QStringLiteral("(document.querySelector('a[aria-current] > img') || {}).id == 'gl_%1' && "
                                  "[...document.images].every(i => i.complete && !i.src.startsWith('data:'))")
                       .arg(current));
}

void CGalleriesWindow::PressButton(int32_t gallery, const QString& tip)
{
    const QString strips = QStringLiteral("[...document.querySelectorAll('#gl_%1_menu')]").arg(gallery);
    const QString lit =
        QStringLiteral("(%1.find(s => s.style.display == 'inline') || {alt: '-'}).alt").arg(strips);
    MoveMouse(GetPage(), QPoint(2, 2));
    MoveMouse(GetPage(), PlaceOf(QStringLiteral("img[id=\"gl_%1\"]").arg(gallery)));
    ASSERT_TRUE(WaitForPage(GetPage(), lit + QStringLiteral(" != '-'"))) << gallery;
    const QVariantList place =
        Ask(QStringLiteral("(r => [r.x + 24 * %1.findIndex(s => s.alt == '%2') - 12, r.y + 12])"
                           "(%1.find(s => s.style.display == 'inline').getBoundingClientRect())")
                .arg(strips, tip))
            .toList();
    ASSERT_EQ(place.size(), 2);
    const QPoint button = QPointF(place[0].toDouble(), place[1].toDouble()).toPoint();
    MoveMouse(GetPage(), button);
    ASSERT_TRUE(WaitForPage(GetPage(), lit + QStringLiteral(" == '%1'").arg(tip))) << qPrintable(tip);
    ClickMouse(GetPage(), button);
}

void CGalleriesWindow::ClickRight(QPoint place)
{
    QTest::mouseClick(view->windowHandle(), Qt::RightButton, Qt::NoModifier, place);
}

void CGalleriesWindow::PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(view->windowHandle(), key, modifiers);
}

void CGalleriesWindow::FocusCover(int32_t gallery)
{
    view->activateWindow();
    GetPage().setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(WaitUntil([&] {
        PressKey(Qt::Key_Tab);
        return Ask(QStringLiteral("document.activeElement.getAttribute('href')")).toString() ==
               QStringLiteral("gl_%1").arg(gallery);
    }));
}

QLineEdit* CGalleriesWindow::FindNameEditor()
{
    auto* const editor = view->findChild<QLineEdit*>(QStringLiteral("GalleryNameEditor"));
    return editor && editor->isVisible() ? editor : nullptr;
}

void CGalleriesWindow::Drag(const MouseDrag& drag)
{
    bool isAtWork = false;
    bool isOver = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, view.get(), [&] {
        if (!isAtWork && view->findChild<QDrag*>()) {
            isAtWork = true;
            drag.meanwhile();
            isOver = true;
        }
    });
    watch.start(2);
    QTest::mousePress(view->windowHandle(), Qt::LeftButton, Qt::NoModifier, drag.from);
    if (drag.start) {
        QTimer::singleShot(0, view.get(), drag.start);
    }
    for (int step = 1; step <= 5; ++step) {
        QTest::mouseMove(view->windowHandle(), drag.from + QPoint(3 * step, 0));
    }
    EXPECT_TRUE(WaitUntil([&] { return isOver && !view->findChild<QDrag*>(); }));
}

void CGalleriesWindow::DragTo(QPoint place)
{
    QTest::mouseMove(view->windowHandle(), place + QPoint(1, 0));
    QTest::mouseMove(view->windowHandle(), place);
}

void CGalleriesWindow::Drop(QPoint place, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseRelease(view->windowHandle(), Qt::LeftButton, modifiers, place);
}

void CGalleriesWindow::Undo()
{
    const int before = shownCount;
    GetDesk().GetHistory().GetStack().undo();
    EXPECT_TRUE(WaitUntil([&] { return shownCount > before; }));
    EXPECT_TRUE(WaitForGallery(GetCurrent()));
}

QString CGalleriesWindow::ChildrenOf(int32_t gallery)
{
    QStringList children;
    const CPictureList& entries = GetGallery(gallery).GetPictures();
    for (int32_t position = 0; position < entries.GetCount(); ++position) {
        if (const auto* child = dynamic_cast<const CGalleryPictureInfo*>(entries.GetAt(position))) {
            children += QString::number(child->GetGalleryIndex());
        }
    }
    return children.join(QLatin1Char(' '));
}

QImage CGalleriesWindow::Capture()
{
    // From the screen: a grab of the widget has no browser in it.
    return view->screen()->grabWindow(view->winId()).toImage().convertToFormat(QImage::Format_RGB32);
}
