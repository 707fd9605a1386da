#include "common/BackgroundWorker.h"

#include <functional>

namespace {

// Counts its runs, and works as long as the test lets it.
class CTestWorker final : public CBackgroundWorker {
public:
    explicit CTestWorker(std::function<void(CTestWorker&)> work = {}) : work(std::move(work)) {}
    ~CTestWorker() override { Quit(); }

    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;
    CThreadEvent hasBegun{CThreadEvent::ResetMode::Auto, false};
    CThreadEvent hasEnded{CThreadEvent::ResetMode::Auto, false};
    int shared = 0; // by no lock: who reads it behind Cancel must be alone

protected:
    void DoWork() override
    {
        ++begun;
        ++shared;
        hasBegun.Set();
        if (work) {
            work(*this);
        }
        ++shared;
        ++ended;
        hasEnded.Set();
    }

private:
    const std::function<void(CTestWorker&)> work;
};

void WorkUntilCancelled(CTestWorker& worker)
{
    while (worker.IsRunning()) {
        std::this_thread::yield();
    }
}

} // namespace

TEST(BackgroundWorker, DoesNothingUntilItIsAsked)
{
    CTestWorker worker;
    worker.Start();
    EXPECT_FALSE(worker.IsRunning());
    worker.Cancel();
    EXPECT_EQ(worker.begun, 0);
}

TEST(BackgroundWorker, WorksOnceForEachRequestThatIsNotCancelled)
{
    CTestWorker worker;
    worker.Start();
    for (int i = 1; i <= 100; ++i) {
        worker.Request();
        worker.hasEnded.Wait();
        EXPECT_EQ(worker.ended, i);
    }
    worker.Cancel();
    EXPECT_EQ(worker.begun, 100);
    EXPECT_FALSE(worker.IsRunning());
}

TEST(BackgroundWorker, TellsTheWorkThatItIsRunning)
{
    bool whileWorking = false;
    CTestWorker worker([&](CTestWorker& self) { whileWorking = self.IsRunning(); });
    worker.Start();
    worker.Request();
    worker.hasEnded.Wait();
    worker.Cancel();
    EXPECT_TRUE(whileWorking);
}

TEST(BackgroundWorker, CancelReturnsWhenTheWorkHasEnded)
{
    CTestWorker worker(WorkUntilCancelled);
    worker.Start();
    worker.Request();
    worker.hasBegun.Wait();
    EXPECT_TRUE(worker.IsRunning());
    worker.Cancel();
    EXPECT_EQ(worker.ended, 1);
    EXPECT_EQ(worker.shared, 2);
    EXPECT_FALSE(worker.IsRunning());
}

TEST(BackgroundWorker, ARequestEndsTheWorkInProgressAndHasItDoneAnew)
{
    CTestWorker worker(WorkUntilCancelled);
    worker.Start();
    for (int i = 1; i <= 50; ++i) {
        worker.Request();
        worker.hasBegun.Wait();
        EXPECT_EQ(worker.begun, i);
        EXPECT_EQ(worker.ended, i - 1);
    }
}

TEST(BackgroundWorker, CancelBetweenWakingAndWorkingLeavesNothingBehind)
{
    CTestWorker worker(WorkUntilCancelled);
    worker.Start();
    for (int i = 0; i < 2000; ++i) {
        worker.Request();
        worker.Cancel();
        EXPECT_EQ(worker.shared % 2, 0);
        EXPECT_EQ(worker.begun, worker.ended);
    }
    // It still takes work, and exactly that.
    const int before = worker.begun;
    worker.hasBegun.Reset();
    worker.Request();
    worker.hasBegun.Wait();
    worker.Cancel();
    EXPECT_EQ(worker.begun, before + 1);
}

TEST(BackgroundWorker, RequestsInARowNeverLoseTheLastOne)
{
    CTestWorker worker;
    worker.Start();
    for (int i = 0; i < 1000; ++i) {
        worker.Request();
        worker.Request();
        worker.Cancel();
        worker.hasEnded.Reset();
        const int before = worker.ended;
        worker.Request();
        worker.hasEnded.Wait();
        EXPECT_EQ(worker.ended, before + 1);
    }
    worker.Cancel();
    EXPECT_EQ(worker.shared, 2 * worker.ended);
}

TEST(BackgroundWorker, QuitsInEveryState)
{
    {
        CTestWorker neverStarted;
    }
    {
        CTestWorker idle;
        idle.Start();
    }
    for (int i = 0; i < 200; ++i) {
        CTestWorker requested(WorkUntilCancelled);
        requested.Start();
        requested.Request();
    }
    {
        CTestWorker working(WorkUntilCancelled);
        working.Start();
        working.Request();
        working.hasBegun.Wait();
    }
    {
        CTestWorker done;
        done.Start();
        done.Request();
        done.hasEnded.Wait();
    }
    CTestWorker cancelled(WorkUntilCancelled);
    cancelled.Start();
    cancelled.Request();
    cancelled.Cancel();
    cancelled.Quit();
    EXPECT_EQ(cancelled.begun, cancelled.ended);
}

TEST(BackgroundWorker, DoesNothingMoreOnceItHasQuit)
{
    CTestWorker worker;
    worker.Start();
    worker.Quit();
    worker.Request();
    worker.Cancel();
    worker.Quit();
    EXPECT_EQ(worker.begun, 0);
    EXPECT_FALSE(worker.IsRunning());
}

TEST(BackgroundWorker, ARequestBeforeTheStartIsDoneAtTheStart)
{
    CTestWorker worker;
    worker.Request();
    worker.Start();
    worker.hasEnded.Wait();
    worker.Cancel();
    EXPECT_EQ(worker.ended, 1);
}

TEST(ThreadEvent, AnAutomaticOneEndsOneWait)
{
    CThreadEvent event(CThreadEvent::ResetMode::Auto, true);
    event.Wait();
    int value = 0;
    std::thread other([&] {
        value = 1;
        event.Set();
    });
    event.Wait();
    EXPECT_EQ(value, 1);
    other.join();
}

TEST(ThreadEvent, AManualOneStaysSignalled)
{
    CThreadEvent event(CThreadEvent::ResetMode::Manual, false);
    event.Set();
    event.Wait();
    event.Wait();
    event.Reset();
    std::thread other([&] { event.Set(); });
    event.Wait();
    other.join();
}
