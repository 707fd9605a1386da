#pragma once

#include <memory>
#include <mutex>

#include <QFile>
#include <QString>

#include "common/Settings.h"
#include "common/Trace.h"

// The engine's trace lines for developers. Every failure writes one before it is thrown. No line holds what
// is sent or received.

// The lines are settled, odd as they look: they are what the trace macro was given, quotes and "_T" included.
[[noreturn]] void ThrowTraced(const char* text, int number);          // "text"number
[[noreturn]] void ThrowTracedLiterally(const char* text, int number); // _T("text")
void TraceNumber(const char* text, int number);

// Writes a line when a scope is entered and when it is left.
class TraceScope {
public:
    explicit TraceScope(const QString& text);
    ~TraceScope();
    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;

private:
    const QString text;
};

// Writes trace lines for the program that has one: to standard error, and to a file if there is one. Made
// before the engine, lives as long as the program; to be set as the trace sink. Safe for all threads;
// failures are ignored.
class CTrace {
public:
    // Tracing is on while the user's key "NimbleXfer/Trace" is there; its value "File", if it isn't empty,
    // names the file. store is borrowed.
    explicit CTrace(const CSettingsStore& store);

    // To standard error as "milliseconds<tab>text", to the file as text alone, in UTF-16.
    void Trace(const QString& text);

private:
    const CSettingsStore& store;

    // Guarded by lock.
    std::mutex lock;
    bool on = false; // once found, it stays
    QFile file;
};

// Makes a CTrace the sink of all trace lines, for as long as the process lives: workers that were abandoned
// may trace until its end.
void InstallTrace(std::shared_ptr<const CSettingsStore> store);
