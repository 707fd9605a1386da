#include <QApplication>
#include <QStyleFactory>
#include <gtest/gtest.h>

int main(int argumentCount, char** arguments)
{
    // One look, locale and time zone for all machines, and no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "Europe/Berlin");
    QApplication application(argumentCount, arguments);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
