#include "ResourceGuard.h"

#include <chrono>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

namespace {

std::size_t CountEntries(const char* folder)
{
    std::error_code error;
    std::size_t count = 0;
    for (std::filesystem::directory_iterator entry(folder, error), end; entry != end;
         entry.increment(error)) {
        ++count;
    }
    return count;
}

std::size_t CountDescriptors()
{
    return CountEntries("/proc/self/fd");
}

std::size_t CountThreads()
{
    return CountEntries("/proc/self/task");
}

// The first thread of a process may bring along one that stays, that of a sanitizer.
std::size_t CountThreadsBefore()
{
    std::thread([] {}).join();
    return CountThreads();
}

template <class Condition>
bool Await(const Condition& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

} // namespace

CResourceGuard::CResourceGuard() : descriptors(CountDescriptors()), threads(CountThreadsBefore()) {}

CResourceGuard::~CResourceGuard()
{
    EXPECT_TRUE(AwaitThreads());
    // What an abandoned worker held is released at its end.
    EXPECT_TRUE(Await([this] { return CountDescriptors() <= descriptors; }));
}

bool CResourceGuard::AwaitThreads() const
{
    return Await([this] { return CountThreads() <= threads; });
}
