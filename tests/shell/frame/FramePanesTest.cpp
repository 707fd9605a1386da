#include "shell/frame/FramePanes.h"

#include <QLabel>
#include <QMainWindow>
#include <QTest>
#include <gtest/gtest.h>

#include "common/Settings.h"
#include "support/ScratchFolder.h"

namespace {

struct Frame {
    QMainWindow window;
    CFramePanes panes{
        window,
        {.pages = new QLabel(&window), .galleries = new QLabel(&window), .folder = new QLabel(&window)}};
};

} // namespace

TEST(WindowPlace, AFirstRunShowsTheWindowMaximised)
{
    const CScratchFolder scratch;
    const auto settings =
        CreateIniSettings(scratch.Path(QStringLiteral("u")), scratch.Path(QStringLiteral("m")));
    Frame frame;
    RestoreWindowPlace(frame.window, frame.panes, *settings);
    EXPECT_TRUE(frame.window.isVisible());
    EXPECT_TRUE(frame.window.isMaximized());
}

TEST(WindowPlace, TheWindowComesBackWhereItWas)
{
    const CScratchFolder scratch;
    const auto settings =
        CreateIniSettings(scratch.Path(QStringLiteral("u")), scratch.Path(QStringLiteral("m")));
    {
        Frame frame;
        frame.window.setGeometry(60, 70, 500, 400);
        frame.window.show();
        StoreWindowPlace(frame.window, frame.panes, *settings);
    }
    Frame frame;
    RestoreWindowPlace(frame.window, frame.panes, *settings);
    EXPECT_FALSE(frame.window.isMaximized());
    EXPECT_EQ(frame.window.size(), QSize(500, 400));
}

TEST(WindowPlace, AGeometryThatIsNoneCountsAsAFirstRun)
{
    const CScratchFolder scratch;
    const auto settings =
        CreateIniSettings(scratch.Path(QStringLiteral("u")), scratch.Path(QStringLiteral("m")));
    settings->Write(CSettingsStore::Scope::User, QStringLiteral("Corvane/Vistorama"),
                    QStringLiteral("WindowGeometry"), QStringLiteral("rubbish!"));
    Frame frame;
    RestoreWindowPlace(frame.window, frame.panes, *settings);
    EXPECT_TRUE(frame.window.isMaximized());
}
