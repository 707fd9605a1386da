#include "deploy/server/SendTally.h"

#include <algorithm>

namespace {

constexpr std::chrono::milliseconds betweenTwo(100);
// Long enough for a steady figure, short enough to follow a connection that slows down.
constexpr std::chrono::seconds rateSpan(8);
constexpr std::chrono::seconds shortestSpan(1);

} // namespace

CSendTally::CSendTally(const Setting& setting) : setting(setting)
{
    const CMutexLock lock(mutex);
    progress.totalFiles = setting.totalFiles;
    progress.totalBytes = setting.totalBytes;
    samples.push_back({setting.now(), 0});
}

void CSendTally::AddBytes(const QString& path, int64_t bytes)
{
    const CMutexLock lock(mutex);
    progress.doneBytes += bytes;
    Tell(path, false);
}

void CSendTally::TakeBack(int64_t bytes)
{
    const CMutexLock lock(mutex);
    progress.doneBytes -= bytes;
    for (Sample& sample : samples) {
        sample.bytes = std::min(sample.bytes, progress.doneBytes);
    }
}

void CSendTally::AddFile(const QString& path)
{
    const CMutexLock lock(mutex);
    ++progress.doneFiles;
    Tell(path, progress.doneFiles == progress.totalFiles);
}

void CSendTally::Tell(const QString& path, bool isLast)
{
    const Clock::time_point now = setting.now();
    if (!isLast && lastTold && now - *lastTold < betweenTwo) {
        return;
    }
    lastTold = now;
    progress.path = path;
    Estimate(now);
    if (setting.onProgress) {
        setting.onProgress(progress);
    }
}

void CSendTally::Estimate(Clock::time_point now)
{
    samples.push_back({now, progress.doneBytes});
    while (samples.size() > 2 && now - samples[1].time >= rateSpan) {
        samples.pop_front();
    }
    const auto span = std::chrono::duration_cast<std::chrono::milliseconds>(now - samples.front().time);
    if (span < shortestSpan) {
        return;
    }
    const int64_t bytes = progress.doneBytes - samples.front().bytes;
    progress.bytesPerSecond = bytes * 1000 / span.count();
    progress.timeLeft.reset();
    if (progress.bytesPerSecond > 0) {
        const int64_t left = std::max<int64_t>(progress.totalBytes - progress.doneBytes, 0);
        progress.timeLeft =
            std::chrono::seconds((left + progress.bytesPerSecond - 1) / progress.bytesPerSecond);
    }
}
