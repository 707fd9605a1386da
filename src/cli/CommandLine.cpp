#include "cli/CommandLine.h"

#include <cstdio>

#include <QDir>

#include "cli/CheckCommand.h"
#include "cli/DeployCommand.h"
#include "cli/DestinationCommand.h"
#include "cli/FtpCommands.h"
#include "cli/InfoCommand.h"
#include "cli/NewCommand.h"
#include "cli/ServerAddress.h"
#include "common/FileSystem.h"
#include "common/ProgramIdentity.h"
#include "common/Text.h"

namespace {

const char* const Usage = "Usage:\n"
                          "  vistorama-cli new PROJECT.gallery [--layout NAME] [--style NAME] [--tree "
                          "FOLDER]\n"
                          "      [--watermark FILE] [--signature TEXT] [--position NAME|NUMBER] [--margin "
                          "PIXELS]\n"
                          "      [--size-class small|middle|large|all] [PICTURE|FOLDER ...]\n"
                          "  vistorama-cli deploy PROJECT.gallery TARGET_FOLDER|FTP_ADDRESS [--quiet]\n"
                          "  vistorama-cli deploy PROJECT.gallery --to NAME [--directory DIRECTORY] "
                          "[--quiet]\n"
                          "  vistorama-cli info PROJECT.gallery [--json] [--clusters SIZE]\n"
                          "  vistorama-cli check LAYOUT.xml ...\n"
                          "  vistorama-cli destination add NAME FTP_ADDRESS [--all-users]\n"
                          "  vistorama-cli destination list\n"
                          "  vistorama-cli destination remove NAME\n"
                          "  vistorama-cli ftp-test FTP_ADDRESS [--transcript]\n"
                          "  vistorama-cli ftp-ls FTP_ADDRESS [--raw]\n"
                          "  vistorama-cli ftp-mkdir FTP_ADDRESS NAME\n"
                          "  vistorama-cli ftp-rename FTP_ADDRESS OLD_NAME NEW_NAME\n"
                          "  vistorama-cli --help | --version\n"
                          "An FTP_ADDRESS is ftp://[USER[:PASSWORD]@]HOST[:PORT][/DIRECTORY]. A password "
                          "that it doesn't hold\n"
                          "is taken from VISTORAMA_FTP_PASSWORD, or asked for.\n";

using Command = int (*)(const QStringList& arguments);

Command FindCommand(const QString& name)
{
    const std::map<QString, Command> commands{
        {QStringLiteral("new"), RunNew},
        {QStringLiteral("deploy"), RunDeploy},
        {QStringLiteral("info"), RunInfo},
        {QStringLiteral("check"), RunCheck},
        {QStringLiteral("destination"), RunDestination},
        {QStringLiteral("ftp-test"), RunFtpTest},
        {QStringLiteral("ftp-ls"), RunFtpList},
        {QStringLiteral("ftp-mkdir"), RunFtpMakeDirectory},
        {QStringLiteral("ftp-rename"), RunFtpRename},
    };
    const auto command = commands.find(name);
    if (command == commands.end()) {
        throw CWrongUse(name.isEmpty() ? QStringLiteral("A command is missing.")
                                       : QStringLiteral("There is no command '%1'.").arg(name));
    }
    return command->second;
}

int RunCommand(const QStringList& arguments)
{
    const QString name = arguments.value(0);
    if (name == QStringLiteral("--help")) {
        PrintOut(QString::fromLatin1(Usage));
        return ExitDone;
    }
    if (name == QStringLiteral("--version")) {
        PrintOut(QStringLiteral("vistorama-cli %1\n").arg(GetProgramVersion()));
        return ExitDone;
    }
    return FindCommand(name)(arguments.mid(1));
}

QString OnOneLine(QString text)
{
    return text.replace(QStringLiteral("\r\n"), QStringLiteral("\\n"))
        .replace(QLatin1Char('\n'), QStringLiteral("\\n"))
        .replace(QLatin1Char('\r'), QStringLiteral("\\n"));
}

// Reads the option at position and moves behind it.
void ParseOption(const QStringList& arguments, qsizetype& position, const CommandSyntax& syntax,
                 CommandArguments& parsed)
{
    const QString argument = arguments[position++];
    const QString name = argument.mid(2).section(QLatin1Char('='), 0, 0);
    if (syntax.switches.contains(name) && !argument.contains(QLatin1Char('='))) {
        parsed.options[name] = QString();
        return;
    }
    if (!syntax.valueOptions.contains(name)) {
        throw CWrongUse(QStringLiteral("There is no option '%1'.").arg(argument));
    }
    if (argument.contains(QLatin1Char('='))) {
        parsed.options[name] = argument.section(QLatin1Char('='), 1);
        return;
    }
    if (position == arguments.size()) {
        throw CWrongUse(QStringLiteral("The option '%1' needs a value.").arg(argument));
    }
    parsed.options[name] = arguments[position++];
}

} // namespace

QString CommandArguments::Get(const QString& name) const
{
    const auto option = options.find(name);
    return option == options.end() ? QString() : option->second;
}

CommandArguments ParseArguments(const QStringList& arguments, const CommandSyntax& syntax)
{
    CommandArguments parsed;
    qsizetype position = 0;
    bool onlyPositional = false;
    while (position < arguments.size()) {
        if (!onlyPositional && arguments[position] == QStringLiteral("--")) {
            onlyPositional = true;
            ++position;
        } else if (!onlyPositional && arguments[position].startsWith(QStringLiteral("--"))) {
            ParseOption(arguments, position, syntax, parsed);
        } else {
            parsed.positional += arguments[position++];
        }
    }
    if (parsed.positional.size() < syntax.minPositional) {
        throw CWrongUse(QStringLiteral("Something is missing."));
    }
    if (parsed.positional.size() > syntax.maxPositional) {
        const QString& surplus = parsed.positional[syntax.maxPositional];
        // An address may hold a password.
        throw CWrongUse(IsFtpAddress(surplus) ? QStringLiteral("There is no use for the FTP address.")
                                              : QStringLiteral("There is no use for '%1'.").arg(surplus));
    }
    return parsed;
}

int RunCommandLine(const QStringList& arguments)
{
    try {
        return RunCommand(arguments);
    } catch (const CWrongUse& wrongUse) {
        PrintError(wrongUse.GetReason() + QLatin1Char('\n') + QString::fromLatin1(Usage));
        return ExitWrongUse;
    } catch (const CExceptionBase& failure) {
        PrintError(FailureLines(failure.GetCaption(), failure.GetDescription(), failure.GetAdvice()));
        return ExitFailed;
    } catch (const std::exception& failure) {
        PrintError(FailureLines(Text(StringId::UnexpectedErrorCaption), Widen(failure.what()),
                                Text(StringId::UnexpectedErrorAdvice)));
        return ExitFailed;
    }
}

QString FailureLines(const QString& caption, const QString& description, const QString& advice)
{
    return QStringLiteral("caption: ") + OnOneLine(caption) + QStringLiteral("\ndescription: ") +
           OnOneLine(description) + QStringLiteral("\nadvice: ") + OnOneLine(advice) + QLatin1Char('\n');
}

QString ExistingPath(const QString& argument)
{
    if (!FileExists(argument)) {
        throw CFileException(argument, {StringId::CouldNotOpenFile, StringId::FileDoesNotExist,
                                        StringId::CheckFolderAndFileName});
    }
    return QDir(argument).absolutePath();
}

void PrintOut(const QString& text)
{
    std::fputs(Narrow(text).c_str(), stdout);
    std::fflush(stdout);
}

void PrintError(const QString& text)
{
    std::fputs(Narrow(text).c_str(), stderr);
}
