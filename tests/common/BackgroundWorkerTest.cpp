#include "common/BackgroundWorker.h"

#include <functional>

namespace {

// Counts its runs, and works as long as the test lets it.
class CTestWorker final : public CBackgroundWorker {
public:
    explicit CTestWorker(std::function<void(CTestWorker&)> work = {}) : work(std::move(work)) {}
    ~CTestWorker() override { Quit(); }

    void AwaitBegun(int times) { Await(begun, times); }
    void AwaitEnded(int times) { Await(ended, times); }

    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;
    int shared = 0; // by no lock: who reads it after Cancel must be alone

protected:
    void DoWork() override
    {
        ++shared;
        ++begun;
        if (work) {
            work(*this);
        }
        ++shared;
        ++ended;
    }

private:
    static void Await(const std::atomic<int>& count, int times)
    {
        while (count < times) {
            std::this_thread::yield();
        }
    }

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
        worker.AwaitEnded(i);
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
    worker.AwaitEnded(1);
    worker.Cancel();
    EXPECT_TRUE(whileWorking);
}

TEST(BackgroundWorker, CancelReturnsWhenTheWorkHasEnded)
{
    CTestWorker worker(WorkUntilCancelled);
    worker.Start();
    worker.Request();
    worker.AwaitBegun(1);
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
        worker.AwaitBegun(i);
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
    worker.Request();
    worker.AwaitBegun(before + 1);
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
        const int before = worker.ended;
        worker.Request();
        worker.AwaitEnded(before + 1);
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
        working.AwaitBegun(1);
    }
    {
        CTestWorker done;
        done.Start();
        done.Request();
        done.AwaitEnded(1);
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
    worker.AwaitEnded(1);
    worker.Cancel();
    EXPECT_EQ(worker.ended, 1);
}
