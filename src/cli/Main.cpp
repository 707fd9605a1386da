#include <QCoreApplication>

#include "cli/CommandLine.h"
#include "ftpengine/Trace.h"

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    const auto settings = CreateProgramSettings();
    CTrace trace(*settings);
    SetTraceSink([&trace](const QString& line) { trace.Trace(line); });
    return RunCommandLine(QCoreApplication::arguments().mid(1));
}
