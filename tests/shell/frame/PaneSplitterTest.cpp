#include "shell/frame/PaneSplitter.h"

#include <QLineEdit>
#include <QMainWindow>
#include <QStatusBar>
#include <QTest>
#include <gtest/gtest.h>

#include "shell/frame/FramePanes.h"

namespace {

struct Frame {
    QMainWindow window;
    QLineEdit* pages = new QLineEdit(&window);
    QLineEdit* galleries = new QLineEdit(&window);
    QLineEdit* folder = new QLineEdit(&window);
    CFramePanes panes{window, {.pages = pages, .galleries = galleries, .folder = folder}};

    explicit Frame(QSize size = QSize(1200, 800))
    {
        for (QWidget* pane : {pages, galleries, folder}) {
            pane->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        }
        Resize(size);
    }

    void Resize(QSize size)
    {
        window.resize(size);
        window.show();
        QCoreApplication::processEvents();
    }

    void MoveBar(QSplitter& splitter, int position)
    {
        QMetaObject::invokeMethod(&splitter, "splitterMoved", Q_ARG(int, position), Q_ARG(int, 1));
    }
};

} // namespace

TEST(Panes, TheBarsStandAtThreeQuartersAndAboveASquare)
{
    for (const QSize size : {QSize(1024, 600), QSize(1440, 900), QSize(1920, 1080), QSize(1001, 777)}) {
        Frame frame(size);
        const int width = size.width();
        const int right = width - width * 75 / 100;
        const int bar = frame.panes.GetMainBar().handleWidth();
        EXPECT_EQ(frame.panes.GetMainBar().GetBarPosition(), width * 75 / 100) << width;
        EXPECT_EQ(frame.panes.GetSideBar().GetBarPosition(), size.height() - right) << width;
        EXPECT_EQ(frame.folder->size(), QSize(right - bar, right - bar)) << width;
    }
}

TEST(Panes, TheMainBarKeepsItsShare)
{
    Frame frame(QSize(1000, 800));
    frame.panes.GetMainBar().setSizes({600, 396});
    frame.MoveBar(frame.panes.GetMainBar(), 600);
    frame.Resize(QSize(500, 800));
    EXPECT_NEAR(frame.panes.GetMainBar().GetBarPosition(), 300, 3);
    frame.Resize(QSize(2000, 800));
    EXPECT_NEAR(frame.panes.GetMainBar().GetBarPosition(), 1200, 8);
}

TEST(Panes, TheSecondaryBarKeepsItsDistanceFromTheTop)
{
    Frame frame(QSize(1000, 800));
    frame.panes.GetSideBar().setSizes({300, 496});
    frame.MoveBar(frame.panes.GetSideBar(), 300);
    frame.Resize(QSize(1400, 1000));
    EXPECT_EQ(frame.panes.GetSideBar().GetBarPosition(), 300);
}

TEST(Panes, ATallNarrowWindowKeepsAllPanes)
{
    for (const QSize size : {QSize(400, 1200), QSize(1600, 200), QSize(200, 200)}) {
        Frame frame(size);
        EXPECT_GT(frame.pages->width(), 30);
        EXPECT_GT(frame.galleries->height(), 40);
        EXPECT_GT(frame.folder->height(), 40);
    }
}

TEST(Panes, TheBarsComeBackWhereTheyWereMoved)
{
    QString saved;
    {
        Frame frame(QSize(1000, 800));
        EXPECT_EQ(frame.panes.SaveBars(), QString());
        frame.panes.GetMainBar().setSizes({600, 396});
        frame.MoveBar(frame.panes.GetMainBar(), 600);
        saved = frame.panes.SaveBars();
    }
    Frame frame(QSize(1000, 800));
    frame.panes.RestoreBars(saved);
    EXPECT_NEAR(frame.panes.GetMainBar().GetBarPosition(), 600, 4);
    EXPECT_FALSE(frame.panes.GetSideBar().WasMovedByHand());
}

TEST(Panes, TextThatIsNoPlaceChangesNothing)
{
    for (const char* text : {"", "x y", "0 0", "-1 -5", "2.5", "1e400 99999999999", "nan 3.5"}) {
        Frame frame(QSize(1000, 800));
        frame.panes.RestoreBars(QString::fromLatin1(text));
        EXPECT_EQ(frame.panes.GetMainBar().GetBarPosition(), 750) << text;
        EXPECT_EQ(frame.panes.GetSideBar().GetBarPosition(), 550) << text;
    }
}

TEST(Panes, TheKeyboardGoesRoundThePanes)
{
    Frame frame;
    frame.window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&frame.window));
    frame.pages->setFocus();
    frame.panes.FocusNext();
    EXPECT_TRUE(frame.galleries->hasFocus());
    frame.panes.FocusNext();
    EXPECT_TRUE(frame.folder->hasFocus());
    frame.panes.FocusNext();
    EXPECT_TRUE(frame.pages->hasFocus());
    frame.panes.FocusPrevious();
    EXPECT_TRUE(frame.folder->hasFocus());
}
