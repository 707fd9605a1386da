#include <gtest/gtest.h>

#include "DesktopProgram.h"

// Pictures of the window for people to look at, and what can be told of them without eyes.

TEST(Look, TheWindowFitsAllScreensInBothColourSchemes)
{
    for (const QSize size : {QSize(1024, 600), QSize(1440, 900), QSize(1920, 1080)}) {
        for (const char* scheme : {"light", "dark"}) {
            CDesktopProgram program(size);
            const QString project = program.CopySample();
            program.WriteSettings(QByteArray("ColourScheme=") + scheme + '\n');
            program.Start({project});
            ASSERT_TRUE(program.WaitForPictures());
            // The pages view has three quarters of the width.
            EXPECT_EQ(program.InPage(QStringLiteral("innerWidth")).toInt(), size.width() * 75 / 100);
            EXPECT_GT(program.InPage(QStringLiteral("innerHeight")).toInt(), size.height() * 8 / 10);
            program.TakePicture(QStringLiteral("window-%1x%2-%3")
                                    .arg(size.width())
                                    .arg(size.height())
                                    .arg(QString::fromLatin1(scheme)));
            EXPECT_EQ(program.Terminate(), 0);
        }
    }
}

TEST(Look, TheStripLiesOverThePicture)
{
    CDesktopProgram program;
    program.Start({program.CopySample()});
    program.MovePointer(
        program.PlaceOf(QStringLiteral("document.querySelector('img[alt=\"River Stones\"]')")));
    ASSERT_TRUE(
        program.WaitInPage(QStringLiteral("[...document.querySelectorAll('img[id$=_menu]')].some(s => "
                                          "s.style.display == 'inline')")));
    program.TakePicture(QStringLiteral("strip"));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST(Look, TheAboutBoxComesAndGoes)
{
    CDesktopProgram program;
    program.Start({program.CopySample()});
    program.PressKeys({QStringLiteral("alt+h"), QStringLiteral("a")});
    ASSERT_TRUE(program.WaitForWindow(QStringLiteral("About Vistorama")));
    program.FocusWindow(QStringLiteral("About Vistorama"));
    program.TakePicture(QStringLiteral("about"));
    program.PressKeys({QStringLiteral("Escape")});
    ASSERT_TRUE(program.WaitForWindowGone(QStringLiteral("About Vistorama")));
    EXPECT_EQ(program.Terminate(), 0);
}

TEST(Look, TheWindowComesBackWithItsSizeAndBars)
{
    CDesktopProgram program;
    const QString project = program.CopySample();
    program.Start({project});
    const int origin = program.InPage(QStringLiteral("innerWidth")).toInt();
    program.Drag(QPoint(origin + 2, 450), QPoint(origin - 198, 450));
    ASSERT_TRUE(program.WaitInPage(QStringLiteral("Math.abs(innerWidth - %1) < 10").arg(origin - 200)));
    EXPECT_EQ(program.Terminate(), 0);
    program.Start({project});
    EXPECT_NEAR(program.InPage(QStringLiteral("innerWidth")).toInt(), origin - 200, 10);
    EXPECT_EQ(program.Terminate(), 0);
}

TEST(Look, TheKeyboardGoesRoundThePanes)
{
    CDesktopProgram program;
    program.Start({program.CopySample()});
    program.PressKeys({QStringLiteral("F6")});
    program.PressKeys({QStringLiteral("shift+F6")});
    // The page has the keyboard: it scrolls.
    ASSERT_TRUE(program.WaitFor([&] {
        program.PressKeys({QStringLiteral("F6")});
        program.PressKeys({QStringLiteral("End")});
        return program.InPage(QStringLiteral("document.scrollingElement.scrollTop")).toInt() > 0;
    }));
    EXPECT_EQ(program.Terminate(), 0);
}
