#include "support/TraceRecorder.h"

#include <algorithm>
#include <chrono>

#include <gtest/gtest.h>

#include "common/Trace.h"

CTraceRecorder::CTraceRecorder()
{
    SetTraceSink([record = record](const QString& line) {
        const std::lock_guard guard(record->lock);
        record->lines.push_back(line);
        record->arrived.notify_all();
    });
}

CTraceRecorder::~CTraceRecorder()
{
    SetTraceSink({});
}

std::vector<QString> CTraceRecorder::GetLines()
{
    const std::lock_guard guard(record->lock);
    return record->lines;
}

bool CTraceRecorder::Has(const char* line)
{
    const std::lock_guard guard(record->lock);
    return Count(line) > 0;
}

void CTraceRecorder::Await(const char* line, int times)
{
    std::unique_lock guard(record->lock);
    EXPECT_TRUE(record->arrived.wait_for(guard, std::chrono::seconds(30), [&] {
        return Count(line) >= times;
    })) << line;
}

int CTraceRecorder::Count(const char* line) const
{
    return static_cast<int>(std::count(record->lines.begin(), record->lines.end(), QString::fromUtf8(line)));
}
