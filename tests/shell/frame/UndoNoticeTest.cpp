#include "shell/frame/UndoNotice.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

TEST(UndoNotice, StandsOverTheLowerEdgeAndTakesBack)
{
    QWidget window;
    window.resize(600, 400);
    int undone = 0;
    CUndoNotice notice(window, [&] { ++undone; });
    window.show();
    EXPECT_FALSE(notice.isVisible());
    notice.Tell(QStringLiteral("3 pictures were taken out of the gallery."));
    EXPECT_TRUE(notice.isVisible());
    EXPECT_EQ(notice.findChild<QLabel*>()->text(),
              QStringLiteral("3 pictures were taken out of the gallery."));
    EXPECT_EQ(notice.geometry().center().x(), 300 - 1 + notice.width() % 2);
    EXPECT_LT(notice.geometry().bottom(), 400);
    window.resize(800, 500);
    QCoreApplication::processEvents();
    EXPECT_GT(notice.y(), 400);
    EXPECT_EQ(notice.findChild<QPushButton*>()->focusPolicy(), Qt::NoFocus);
    notice.findChild<QPushButton*>()->click();
    EXPECT_EQ(undone, 1);
    EXPECT_FALSE(notice.isVisible());
}
