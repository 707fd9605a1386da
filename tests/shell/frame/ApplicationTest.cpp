#include "shell/frame/Application.h"

#include <csignal>
#include <stdexcept>

#include <QCloseEvent>
#include <QDialog>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

CApplication& Application()
{
    return *static_cast<CApplication*>(QCoreApplication::instance());
}

// What the message loop answers when that happens in it.
int RunLoop(const std::function<void()>& happening)
{
    QTimer::singleShot(0, &Application(), happening);
    return QApplication::exec();
}

} // namespace

// Each test runs in a process of its own: a failure stays with the application object.
TEST(Application, ALoopThatEndsInPeaceHasNoFailure)
{
    EXPECT_EQ(RunLoop([] { QCoreApplication::quit(); }), 0);
    EXPECT_EQ(Application().GetFailureText(), QString());
}

TEST(Application, AFailureThatNobodyHandlesEndsTheLoop)
{
    EXPECT_EQ(RunLoop([] {
                  throw CGenericException(QStringLiteral("It broke."), QStringLiteral("It was old."),
                                          QStringLiteral("Buy a new one."));
              }),
              1);
    EXPECT_EQ(Application().GetFailureText(),
              QStringLiteral("what:It broke.\nwhy:It was old.\ntodo:Buy a new one."));
}

TEST(Application, AFailureOfTheLibraryCountsLikeItsOwn)
{
    EXPECT_EQ(RunLoop([] { throw std::runtime_error("out of paper"); }), 1);
    EXPECT_TRUE(Application().GetFailureText().contains(QStringLiteral("\nwhy:out of paper\ntodo:")))
        << qPrintable(Application().GetFailureText());
}

TEST(Application, TheFirstFailureIsTheOneThatIsTold)
{
    QTimer::singleShot(0, &Application(), [] { throw std::runtime_error("first"); });
    RunLoop([] { throw std::runtime_error("second"); });
    EXPECT_TRUE(Application().GetFailureText().contains(QStringLiteral("why:first")));
}

// What a desktop sends at the end of a session: windows close as if by hand, so that the project is saved.
TEST(Application, ASignalToEndClosesTheWindows)
{
    QWidget window;
    window.show();
    EXPECT_EQ(RunLoop([] { std::raise(SIGTERM); }), 0);
    EXPECT_FALSE(window.isVisible());
}

// A deployment is cancelled by closing its wizard, which goes when what is under way has ended.
TEST(Application, ADialogThatTakesItsTimeIsWaitedFor)
{
    class CSlow final : public QDialog {
    public:
        using QDialog::QDialog;
        bool isAsked = false;
        void reject() override { isAsked = true; }
    };
    QWidget window;
    window.show();
    bool wasOpen = false;
    QTimer work;
    const int exitCode = RunLoop([&] {
        CSlow dialog(&window);
        QObject::connect(&work, &QTimer::timeout, &dialog, [&] {
            if (dialog.isAsked) {
                wasOpen = window.isVisible();
                work.stop();
                dialog.done(QDialog::Rejected);
            }
        });
        work.start(1);
        std::raise(SIGTERM);
        dialog.exec();
    });
    EXPECT_EQ(exitCode, 0);
    EXPECT_TRUE(wasOpen);
    EXPECT_FALSE(window.isVisible());
}

TEST(Application, ASignalIsHeardAgainWhenAWindowHasRefused)
{
    class CStubborn final : public QWidget {
    public:
        int asked = 0;

    protected:
        void closeEvent(QCloseEvent* event) override { event->setAccepted(++asked > 1); }
    };
    CStubborn window;
    window.show();
    QTimer again;
    QObject::connect(&again, &QTimer::timeout, [&] {
        if (window.asked == 1) {
            again.stop();
            std::raise(SIGTERM);
        }
    });
    again.start(1);
    EXPECT_EQ(RunLoop([] { std::raise(SIGTERM); }), 0);
    EXPECT_EQ(window.asked, 2);
    EXPECT_FALSE(window.isVisible());
}
