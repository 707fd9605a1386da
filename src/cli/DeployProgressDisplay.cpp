#include "cli/DeployProgressDisplay.h"

#include <algorithm>

#include "cli/CommandLine.h"

void CDeployProgressDisplay::Show(int32_t done, int32_t total, const QString& unit)
{
    if (unit != lastUnit) {
        End();
        lastUnit = unit;
        lastTenth = 0;
    }
    const QString text = QStringLiteral("%1 of %2 ").arg(done).arg(total) + unit;
    // The total can fall short of what is written, so the bar stops at its end.
    const int64_t whole = std::max<int64_t>(total, 1);
    if (onTerminal) {
        constexpr int64_t width = 40;
        const auto filled = static_cast<qsizetype>(std::min(width, width * done / whole));
        PrintOut(QStringLiteral("\r[") + QStringLiteral("#").repeated(filled) +
                 QStringLiteral("-").repeated(width - filled) + QStringLiteral("] ") + text);
        barShown = true;
        return;
    }
    const int64_t tenth = 10 * done / whole;
    if (tenth > lastTenth) {
        lastTenth = tenth;
        PrintOut(text + QLatin1Char('\n'));
    }
}

void CDeployProgressDisplay::End()
{
    if (barShown) {
        PrintOut(QStringLiteral("\n"));
        barShown = false;
    }
}
