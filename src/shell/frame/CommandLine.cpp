#include "shell/frame/CommandLine.h"

#include "common/ProgramIdentity.h"
#include "resources/StringTable.h"

namespace {

constexpr int WrongUse = 2; // exit code, as that of vistorama-cli

// What the toolkit takes for itself, as "-style fusion" or "--style=fusion".
bool IsToolkitOption(const QString& argument)
{
    static const QStringList names = {
        QStringLiteral("platform"),        QStringLiteral("platformpluginpath"),
        QStringLiteral("platformtheme"),   QStringLiteral("plugin"),
        QStringLiteral("qwindowgeometry"), QStringLiteral("qwindowicon"),
        QStringLiteral("qwindowtitle"),    QStringLiteral("reverse"),
        QStringLiteral("session"),         QStringLiteral("style"),
        QStringLiteral("stylesheet"),      QStringLiteral("display"),
        QStringLiteral("geometry"),
    };
    const qsizetype dashes = argument.startsWith(QStringLiteral("--")) ? 2 : 1;
    return names.contains(argument.mid(dashes).section(QLatin1Char('='), 0, 0));
}

// A path of several words may have one that begins with "-", but not with two of them, and not as its first.
bool IsUnknownOption(const QStringList& arguments, qsizetype position)
{
    const QString& argument = arguments[position];
    const bool isOption = argument.startsWith(position == 0 ? QStringLiteral("-") : QStringLiteral("--"));
    return isOption && !IsToolkitOption(argument);
}

} // namespace

std::optional<CommandLineAnswer> FindCommandLineAnswer(const QStringList& arguments)
{
    if (arguments.contains(QStringLiteral("--help"))) {
        return CommandLineAnswer{.text = Text(StringId::DesktopUsage), .exitCode = 0};
    }
    if (arguments.contains(QStringLiteral("--version"))) {
        return CommandLineAnswer{.text = QStringLiteral("vistorama %1\n").arg(GetProgramVersion()),
                                 .exitCode = 0};
    }
    for (qsizetype position = 0; position < arguments.size(); ++position) {
        if (IsUnknownOption(arguments, position)) {
            const QString reason = Text(StringId::NoSuchOption, arguments[position]);
            return CommandLineAnswer{.text = reason + QLatin1Char('\n') + Text(StringId::DesktopUsage),
                                     .exitCode = WrongUse};
        }
    }
    return std::nullopt;
}

QString ParseCommandLinePath(const QString& commandLine)
{
    const QLatin1Char quote('"');
    return commandLine.startsWith(quote) ? commandLine.mid(1).section(quote, 0, 0) : commandLine;
}
