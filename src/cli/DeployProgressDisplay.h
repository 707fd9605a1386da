#pragma once

#include <cstdint>

#include <QString>

// Shows the progress of a deployment on standard output: a bar that is drawn over itself on a terminal, else
// a plain line at each tenth. Single-threaded.
class CDeployProgressDisplay {
public:
    explicit CDeployProgressDisplay(bool onTerminal) : onTerminal(onTerminal) {}

    // unit: "pages" or "files". Another unit than the last begins anew.
    void Show(int32_t done, int32_t total, const QString& unit);
    // Leaves the line of the bar.
    void End();

private:
    const bool onTerminal;
    QString lastUnit;
    int64_t lastTenth = 0;
    bool barShown = false;
};
