#include "common/WorkerPool.h"

#include <atomic>
#include <future>
#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>

#include "support/NoThreads.h"

namespace {

// Work that holds its thread until the gate is opened, and says when it has begun.
class CGate {
public:
    CWorkerPool::Work Work()
    {
        return [this] {
            begun.set_value();
            opened.get_future().wait();
        };
    }
    void AwaitWork() { begun.get_future().wait(); }
    void Open() { opened.set_value(); }

private:
    std::promise<void> begun;
    std::promise<void> opened;
};

// Which threads have done work.
class CThreadNames {
public:
    CWorkerPool::Work Work()
    {
        return [this] {
            const std::lock_guard lock(mutex);
            names.insert(std::this_thread::get_id());
        };
    }
    std::set<std::thread::id> Get()
    {
        const std::lock_guard lock(mutex);
        return names;
    }

private:
    std::mutex mutex;
    std::set<std::thread::id> names;
};

} // namespace

TEST(WorkerPool, DoesAllThatIsPosted)
{
    std::atomic<int> done = 0;
    CWorkerPool pool;
    for (int i = 0; i < 1000; ++i) {
        pool.Post([&] { ++done; });
    }
    pool.Finish();
    EXPECT_EQ(done, 1000);
    EXPECT_FALSE(pool.GetFailure());
}

TEST(WorkerPool, BeginsInTheOrderOfPosting)
{
    std::string order;
    CWorkerPool pool(nullptr, 1);
    for (const char c : {'a', 'b', 'c', 'd'}) {
        pool.Post([&order, c] { order += c; });
    }
    pool.Finish();
    EXPECT_EQ(order, "abcd");
}

TEST(WorkerPool, WorksOnAsManyThreadsAsItMayAndOnNoMore)
{
    CThreadNames names;
    CGate gates[3];
    CWorkerPool pool(nullptr, 3);
    for (CGate& gate : gates) {
        pool.Post(gate.Work());
    }
    for (CGate& gate : gates) {
        gate.AwaitWork(); // all three at the same time
    }
    for (int i = 0; i < 100; ++i) {
        pool.Post(names.Work());
    }
    for (CGate& gate : gates) {
        gate.Open();
    }
    pool.Finish();
    EXPECT_LE(names.Get().size(), 3u);
    EXPECT_FALSE(names.Get().contains(std::this_thread::get_id()));
}

TEST(WorkerPool, CanBeUsedAgainOnceItHasFinished)
{
    int done = 0;
    CWorkerPool pool(nullptr, 1);
    for (int i = 1; i <= 3; ++i) {
        pool.Post([&] { ++done; });
        pool.Finish();
        EXPECT_EQ(done, i);
    }
    pool.Finish();
}

TEST(WorkerPool, DoesItsOwnersWorkOnTheOwnersThread)
{
    CThreadNames names;
    CWorkerPool().Finish(names.Work());
    EXPECT_EQ(names.Get(), std::set{std::this_thread::get_id()});
}

TEST(WorkerPool, ItsEndDropsWhatHasNotBegunAndWaitsForWhatHas)
{
    CGate gate;
    bool ended = false;
    bool dropped = true;
    {
        CWorkerPool pool(nullptr, 1);
        pool.Post([&, hold = gate.Work()] {
            hold();
            ended = true;
        });
        gate.AwaitWork();
        // Opens the gate when it is dropped, so that the end of the pool drops first and waits then.
        const std::shared_ptr<void> opens(nullptr, [&gate](void*) { gate.Open(); });
        pool.Post([opens, &dropped] { dropped = false; });
    }
    EXPECT_TRUE(ended);
    EXPECT_TRUE(dropped);
}

TEST(WorkerPool, AStopDropsWhatHasNotBegun)
{
    CStopSignal stop;
    CGate gate;
    std::atomic<int> done = 0;
    CWorkerPool pool(&stop, 1);
    pool.Post(gate.Work());
    gate.AwaitWork();
    pool.Post([&] { ++done; });
    stop.Set();
    gate.Open();
    pool.Post([&] { ++done; });
    pool.Finish();
    EXPECT_EQ(done, 0);
}

TEST(WorkerPool, TheFirstFailureIsRethrownAndSetsTheStopSignal)
{
    CStopSignal stop;
    CWorkerPool pool(&stop, 1);
    std::atomic<int> done = 0;
    pool.Post([&] { ++done; });
    pool.Post([] { throw std::runtime_error("first"); });
    pool.Post([] { throw std::runtime_error("second"); });
    pool.Post([&] { ++done; });
    try {
        pool.Finish();
        FAIL() << "the failure is not rethrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "first");
    }
    EXPECT_EQ(done, 1);
    EXPECT_TRUE(stop.IsSet());
    EXPECT_TRUE(pool.GetFailure());
}

TEST(WorkerPool, AFailureIsKnownBeforeTheStopSignalTellsOfIt)
{
    for (int i = 0; i < 200; ++i) {
        CStopSignal stop;
        CWorkerPool pool(&stop);
        pool.Post([] { throw std::runtime_error("failure"); });
        while (!stop.IsSet()) {
            std::this_thread::yield();
        }
        EXPECT_TRUE(pool.GetFailure());
    }
}

TEST(WorkerPool, WithoutAnyThreadItsOwnerDoesTheWork)
{
    CThreadNames names;
    CStopSignal stop;
    CWorkerPool pool(&stop);
    {
        const CNoThreads none;
        EXPECT_THROW(std::thread([] {}), std::system_error);
        pool.Post(names.Work());
        pool.Post([] { throw std::runtime_error("failure"); });
        pool.Post(names.Work()); // comes after the failure
        EXPECT_TRUE(names.Get().empty());
        EXPECT_THROW(pool.Finish(), std::runtime_error);
    }
    EXPECT_EQ(names.Get(), std::set{std::this_thread::get_id()});
    EXPECT_TRUE(stop.IsSet());
}

TEST(WorkerPool, WithTooFewThreadsItWorksWithThose)
{
    CThreadNames names;
    CGate gate;
    CWorkerPool pool(nullptr, 4);
    pool.Post(gate.Work());
    gate.AwaitWork();
    {
        const CNoThreads none;
        for (int i = 0; i < 10; ++i) {
            pool.Post(names.Work());
        }
    }
    gate.Open();
    pool.Finish();
    EXPECT_EQ(names.Get().size(), 1u);
    EXPECT_FALSE(names.Get().contains(std::this_thread::get_id()));
}

TEST(WorkerPool, WorkThatFoundNoThreadIsDoneWithTheNextThatFindsOne)
{
    std::promise<void> first;
    CWorkerPool pool;
    {
        const CNoThreads none;
        pool.Post([&] { first.set_value(); });
    }
    pool.Post([] {});
    first.get_future().wait();
    pool.Finish();
    EXPECT_FALSE(pool.GetFailure());
}

TEST(OnAllCores, DoesEachNumberOnce)
{
    for (const size_t count : {0u, 1u, 2u, 7u, 1000u}) {
        std::vector<std::atomic<int>> done(count);
        OnAllCores(count, [&](size_t at) { ++done[at]; });
        for (size_t at = 0; at < count; ++at) {
            EXPECT_EQ(done[at], 1) << at << " of " << count;
        }
    }
}

TEST(OnAllCores, DoesASingleOneOnTheCallersThread)
{
    std::thread::id thread;
    OnAllCores(1, [&](size_t) { thread = std::this_thread::get_id(); });
    EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST(OnAllCores, RethrowsAFailureWhenAllThreadsHaveEnded)
{
    for (const size_t count : {1u, 2u, 100u}) {
        std::atomic<int> running = 0;
        const auto work = [&](size_t at) {
            ++running;
            const bool fails = at == count - 1;
            --running;
            if (fails) {
                throw std::runtime_error("last");
            }
        };
        EXPECT_THROW(OnAllCores(count, work), std::runtime_error) << count;
        EXPECT_EQ(running, 0);
    }
}

TEST(OnAllCores, WorksWithoutAnyFurtherThread)
{
    const CNoThreads none;
    int done = 0;
    OnAllCores(100, [&](size_t) { ++done; });
    EXPECT_EQ(done, 100);
    EXPECT_THROW(OnAllCores(100, [&](size_t) { throw std::runtime_error("first"); }), std::runtime_error);
}
