#pragma once

#include <functional>

#include <QString>

// Trace lines for developers. They have no effect on behaviour; without a sink they go nowhere.

// Takes each line; may be called on any thread, and still for lines on their way when another sink has been
// set: what it uses it has to own. Thread-safe.
void SetTraceSink(std::function<void(const QString& line)> sink);

void Trace(const QString& text);

// Writes a line when a scope is entered and when it is left.
class CTraceScope {
public:
    explicit CTraceScope(const char* name);
    ~CTraceScope();
    CTraceScope(const CTraceScope&) = delete;
    CTraceScope& operator=(const CTraceScope&) = delete;

private:
    const char* const name;
};
