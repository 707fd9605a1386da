#pragma once

#include <cstdint>

// Shows the progress of a deployment on standard output: a bar that is drawn over itself on a terminal, else
// a plain line at each tenth. Single-threaded.
class CDeployProgressDisplay {
public:
    explicit CDeployProgressDisplay(bool onTerminal) : onTerminal(onTerminal) {}

    void Show(int32_t donePages, int32_t totalPages);
    // Leaves the line of the bar.
    void End();

private:
    const bool onTerminal;
    int64_t lastTenth = 0;
    bool barShown = false;
};
