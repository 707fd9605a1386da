#include "ftpengine/net/ThreadDriver.h"

#include <atomic>
#include <thread>

#include "ResourceGuard.h"
#include "ftpengine/net/FTPTimeouts.h"

namespace {

using std::chrono::milliseconds;
using Result = CThreadDriver::StartResult;
using Stop = std::shared_ptr<CEvent>;

class ThreadDriver : public testing::Test {
protected:
    const CResourceGuard guard;
    const std::shared_ptr<CEvent> gate = std::make_shared<CEvent>();
    const std::shared_ptr<CEvent> entered = std::make_shared<CEvent>();
    const std::shared_ptr<CEvent> done = std::make_shared<CEvent>();

    // Work that stays until the gate is opened, whatever the stop event says.
    CThreadDriver::Work Waiting() const
    {
        return [gate = gate, entered = entered](const Stop&) {
            entered->Set();
            gate->Wait(NoLimit);
        };
    }
    CThreadDriver::Work Signalling() const
    {
        return [done = done](const Stop&) {
            done->Set();
        };
    }
    static CThreadDriver::Work UntilStopped()
    {
        return [](const Stop& stop) {
            stop->Wait(NoLimit);
        };
    }
};

} // namespace

TEST_F(ThreadDriver, IsNotRunningBeforeAndAfterItsWork)
{
    CThreadDriver driver(NoLimit);
    EXPECT_FALSE(driver.IsRunning());
    EXPECT_FALSE(driver.Stop());
    EXPECT_EQ(driver.Start(Waiting(), false), Result::Started);
    EXPECT_TRUE(driver.IsRunning());
    gate->Set();
    EXPECT_FALSE(driver.Stop());
    EXPECT_FALSE(driver.IsRunning());
}

TEST_F(ThreadDriver, RefusesOrQueuesASecondItem)
{
    CThreadDriver driver(NoLimit);
    EXPECT_EQ(driver.Start(Waiting(), false), Result::Started);
    EXPECT_EQ(driver.Start(Signalling(), false), Result::Refused);
    EXPECT_EQ(driver.Start(Signalling(), true), Result::Queued);
    EXPECT_FALSE(done->IsSet());
    gate->Set();
    EXPECT_TRUE(done->Wait(milliseconds(10000)));
}

TEST_F(ThreadDriver, RunsItemsInTheirOrder)
{
    std::string order;
    CThreadDriver driver(NoLimit);
    driver.Start(Waiting(), true);
    for (const char c : {'a', 'b', 'c'}) {
        driver.Start([&order, c](const Stop&) { order += c; }, true);
    }
    driver.Start(Signalling(), true);
    gate->Set();
    ASSERT_TRUE(done->Wait(milliseconds(10000)));
    driver.Stop();
    EXPECT_EQ(order, "abc");
}

TEST_F(ThreadDriver, StopSignalsTheItemAndWaits)
{
    std::atomic<bool> ended = false;
    CThreadDriver driver(NoLimit);
    driver.Start(
        [&ended](const Stop& stop) {
            stop->Wait(NoLimit);
            ended = true;
        },
        false);
    EXPECT_FALSE(driver.Stop());
    EXPECT_TRUE(ended);
}

TEST_F(ThreadDriver, AStoppedWorkerLeavesItsQueueToTheNextStart)
{
    CThreadDriver driver(NoLimit);
    std::string order;
    driver.Start(UntilStopped(), true);
    driver.Start([&order](const Stop&) { order += "left "; }, true);
    driver.Stop();
    EXPECT_EQ(order, "");
    EXPECT_EQ(driver.Start(
                  [&order, done = done](const Stop&) {
                      order += "new";
                      done->Set();
                  },
                  true),
              Result::Started);
    ASSERT_TRUE(done->Wait(milliseconds(10000)));
    driver.Stop();
    EXPECT_EQ(order, "left new");
}

TEST_F(ThreadDriver, StartsANewWorkerBesideOneThatIsStillEnding)
{
    CThreadDriver driver(NoLimit);
    driver.Start(Waiting(), true);
    ASSERT_TRUE(entered->Wait(milliseconds(10000)));
    driver.SignalStop();
    EXPECT_FALSE(driver.IsRunning());
    EXPECT_EQ(driver.Start(Signalling(), true), Result::Started);
    EXPECT_TRUE(done->Wait(milliseconds(10000)));
    gate->Set();
}

TEST_F(ThreadDriver, AnEndingWorkerDoesNotStopTheNewOne)
{
    CThreadDriver driver(NoLimit);
    driver.Start(Waiting(), true);
    ASSERT_TRUE(entered->Wait(milliseconds(10000)));
    driver.SignalStop();
    const auto newGate = std::make_shared<CEvent>();
    std::atomic<bool> stopped = true;
    driver.Start(
        [&stopped, newGate, done = done](const Stop& stop) {
            newGate->Wait(NoLimit);
            stopped = stop->IsSet();
            done->Set();
        },
        true);
    gate->Set();
    newGate->Set();
    ASSERT_TRUE(done->Wait(milliseconds(10000)));
    EXPECT_FALSE(stopped);
}

TEST_F(ThreadDriver, AnItemThatSignalsItsOwnEventDoesNotStopTheNext)
{
    CThreadDriver driver(NoLimit);
    std::atomic<bool> nextStopped = true;
    driver.Start(
        [gate = gate](const Stop& stop) {
            gate->Wait(NoLimit);
            stop->Set();
        },
        true);
    driver.Start(
        [&nextStopped, done = done](const Stop& stop) {
            nextStopped = stop->IsSet();
            done->Set();
        },
        true);
    gate->Set();
    ASSERT_TRUE(done->Wait(milliseconds(10000)));
    EXPECT_FALSE(nextStopped);
}

TEST_F(ThreadDriver, AbandonsAWorkerThatDoesNotEndInTime)
{
    const auto keptByTheWorker = std::make_shared<int>(1);
    const std::weak_ptr<int> kept = keptByTheWorker;
    const auto queueIsGone = std::make_shared<CEvent>();
    {
        CThreadDriver driver(milliseconds(10));
        driver.Start(
            [kept = keptByTheWorker, gate = gate, done = done](const Stop&) {
                gate->Wait(NoLimit);
                done->Set();
            },
            false);
        const std::shared_ptr<void> keptByTheQueue(nullptr, [queueIsGone](void*) { queueIsGone->Set(); });
        driver.Start([keptByTheQueue](const Stop&) {}, true); // is dropped
        EXPECT_TRUE(driver.Stop());
        EXPECT_FALSE(driver.IsRunning());
        EXPECT_FALSE(driver.Stop());
    }
    EXPECT_GE(kept.use_count(), 2);
    // The worker looks into its queue once more when it has done its work.
    EXPECT_FALSE(queueIsGone->IsSet());
    gate->Set();
    EXPECT_TRUE(done->Wait(milliseconds(10000)));
    EXPECT_TRUE(queueIsGone->Wait(milliseconds(10000)));
}

TEST_F(ThreadDriver, ADriverThatAbandonedAWorkerCanStartAnother)
{
    CThreadDriver driver(milliseconds(10));
    driver.Start(Waiting(), false);
    EXPECT_TRUE(driver.Stop());
    EXPECT_EQ(driver.Start(Signalling(), false), Result::Started);
    EXPECT_TRUE(done->Wait(milliseconds(10000)));
    gate->Set();
}

TEST_F(ThreadDriver, WithoutLimitItNeverAbandons)
{
    CThreadDriver driver(NoLimit);
    driver.Start(Waiting(), false);
    ASSERT_TRUE(entered->Wait(milliseconds(10000)));
    std::atomic<bool> abandoned = true;
    std::thread stopper([&] { abandoned = driver.Stop(); });
    while (driver.IsRunning()) { // until the stop is signalled
        std::this_thread::yield();
    }
    gate->Set();
    stopper.join();
    EXPECT_FALSE(abandoned);
}

TEST_F(ThreadDriver, DestroysWhatIsLeftInItsQueue)
{
    const auto item = std::make_shared<int>(1);
    {
        CThreadDriver driver(NoLimit);
        driver.Start(UntilStopped(), true);
        driver.Start([item](const Stop&) {}, true);
    }
    EXPECT_EQ(item.use_count(), 1);
}

TEST_F(ThreadDriver, AnItemIsGoneWhenStopHasReturned)
{
    const auto item = std::make_shared<int>(1);
    CThreadDriver driver(NoLimit);
    driver.Start([item](const Stop& stop) { stop->Wait(NoLimit); }, true);
    driver.Stop();
    EXPECT_EQ(item.use_count(), 1);
}
