#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argumentCount, char** arguments)
{
    // One locale and one time zone for all machines; a test that is about another one sets it itself.
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "Europe/Berlin");
    QCoreApplication application(argumentCount, arguments);
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
