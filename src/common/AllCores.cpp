#include "common/AllCores.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace {

// The numbers of one call, handed out to its threads.
class CHandOut {
public:
    CHandOut(size_t count, const std::function<void(size_t)>& work) : count(count), work(work) {}

    void Work()
    {
        for (size_t at = next++; at < count; at = next++) {
            try {
                work(at);
            } catch (...) {
                const std::lock_guard lock(mutex);
                failure = failure ? failure : std::current_exception();
                next = count;
                return;
            }
        }
    }

    // When all threads have ended.
    void RethrowFailure() const
    {
        if (failure) {
            std::rethrow_exception(failure);
        }
    }

private:
    const size_t count;
    const std::function<void(size_t)>& work;
    std::atomic<size_t> next = 0;
    std::mutex mutex;
    std::exception_ptr failure; // guarded by mutex
};

} // namespace

void OnAllCores(size_t count, const std::function<void(size_t)>& work)
{
    CHandOut handOut(count, work);
    const size_t threads = std::min<size_t>(count, std::max(1u, std::thread::hardware_concurrency()));
    std::vector<std::thread> helpers;
    try {
        for (size_t i = 1; i < threads; ++i) {
            helpers.emplace_back([&] { handOut.Work(); });
        }
    } catch (const std::system_error&) {
        // With as many threads as the system has left.
    }
    handOut.Work();
    for (std::thread& helper : helpers) {
        helper.join();
    }
    handOut.RethrowFailure();
}
