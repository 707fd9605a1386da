#include "TraceRecorder.h"

#include <algorithm>
#include <chrono>

#include <gtest/gtest.h>

#include "common/Trace.h"

CTraceRecorder::CTraceRecorder()
{
    SetTraceSink([this](const QString& line) {
        const std::lock_guard guard(lock);
        lines.push_back(line);
        arrived.notify_all();
    });
}

CTraceRecorder::~CTraceRecorder()
{
    SetTraceSink({});
}

std::vector<QString> CTraceRecorder::GetLines()
{
    const std::lock_guard guard(lock);
    return lines;
}

bool CTraceRecorder::Has(const char* line)
{
    const std::lock_guard guard(lock);
    return Count(line) > 0;
}

void CTraceRecorder::Await(const char* line, int times)
{
    std::unique_lock guard(lock);
    EXPECT_TRUE(arrived.wait_for(guard, std::chrono::seconds(30), [&] { return Count(line) >= times; }))
        << line;
}

int CTraceRecorder::Count(const char* line) const
{
    return static_cast<int>(std::count(lines.begin(), lines.end(), QString::fromUtf8(line)));
}
