#pragma once

#include <QTest>
#include <gtest/gtest.h>

#include "ftpengine/net/FTPTimeouts.h"

// Servers of tests greet at once; a busy machine needs a moment to say so.
inline FTPTimeouts QuickGreeting()
{
    FTPTimeouts timeouts;
    timeouts.greetingSilence = std::chrono::milliseconds(600);
    timeouts.segmentSilence = std::chrono::milliseconds(30);
    return timeouts;
}

// Goes on with the event loop until the condition holds; a hang fails.
#define WAIT_UNTIL(condition) ASSERT_TRUE(QTest::qWaitFor([&] { return condition; }, 60000)) << #condition
