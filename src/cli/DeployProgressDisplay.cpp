#include "cli/DeployProgressDisplay.h"

#include <algorithm>

#include "cli/CommandLine.h"

void CDeployProgressDisplay::Show(int32_t donePages, int32_t totalPages)
{
    const QString text = QStringLiteral("%1 of %2 pages").arg(donePages).arg(totalPages);
    // The total can fall short of what is written, so the bar stops at its end.
    const int64_t whole = std::max<int64_t>(totalPages, 1);
    if (onTerminal) {
        constexpr int64_t width = 40;
        const auto filled = static_cast<qsizetype>(std::min(width, width * donePages / whole));
        PrintOut(QStringLiteral("\r[") + QStringLiteral("#").repeated(filled) +
                 QStringLiteral("-").repeated(width - filled) + QStringLiteral("] ") + text);
        barShown = true;
        return;
    }
    const int64_t tenth = 10 * donePages / whole;
    if (tenth > lastTenth) {
        lastTenth = tenth;
        PrintOut(text + QLatin1Char('\n'));
    }
}

void CDeployProgressDisplay::End()
{
    if (barShown) {
        PrintOut(QStringLiteral("\n"));
    }
}
