#include "shell/frame/CommandLinePath.h"

QString ParseCommandLinePath(const QString& commandLine)
{
    const QLatin1Char quote('"');
    return commandLine.startsWith(quote) ? commandLine.mid(1).section(quote, 0, 0) : commandLine;
}
