#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

#include <QEventLoop>
#include <QTimer>

// What the benches of the views have in common.

inline double Milliseconds(std::chrono::steady_clock::time_point from)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - from).count();
}

// values: not empty.
inline double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// In a running event loop, not a polling one: the browser takes many small steps in it. Ends after ten
// minutes at the latest.
inline void RunUntil(const std::function<bool()>& condition)
{
    constexpr int patience = 600'000; // milliseconds
    QEventLoop loop;
    QTimer check;
    QObject::connect(&check, &QTimer::timeout, &loop, [&] {
        if (condition()) {
            loop.quit();
        }
    });
    check.start(1);
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    loop.exec();
}
