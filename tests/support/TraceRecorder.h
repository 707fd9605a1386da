#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include <QString>

// Keeps the trace lines of all threads, as long as it lives.
class CTraceRecorder {
public:
    CTraceRecorder();
    ~CTraceRecorder();
    CTraceRecorder(const CTraceRecorder&) = delete;
    CTraceRecorder& operator=(const CTraceRecorder&) = delete;

    std::vector<QString> GetLines();
    bool Has(const char* line);
    // Waits until a line has been written so often.
    void Await(const char* line, int times);

private:
    int Count(const char* line) const;

    // Outlives this object where a worker was abandoned that still traces.
    struct Record {
        std::mutex lock;
        std::condition_variable arrived;
        std::vector<QString> lines;
    };
    const std::shared_ptr<Record> record = std::make_shared<Record>();
};
