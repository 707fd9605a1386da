#include <QCoreApplication>

#include "cli/CommandLine.h"
#include "common/Trace.h"

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    InstallTrace(CreateProgramSettings());
    return RunCommandLine(QCoreApplication::arguments().mid(1));
}
