#include <gtest/gtest.h>

#include "shell/frame/Application.h"

int main(int argumentCount, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    CApplication application(argumentCount, arguments);
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
