#include "deploy/server/SendTally.h"

#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

class SendTally : public testing::Test {
protected:
    CSendTally::Setting Setting(int32_t files, int64_t bytes)
    {
        return {.totalFiles = files,
                .totalBytes = bytes,
                .onProgress = [this](const SendProgress& progress) { told.push_back(progress); },
                .now =
                    [this] {
                        return now;
                    }};
    }

    CSendTally::Clock::time_point now;
    std::vector<SendProgress> told;
    const QString path = QStringLiteral("a.jpg");
};

} // namespace

TEST_F(SendTally, TellsAtMostTenTimesASecondAndAtTheEnd)
{
    CSendTally tally(Setting(2, 1000));
    for (int i = 0; i < 100; ++i) {
        tally.AddBytes(path, 10);
        now += 10ms;
    }
    EXPECT_EQ(told.size(), 10u);
    tally.AddFile(path);
    tally.AddFile(path);
    EXPECT_EQ(told.back().doneFiles, 2);
    EXPECT_EQ(told.back().totalFiles, 2);
    EXPECT_EQ(told.back().doneBytes, 1000);
    EXPECT_EQ(told.back().totalBytes, 1000);
    EXPECT_EQ(told.back().path, path);
}

TEST_F(SendTally, EstimatesByTheLastSeconds)
{
    CSendTally tally(Setting(1, 100'000));
    now += 500ms;
    tally.AddBytes(path, 500);
    EXPECT_FALSE(told.back().timeLeft.has_value());
    for (int second = 0; second < 60; ++second) {
        now += 1s;
        tally.AddBytes(path, 1000);
    }
    EXPECT_NEAR(static_cast<double>(told.back().bytesPerSecond), 1000, 10);
    EXPECT_EQ(told.back().timeLeft, 40s);
    // The connection slows down, and the figure follows.
    for (int second = 0; second < 10; ++second) {
        now += 1s;
        tally.AddBytes(path, 100);
    }
    EXPECT_NEAR(static_cast<double>(told.back().bytesPerSecond), 100, 20);
}

TEST_F(SendTally, AStandstillHasNoTimeLeft)
{
    CSendTally tally(Setting(2, 100));
    for (int second = 0; second < 10; ++second) {
        now += 2s;
        tally.AddFile(path);
    }
    EXPECT_EQ(told.back().bytesPerSecond, 0);
    EXPECT_FALSE(told.back().timeLeft.has_value());
}

TEST_F(SendTally, WhatIsSentOnceMoreIsTakenBack)
{
    CSendTally tally(Setting(1, 100));
    now += 1s;
    tally.AddBytes(path, 60);
    tally.TakeBack(60);
    now += 1s;
    tally.AddBytes(path, 100);
    EXPECT_EQ(told.back().doneBytes, 100);
    EXPECT_GE(told.back().bytesPerSecond, 0);
}
