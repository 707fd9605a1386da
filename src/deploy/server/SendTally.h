#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <optional>

#include <QString>

#include "common/ThreadSafety.h"

// How far the sending of a site is. A value.
struct SendProgress {
    int32_t doneFiles = 0;
    int32_t totalFiles = 0;
    int64_t doneBytes = 0;
    int64_t totalBytes = 0;
    int64_t bytesPerSecond = 0;                   // of the last seconds
    std::optional<std::chrono::seconds> timeLeft; // as soon as there is something to go by
    QString path;                                 // of the file that something was last done for
};

// Counts what several threads send, and tells of it at most ten times a second, and at the end. Owned by the
// sender.
class CSendTally final {
public:
    using Clock = std::chrono::steady_clock;
    struct Setting {
        int32_t totalFiles = 0;
        int64_t totalBytes = 0;
        std::function<void(const SendProgress&)>
            onProgress; // one call at a time, on any thread; may be empty
        std::function<Clock::time_point()> now;
    };

    explicit CSendTally(const Setting& setting);

    void AddBytes(const QString& path, int64_t bytes);
    // They have to be sent once more.
    void TakeBack(int64_t bytes);
    void AddFile(const QString& path);

private:
    struct Sample {
        Clock::time_point time;
        int64_t bytes;
    };
    void Tell(const QString& path, bool isLast) VISTORAMA_REQUIRES(mutex);
    void Estimate(Clock::time_point now) VISTORAMA_REQUIRES(mutex);

    const Setting setting;

    CMutex mutex;
    SendProgress progress VISTORAMA_GUARDED_BY(mutex);
    std::deque<Sample>
        samples VISTORAMA_GUARDED_BY(mutex); // one for each time that was told, of the last seconds
    std::optional<Clock::time_point> lastTold VISTORAMA_GUARDED_BY(mutex);
};
