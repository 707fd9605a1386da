#include <QCoreApplication>

#include "cli/CommandLine.h"

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    return RunCommandLine(QCoreApplication::arguments().mid(1));
}
