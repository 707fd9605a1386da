#include "common/AllCores.h"

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

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
