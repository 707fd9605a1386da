#include "shell/frame/CommandLine.h"

#include "common/ProgramIdentity.h"
#include "resources/StringTable.h"

std::optional<QString> FindCommandLineAnswer(const QStringList& arguments)
{
    if (arguments == QStringList{QStringLiteral("--help")}) {
        return Text(StringId::DesktopUsage);
    }
    if (arguments == QStringList{QStringLiteral("--version")}) {
        return QStringLiteral("vistorama %1\n").arg(GetProgramVersion());
    }
    return std::nullopt;
}

QString ParseCommandLinePath(const QString& commandLine)
{
    const QLatin1Char quote('"');
    return commandLine.startsWith(quote) ? commandLine.mid(1).section(quote, 0, 0) : commandLine;
}
