#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include <QFile>
#include <QString>

#include "common/Settings.h"
#include "common/ThreadSafety.h"

// Trace lines for developers. They have no effect on behaviour; without a sink they go nowhere.
void Trace(const QString& text);

// Writes a line when a scope is entered and when it is left: "CViewPages::UpdateView entering", "...
// exiting".
class TraceScope {
public:
    explicit TraceScope(const QString& text);
    ~TraceScope();
    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;

private:
    const QString text;
};

// Takes each line; may be called on any thread, and still for lines on their way when another sink has been
// set: what it uses it has to own. Thread-safe.
void SetTraceSink(std::function<void(const QString& line)> sink);

// Writes trace lines for the program that has one: to standard error, and to a file if there is one. To be
// set as the sink. Safe for all threads; failures are ignored.
class CTrace {
public:
    // Tracing is on from the first line that finds the user's key "NimbleXfer/Trace"; its value "File", if it
    // isn't empty, names the file. store is borrowed. As long as the key isn't there it is looked for once an
    // interval: a look opens files.
    explicit CTrace(const CSettingsStore& store,
                    std::chrono::milliseconds interval = std::chrono::seconds(1));

    // To standard error as "milliseconds<tab>text", to the file as text alone, in UTF-16.
    void Trace(const QString& text);

private:
    bool IsTurnedOn() VISTORAMA_REQUIRES(mutex);
    void TurnOn() VISTORAMA_REQUIRES(mutex);

    const CSettingsStore& store;
    const std::chrono::milliseconds interval;

    CMutex mutex;
    bool on VISTORAMA_GUARDED_BY(mutex) = false; // once found, it stays
    std::optional<std::chrono::steady_clock::time_point> lookedFor VISTORAMA_GUARDED_BY(mutex);
    QFile file VISTORAMA_GUARDED_BY(mutex);
};

// Makes a CTrace the sink of all trace lines, for as long as the process lives: workers that were abandoned
// may trace until its end.
void InstallTrace(std::shared_ptr<const CSettingsStore> store);
