#pragma once

#include <QTest>
#include <gtest/gtest.h>

// Goes on with the event loop until the condition holds; a hang fails.
#define WAIT_UNTIL(condition) ASSERT_TRUE(QTest::qWaitFor([&] { return condition; }, 60000)) << #condition
