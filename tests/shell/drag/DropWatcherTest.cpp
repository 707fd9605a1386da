#include "shell/drag/DropWatcher.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

TEST(DropWatcher, OnlyLocalFilesCount)
{
    QMimeData data;
    data.setUrls({QUrl(QStringLiteral("https://example.org/a.png")),
                  QUrl::fromLocalFile(QStringLiteral("/b c.png")),
                  QUrl(QStringLiteral("data:image/png;base64,AAAA"))});
    EXPECT_EQ(DroppedPaths(data), QStringList{QStringLiteral("/b c.png")});
    QMimeData text;
    text.setText(QStringLiteral("/b c.png"));
    EXPECT_TRUE(DroppedPaths(text).isEmpty());
}

// The browser control makes its inner widget late, and that one would take the drop.
TEST(DropWatcher, ADropOnALaterInnerWidgetIsTaken)
{
    QWidget window;
    QStringList dropped;
    new CDropWatcher(window, {.filesDropped = [&](const QStringList& paths) {
                         dropped = paths;
                     }});
    auto* pane = new QWidget(&window);
    auto* inner = new QWidget(pane);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a.png"))});
    inner->setAcceptDrops(true);
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(inner, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(inner, &event);
    EXPECT_TRUE(event.isAccepted());
    EXPECT_TRUE(dropped.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dropped.isEmpty(); }));
    EXPECT_EQ(dropped, QStringList{QStringLiteral("/a.png")});
}

TEST(DropWatcher, AWidgetThatTakesDropsGetsThemItself)
{
    class CTaker final : public QWidget {
    public:
        using QWidget::QWidget;
        void dragEnterEvent(QDragEnterEvent* event) override { event->accept(); }
        void dropEvent(QDropEvent*) override { ++dropCount; }
        int dropCount = 0;
    };
    QWidget window;
    new CDropWatcher(window, {.filesDropped = [](const QStringList&) {
                         FAIL();
                     }});
    auto* taker = new CTaker(&window);
    taker->setProperty(TakesDropsProperty, true);
    taker->setAcceptDrops(true);
    auto* inner = new CTaker(taker); // as the browser's own widget does
    inner->setAcceptDrops(true);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a.png"))});
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(inner, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(inner, &event);
    QCoreApplication::processEvents();
    EXPECT_EQ(taker->dropCount, 1);
    EXPECT_EQ(inner->dropCount, 0);
}

TEST(DropWatcher, WhatIsNoFileIsLeftToTheWidget)
{
    QWidget window;
    new CDropWatcher(window, {.filesDropped = [](const QStringList&) {
                         FAIL();
                     }});
    QMimeData data;
    data.setText(QStringLiteral("some text"));
    QDragEnterEvent event(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(&window, &event);
    EXPECT_FALSE(event.isAccepted());
}

// Its place is one in the other instance's folder or gallery.
TEST(DropWatcher, APictureOfAnotherInstanceIsAFile)
{
    QWidget window;
    QStringList dropped;
    new CDropWatcher(window, {.picturesHovered = [](const PictureDrop&) { FAIL(); },
                              .picturesDropped = [](const PictureDrop&) { FAIL(); },
                              .filesDropped =
                                  [&](const QStringList& paths) {
                                      dropped = paths;
                                  }});
    QMimeData data;
    data.setData(QStringLiteral("application/x-vistorama-pictures"), "folder 2");
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a.png"))});
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &event);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dropped.isEmpty(); }));
    EXPECT_EQ(dropped, QStringList{QStringLiteral("/a.png")});
}

TEST(DropWatcher, WhatHasNoHandlerIsLeftToOthers)
{
    QWidget window;
    int leftCount = 0;
    new CDropWatcher(window, {.picturesHovered = [](const PictureDrop&) { FAIL(); },
                              .picturesLeft = [&] { ++leftCount; },
                              .picturesDropped =
                                  [](const PictureDrop&) {
                                      FAIL();
                                  }});
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a.png"))});
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&window, &enter);
    EXPECT_FALSE(enter.isAccepted());
    EXPECT_EQ(leftCount, 0);
}
