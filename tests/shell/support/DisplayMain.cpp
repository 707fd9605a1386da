#include <QApplication>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "shell/web/HTMLView.h"
#include "support/VirtualDisplay.h"

int main(int argumentCount, char** arguments)
{
    // One look, locale and time zone for all machines, a display and a home of its own.
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "Europe/Berlin");
    const QTemporaryDir home;
    qputenv("XDG_CACHE_HOME", home.path().toUtf8());
    qputenv("XDG_DATA_HOME", home.path().toUtf8() + "/data");
    testing::InitGoogleTest(&argumentCount, arguments);
    const CVirtualDisplay display;
    PutDisplayIntoEnvironment(display.GetName());
    PrepareHTMLViews();
    QApplication application(argumentCount, arguments);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    return RUN_ALL_TESTS();
}
