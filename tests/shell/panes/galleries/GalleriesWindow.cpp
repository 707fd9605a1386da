#include "GalleriesWindow.h"

#include <QGuiApplication>
#include <QImage>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

#include "common/Exceptions.h"

CGalleriesWindow::CGalleriesWindow(QSize size)
{
    fixture.WriteLayout(QStringLiteral("a"), "<page file=\"index.html\" multipage=\"1\"/>");
    fixture.WritePage(QStringLiteral("a"), QStringLiteral("index.html"), "<html><head></head></html>");
    fixture.WriteStyle(QStringLiteral("plain"));
    fixture.NewProject();
    view = std::make_unique<CViewGalleries>(CViewGalleries::Services{
        .addDropped =
            [this](const QStringList& paths, int32_t gallery) {
                droppedPaths = paths;
                droppedOn = gallery;
            },
        .tell = [this](const CExceptionBase& failure) { told = failure.GetDescription(); },
        .notify =
            [this](ViewId, UpdateHint hint, const UpdateParameter& parameter) {
                notifications.push_back(hint);
                view->UpdateProject(hint, parameter, GetProject());
            },
        .browser = {}});
    view->AddConsumer(*view);
    view->AddConsumer(listener);
    GetPage().SetShownCallback([this] { ++shownCount; });
    view->resize(size);
    view->move(0, 0);
    view->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(view.get()));
}

void CGalleriesWindow::Show(UpdateHint hint)
{
    const int before = shownCount;
    view->UpdateView(hint, GetProject());
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

QImage CGalleriesWindow::Capture()
{
    // From the screen: a grab of the widget has no browser in it.
    return view->screen()->grabWindow(view->winId()).toImage().convertToFormat(QImage::Format_RGB32);
}
