#include "cli/CommandLine.h"

#include <map>

#include "cli/Answers.h"
#include "cli/Commands.h"
#include "common/Exceptions.h"
#include "common/ProgramIdentity.h"
#include "common/Text.h"

namespace {

using Command = int (*)(const QStringList& arguments);

Command FindCommand(const QString& name)
{
    const std::map<QString, Command> commands{
        {QStringLiteral("new"), RunNew},
        {QStringLiteral("deploy"), RunDeploy},
        {QStringLiteral("info"), RunInfo},
        {QStringLiteral("check"), RunCheck},
        {QStringLiteral("relink"), RunRelink},
        {QStringLiteral("cache"), RunCache},
        {QStringLiteral("destination"), RunDestination},
        {QStringLiteral("ftp-test"), RunFTPTest},
        {QStringLiteral("ftp-ls"), RunFTPList},
        {QStringLiteral("ftp-mkdir"), RunFTPMakeDirectory},
        {QStringLiteral("ftp-rename"), RunFTPRename},
    };
    const auto command = commands.find(name);
    if (command == commands.end()) {
        throw CWrongUse(name.isEmpty() ? Text(StringId::CommandMissing)
                                       : Text(StringId::NoSuchCommand, WithoutPassword(name)));
    }
    return command->second;
}

int RunCommand(const QStringList& arguments)
{
    const QString name = arguments.value(0);
    if (name == QStringLiteral("--help")) {
        PrintOut(Text(StringId::CommandLineUsage));
        return ExitDone;
    }
    if (name == QStringLiteral("--version")) {
        PrintOut(QStringLiteral("vistorama-cli %1\n").arg(GetProgramVersion()));
        return ExitDone;
    }
    return FindCommand(name)(arguments.mid(1));
}

} // namespace

int RunCommandLine(const QStringList& arguments)
{
    try {
        return RunCommand(arguments);
    } catch (const CWrongUse& wrongUse) {
        PrintError(wrongUse.GetReason() + QLatin1Char('\n') + Text(StringId::CommandLineUsage));
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
